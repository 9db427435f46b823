// See archive_diagnosis.h.
#include "cli/archive_diagnosis.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>

#include "archive/archive_api.h"
#include "platform/file_handle.h"
#include "platform/library.h"
#include "platform/text.h"

namespace qm::cli {

namespace {

constexpr std::uint64_t kMaxTailBytes = 22 + 65535;  // the end record and its comment
constexpr std::uint64_t kMaxListBytes = std::uint64_t{1} << 26;
constexpr std::size_t kEndBytes = 22;
constexpr std::size_t kEntryBytes = 46;

std::uint32_t Number(const std::string& bytes, std::size_t at, std::size_t count) {
    std::uint32_t value = 0;
    while (count > 0) value = value << 8 | static_cast<unsigned char>(bytes[at + --count]);
    return value;
}

std::string ReadAt(std::ifstream& file, std::uint64_t at, std::uint64_t count) {
    std::string bytes(static_cast<std::size_t>(count), '\0');
    file.clear();
    file.seekg(static_cast<std::streamoff>(at));
    file.read(bytes.data(), static_cast<std::streamsize>(count));
    bytes.resize(static_cast<std::size_t>(std::max<std::streamsize>(file.gcount(), 0)));
    return bytes;
}

// The list of entries at the archive's end; nothing when there is none that can be read.
std::optional<std::string> ListOf(std::ifstream& file, std::uint64_t size) {
    const std::uint64_t tailBytes = std::min(size, kMaxTailBytes);
    const std::string tail = ReadAt(file, size - tailBytes, tailBytes);
    const std::size_t end = tail.rfind("PK\5\6");
    if (end == std::string::npos || tail.size() - end < kEndBytes) return std::nullopt;
    const std::uint64_t listBytes = Number(tail, end + 12, 4);
    if (listBytes > std::min(size, kMaxListBytes)) return std::nullopt;
    std::string list = ReadAt(file, Number(tail, end + 16, 4), listBytes);
    if (list.size() != listBytes) return std::nullopt;
    return list;
}

struct Entry {
    bool encrypted;
    std::uint32_t method;
    std::uint32_t size;
};

// The entry named plan.prn; nothing without one. `whole` tells whether the list could be read to
// its end.
std::optional<Entry> FindPlot(const std::string& list, bool& whole) {
    std::size_t at = 0;
    while (list.size() - at >= kEntryBytes && list.compare(at, 4, "PK\1\2") == 0) {
        const std::size_t nameBytes = Number(list, at + 28, 2);
        const std::size_t next =
            at + kEntryBytes + nameBytes + Number(list, at + 30, 2) + Number(list, at + 32, 2);
        if (next > list.size()) break;
        const std::string name = list.substr(at + kEntryBytes, nameBytes);
        if (EqualIgnoringAsciiCase(Utf8ToWide(name), L"plan.prn")) {
            return Entry{(Number(list, at + 8, 2) & 1) != 0, Number(list, at + 10, 2),
                         Number(list, at + 24, 4)};
        }
        at = next;
    }
    whole = at == list.size();
    return std::nullopt;
}

std::string NameOfMethod(std::uint32_t method) {
    switch (method) {
        case 9:
            return "Deflate64";
        case 12:
            return "bzip2";
        case 14:
            return "LZMA";
        case 93:
            return "Zstandard";
        case 95:
            return "xz";
        default:
            return "method " + std::to_string(method);
    }
}

std::string CauseOf(const Entry& plot) {
    constexpr std::uint32_t kStored = 0;
    constexpr std::uint32_t kDeflated = 8;
    if (plot.encrypted) return "its plan.prn is encrypted";
    if (plot.size > archive::kMaxExtractedBytes) return "its plan.prn is larger than 1 GiB";
    if (!TemporaryFile::Create(L"qmp")) {
        return "the folder for temporary files cannot be written (TMPDIR chooses another)";
    }
    if (plot.method == kStored || plot.method == kDeflated) {
        return "its plan.prn is damaged, or the folder for temporary files is full";
    }
    return "its plan.prn is damaged, or packed by a method that cannot be unpacked here (" +
           NameOfMethod(plot.method) + ")";
}

}  // namespace

std::optional<ArchiveProblem> DiagnoseArchive(const InputFile& file) {
    std::ifstream bytes(std::filesystem::u8path(file.Path()), std::ios::binary);
    if (ReadAt(bytes, 0, 4) != "PK\3\4") return std::nullopt;
    const auto list = ListOf(bytes, file.Size());
    bool whole = false;
    const auto plot = list ? FindPlot(*list, whole) : std::nullopt;
    if (!plot && whole) return ArchiveProblem{false, "a zip archive that holds no plan.prn"};
    if (!Library(archive::kLibraryName)) {
        return ArchiveProblem{true, "the archive library QmZipx is not beside the program"};
    }
    if (!plot) return ArchiveProblem{true, "it is damaged: it has no complete list of its files"};
    return ArchiveProblem{true, CauseOf(*plot)};
}

}  // namespace qm::cli
