// See plot_archive.h.
#include "import/plot_archive.h"

#include <array>

#include "platform/text.h"

namespace qm {

namespace {

constexpr wchar_t kPlotName[] = L"plan.prn";
constexpr wchar_t kTemporaryPrefix[] = L"qmh";

}  // namespace

PlotArchive::PlotArchive(std::wstring_view path)
    : library_(archive::kLibraryName),
      open_(library_.Function<archive::OpenArchiveFunction>("OpenArchive")),
      count_(library_.Function<archive::GetNumberOfFilesFunction>("GetNumberOfFiles")),
      info_(library_.Function<archive::GetFileInfoFunction>("GetFileInfo")),
      extract_(library_.Function<archive::ExtractToFileFunction>("ExtractToFile")),
      close_(library_.Function<archive::CloseArchiveFunction>("CloseArchive")) {
    const bool complete = open_ && count_ && info_ && extract_ && close_;
    if (complete) archive_ = open_(std::wstring(path).c_str());
}

PlotArchive::~PlotArchive() {
    if (archive_ != archive::kNoArchive) close_(archive_);
}

std::optional<std::int32_t> PlotArchive::FindPlot() const {
    if (archive_ == archive::kNoArchive) return std::nullopt;
    const std::int32_t entries = count_(archive_);
    for (std::int32_t index = 0; index < entries; ++index) {
        std::array<wchar_t, archive::kNameCharacters> name{};
        std::int64_t size = 0;
        std::int64_t packedSize = 0;
        info_(archive_, index, name.data(), &size, &packedSize);
        name.back() = L'\0';
        if (EqualIgnoringAsciiCase(name.data(), kPlotName)) return index;
    }
    return std::nullopt;
}

TemporaryFile PlotArchive::ExtractPlot() const {
    const auto index = FindPlot();
    if (!index) return {};
    TemporaryFile file = TemporaryFile::Create(kTemporaryPrefix);
    if (file) extract_(archive_, *index, file.Folder().c_str(), file.Name().c_str());
    return file;
}

}  // namespace qm
