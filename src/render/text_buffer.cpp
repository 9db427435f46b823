// See text_buffer.h.
#include "render/text_buffer.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "common/colour.h"

namespace qm {

void TextBuffer::Flush() {
    const std::size_t bytes = used_;
    used_ = 0;
    if (bytes > 0) sink_.Write({buffer_.get(), bytes});
}

TextBuffer& TextBuffer::operator<<(std::string_view text) {
    if (text.size() > kBytes) {
        Flush();
        sink_.Write(text);
        return *this;
    }
    std::memcpy(Room(text.size()), text.data(), text.size());
    used_ += text.size();
    return *this;
}

TextBuffer& TextBuffer::operator<<(double number) {
    // Far beyond any paper; also keeps the text inside its room.
    constexpr double kLimit = 1e15;
    constexpr int kDecimals = 4;
    if (!(std::abs(number) < kLimit)) number = number > 0.0 ? kLimit : -kLimit;
    char* const at = Room(kNumberBytes);
    char* end =
        std::to_chars(at, at + kNumberBytes, number, std::chars_format::fixed, kDecimals).ptr;
    while (end[-1] == '0') --end;
    if (end[-1] == '.') --end;
    if (std::string_view(at, static_cast<std::size_t>(end - at)) == "-0") {
        *at = '0';
        end = at + 1;
    }
    Used(end);
    return *this;
}

TextBuffer& TextBuffer::Colour(std::uint32_t colour) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    const auto [red, green, blue] = qm::Colour::FromBgr(colour);
    const int bytes[] = {red, green, blue};
    *this << '#';
    const bool isShort = std::all_of(std::begin(bytes), std::end(bytes),
                                     [](int byte) { return (byte >> 4) == (byte & 15); });
    for (const int byte : bytes) {
        *this << kDigits[static_cast<std::size_t>(byte >> 4)];
        if (!isShort) *this << kDigits[static_cast<std::size_t>(byte & 15)];
    }
    return *this;
}

TextBuffer& TextBuffer::Escaped(std::string_view text) {
    for (const char letter : text) {
        switch (letter) {
            case '&':
                *this << "&amp;";
                break;
            case '<':
                *this << "&lt;";
                break;
            case '>':
                *this << "&gt;";
                break;
            case '"':
                *this << "&quot;";
                break;
            default:
                *this << (static_cast<unsigned char>(letter) < 0x20 ? ' ' : letter);
                break;
        }
    }
    return *this;
}

}  // namespace qm
