// ZipArchive: one zip file, read with libzip, with bounds on what an entry may unpack to.
//
// Test: tests/archive/archive_test.cpp.
#pragma once

#include <zip.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace qm::archive {

struct EntryInfo {
    std::wstring name;
    std::int64_t size = -1;        // bytes, as claimed; -1 unknown
    std::int64_t packedSize = -1;  // bytes, as claimed; -1 unknown
    std::uint32_t checksum = 0;    // CRC-32 of the unpacked data
    bool encrypted = false;
};

class ZipArchive {
  public:
    // False when `path` is no readable zip file.
    explicit ZipArchive(std::wstring_view path);
    explicit operator bool() const { return zip_ != nullptr; }

    std::int32_t Count() const;
    // Nothing for an index outside 0 to Count() - 1.
    std::optional<EntryInfo> Info(std::int32_t index) const;
    // Unpacks an entry to `path`, replacing what is there; false, and no file, when anything is
    // wrong with it or it is encrypted or larger than `maxBytes`.
    bool Extract(std::int32_t index, const std::wstring& path, std::int64_t maxBytes) const;
    // What an entry of an archive of this size may grow to (archive_api.h).
    std::int64_t MaxBytes() const { return maxBytes_; }

  private:
    struct Discard {
        void operator()(zip_t* zip) const { zip_discard(zip); }
    };
    std::unique_ptr<zip_t, Discard> zip_;
    std::int64_t maxBytes_;
};

}  // namespace qm::archive
