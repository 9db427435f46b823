// Column: a growing run of bytes with the number formats of the viewer page's data. The page reads
// them in src/viewer/bytes.js. Test: tests/render/viewer_test.cpp.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace qm {

class Column {
  public:
    void Byte(std::uint8_t byte) { bytes_ += static_cast<char>(byte); }
    void Bytes(std::string_view bytes) { bytes_ += bytes; }
    // LEB128: seven bits a byte, the lowest first, the top bit set in all but the last.
    void Unsigned(std::uint64_t value) {
        char bytes[10];
        std::size_t count = 0;
        for (; value >= 0x80; value >>= 7) bytes[count++] = static_cast<char>(value | 0x80);
        bytes[count++] = static_cast<char>(value);
        bytes_.append(bytes, count);
    }
    // Zigzag: 0, -1, 1, -2, ... as 0, 1, 2, 3, ...
    void Signed(std::int32_t value) {
        const auto bits = static_cast<std::uint32_t>(value);
        Unsigned(bits << 1 ^ (value < 0 ? 0xFFFFFFFFU : 0U));
    }
    // Little-endian IEEE 754.
    void Float(float value) {
        std::uint32_t bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        LittleEndian(bits, 4);
    }
    void Double(double value) {
        std::uint64_t bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        LittleEndian(bits, 8);
    }
    // Its length in bytes (Unsigned), then UTF-8.
    void Text(std::string_view text) {
        Unsigned(text.size());
        Bytes(text);
    }

    std::string_view View() const { return bytes_; }
    std::size_t Size() const { return bytes_.size(); }
    void Clear() { bytes_.clear(); }

  private:
    void LittleEndian(std::uint64_t bits, int count) {
        for (int i = 0; i < count; ++i) Byte(static_cast<std::uint8_t>(bits >> (8 * i) & 0xFF));
    }

    std::string bytes_;
};

}  // namespace qm
