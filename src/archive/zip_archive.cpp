// See zip_archive.h.
#include "archive/zip_archive.h"

#include <windows.h>
#include <zlib.h>

#include <algorithm>
#include <limits>
#include <vector>

#include "archive/archive_api.h"
#include "platform/file_handle.h"
#include "platform/text.h"

namespace qm::archive {

namespace {

constexpr std::size_t kBlockBytes = 65536;

struct CloseEntry {
    void operator()(zip_file_t* entry) const { zip_fclose(entry); }
};
using Entry = std::unique_ptr<zip_file_t, CloseEntry>;

zip_t* Open(const std::string& path) {
    int error = 0;
    return zip_open(path.c_str(), ZIP_RDONLY, &error);
}

std::int64_t SizeOf(const std::wstring& path) {
    const FileHandle file = FileHandle::OpenForReading(path.c_str());
    const DWORD size = file ? GetFileSize(file.Get(), nullptr) : INVALID_FILE_SIZE;
    return size == INVALID_FILE_SIZE ? 0 : std::int64_t{size};
}

std::int64_t Claimed(const zip_stat_t& status, zip_uint64_t field, zip_uint64_t value) {
    constexpr zip_uint64_t kMax = std::numeric_limits<std::int64_t>::max();
    if ((status.valid & field) == 0) return -1;
    return static_cast<std::int64_t>(std::min(value, kMax));
}

// Copies what the entry really yields and checks it; libzip alone takes packed data of no bytes for
// an empty entry, whatever the checksum.
bool Copy(zip_file_t& entry, std::uint32_t checksum, std::int64_t maxBytes, HANDLE target) {
    std::vector<unsigned char> block(kBlockBytes);
    uLong found = crc32_z(0, nullptr, 0);
    for (;;) {
        const zip_int64_t count = zip_fread(&entry, block.data(), block.size());
        if (count <= 0) return count == 0 && found == checksum;
        maxBytes -= count;
        if (maxBytes < 0) return false;
        found = crc32_z(found, block.data(), static_cast<std::size_t>(count));
        DWORD done = 0;
        const auto bytes = static_cast<DWORD>(count);
        if (!WriteFile(target, block.data(), bytes, &done, nullptr) || done != bytes) return false;
    }
}

}  // namespace

ZipArchive::ZipArchive(std::wstring_view path)
    : zip_(Open(WideToUtf8(path))),
      maxBytes_(std::min(kMaxExtractedBytes,
                         kExtractedBytes + kExtractedPerByte * SizeOf(std::wstring(path)))) {}

std::int32_t ZipArchive::Count() const {
    const zip_int64_t entries = zip_get_num_entries(zip_.get(), 0);
    constexpr zip_int64_t kMax = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::clamp<zip_int64_t>(entries, 0, kMax));
}

std::optional<EntryInfo> ZipArchive::Info(std::int32_t index) const {
    zip_stat_t status;
    zip_stat_init(&status);
    if (index < 0) return std::nullopt;
    if (zip_stat_index(zip_.get(), static_cast<zip_uint64_t>(index), 0, &status) != 0) {
        return std::nullopt;
    }
    EntryInfo info;
    if ((status.valid & ZIP_STAT_NAME) != 0) info.name = Utf8ToWide(status.name);
    info.size = Claimed(status, ZIP_STAT_SIZE, status.size);
    info.packedSize = Claimed(status, ZIP_STAT_COMP_SIZE, status.comp_size);
    info.checksum = status.crc;
    // Without the field nothing is known, so nothing is trusted.
    info.encrypted =
        (status.valid & ZIP_STAT_ENCRYPTION_METHOD) == 0 || status.encryption_method != ZIP_EM_NONE;
    return info;
}

bool ZipArchive::Extract(std::int32_t index, const std::wstring& path,
                         std::int64_t maxBytes) const {
    const auto info = Info(index);
    bool done = false;
    if (info && !info->encrypted) {
        const Entry entry(zip_fopen_index(zip_.get(), static_cast<zip_uint64_t>(index), 0));
        const FileHandle target(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                            FILE_ATTRIBUTE_NORMAL, nullptr));
        done = entry && target && Copy(*entry, info->checksum, maxBytes, target.Get());
    }
    // The file is closed by now: Windows does not delete an open one.
    if (!done) DeleteFileW(path.c_str());
    return done;
}

}  // namespace qm::archive
