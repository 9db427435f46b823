// Targets of the import filter, the archive library and the save components; see targets.h.
#include <array>
#include <ostream>
#include <string>

#include "archive/archive_api.h"
#include "common/tool_error.h"
#include "fuzz/components.h"
#include "fuzz/targets.h"
#include "host/page_summary.h"
#include "platform/file_handle.h"
#include "replay/replay.h"

// The library's functions, linked in: a program cannot watch what a loaded library does.
extern "C" {
qm::archive::OpenArchiveFunction OpenArchive;
qm::archive::GetNumberOfFilesFunction GetNumberOfFiles;
qm::archive::GetFileInfoFunction GetFileInfo;
qm::archive::ExtractToFileFunction ExtractToFile;
qm::archive::CloseArchiveFunction CloseArchive;
}

namespace qm::fuzz {

namespace {

bool WriteAll(const std::wstring& path, std::string_view bytes) {
    const FileHandle file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD done = 0;
    return file && WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &done,
                             nullptr) != 0;
}

}  // namespace

void Filter(std::string_view plot) {
    const Session session;
    for (const PlotPage& page : Session::Open(plot).pages) Summarise(page.Drawing());
}

void Archive(std::string_view zip) {
    // A few entries show what all do; each may unpack to a thousand times the input.
    constexpr std::int32_t kMaxEntries = 4;
    const TemporaryFile file = TemporaryFile::Create(L"qmf");
    const TemporaryFile unpacked = TemporaryFile::Create(L"qmf");
    if (!file || !unpacked || !WriteAll(file.Path(), zip)) return;
    const archive::Handle handle = OpenArchive(file.Path().c_str());
    const std::int32_t count = GetNumberOfFiles(handle);
    for (std::int32_t index = -1; index <= count && index < kMaxEntries; ++index) {
        std::array<wchar_t, archive::kNameCharacters> name{};
        std::int64_t size = 0;
        std::int64_t packedSize = 0;
        GetFileInfo(handle, index, name.data(), &size, &packedSize);
        Require(name.back() == L'\0', "an entry's name has no end");
        ExtractToFile(handle, index, unpacked.Folder().c_str(), unpacked.Name().c_str());
    }
    if (handle != archive::kNoArchive) {
        Require(CloseArchive(handle) == 1, "an archive was not open");
    }
}

void Replay(std::string_view script) {
    const NoLeak noLeak;
    const auto stream = MakeObject<NullStream>();
    std::ostream messages(nullptr);
    for (const ReplayFormat format : {ReplayFormat::kHpgl, ReplayFormat::kHprtl}) {
        try {
            ReplayScript(script, "script", format, stream.Get(), messages);
        } catch (const ToolError&) {
            // A line that cannot be understood.
        }
    }
}

}  // namespace qm::fuzz
