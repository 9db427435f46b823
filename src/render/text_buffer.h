// TextBuffer: text for a sink through one large buffer, with the shortest numbers SVG allows. Test:
// tests/render/svg_writer_test.cpp.
#pragma once

#include <charconv>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>

#include "render/output_sink.h"

namespace qm {

class TextBuffer {
  public:
    explicit TextBuffer(OutputSink& sink) : sink_(sink), buffer_(new char[kBytes]) {}

    TextBuffer& operator<<(std::string_view text);
    TextBuffer& operator<<(char letter) {
        *Room(1) = letter;
        ++used_;
        return *this;
    }
    TextBuffer& operator<<(std::int64_t number) {
        char* const at = Room(kNumberBytes);
        Used(std::to_chars(at, at + kNumberBytes, number).ptr);
        return *this;
    }
    TextBuffer& operator<<(std::int32_t number) { return *this << std::int64_t{number}; }
    TextBuffer& operator<<(std::size_t number) {
        return *this << static_cast<std::int64_t>(number);
    }
    // At most four decimals, no trailing zeros.
    TextBuffer& operator<<(double number);
    // "#rgb" or "#rrggbb" of 0x00BBGGRR.
    TextBuffer& Colour(std::uint32_t colour);
    // `text` (UTF-8) as XML character data or attribute value; characters that XML cannot hold
    // become blanks.
    TextBuffer& Escaped(std::string_view text);

    // To be called at the end: what the destructor threw would end the program.
    void Flush();

  private:
    static constexpr std::size_t kBytes = std::size_t{1} << 17;
    static constexpr std::size_t kNumberBytes = 32;

    char* Room(std::size_t bytes) {
        if (kBytes - used_ < bytes) Flush();
        return buffer_.get() + used_;
    }
    void Used(const char* end) { used_ = static_cast<std::size_t>(end - buffer_.get()); }

    OutputSink& sink_;
    std::unique_ptr<char[]> buffer_;
    std::size_t used_ = 0;
};

}  // namespace qm
