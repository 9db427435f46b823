// Makes small zip archives for the tests, in a folder that goes away with them.
#pragma once

#include <gtest/gtest.h>
#include <zip.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace qm::testing_zip {

struct Item {
    std::string name;
    std::string content;
    bool deflate = true;
    bool encrypt = false;
    bool bzip2 = false;
};

// A new, empty folder below the folder for temporary files.
class Folder {
  public:
    Folder() {
        std::random_device random;
        do {
            path_ = std::filesystem::temp_directory_path() / ("qmzip" + std::to_string(random()));
        } while (!std::filesystem::create_directory(path_));
    }
    ~Folder() { std::filesystem::remove_all(path_); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    const std::filesystem::path& Path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }
    std::size_t Files() const {
        const std::filesystem::directory_iterator begin(path_);
        return static_cast<std::size_t>(std::distance(begin, {}));
    }

  private:
    std::filesystem::path path_;
};

inline std::string ReadAll(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline void WriteAll(const std::filesystem::path& path, std::string_view bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

inline void MakeZip(const std::filesystem::path& path, const std::vector<Item>& items) {
    zip_t* zip = zip_open(path.u8string().c_str(), ZIP_CREATE | ZIP_TRUNCATE, nullptr);
    for (const Item& item : items) {
        zip_source_t* source = zip_source_buffer(zip, item.content.data(), item.content.size(), 0);
        const zip_int64_t index = zip_file_add(zip, item.name.c_str(), source, ZIP_FL_ENC_UTF_8);
        const auto entry = static_cast<zip_uint64_t>(index);
        const zip_int32_t method = item.deflate ? ZIP_CM_DEFLATE : ZIP_CM_STORE;
        zip_set_file_compression(zip, entry, item.bzip2 ? ZIP_CM_BZIP2 : method, 9);
        // Two more fields behind the name of an entry in the list, of lengths of their own.
        zip_file_set_comment(zip, entry, "said", 4, ZIP_FL_ENC_UTF_8);
        const zip_uint8_t more[] = {1, 2, 3};
        zip_file_extra_field_set(zip, entry, 0x7777, 0, more, sizeof more, ZIP_FL_CENTRAL);
        if (item.encrypt) zip_file_set_encryption(zip, entry, ZIP_EM_TRAD_PKWARE, "secret");
    }
    ASSERT_EQ(zip_close(zip), 0);
}

// Overwrites the 32-bit field `offset` bytes behind the first `signature` ("PK\1\2") with `value`.
inline void PatchField(std::string& zip, std::string_view signature, std::size_t offset,
                       std::uint32_t value) {
    const std::size_t at = zip.find(signature);
    ASSERT_NE(at, std::string::npos);
    for (std::size_t i = 0; i < 4; ++i) {
        zip[at + offset + i] = static_cast<char>(value >> (8 * i) & 0xFF);
    }
}

}  // namespace qm::testing_zip
