// See group_codes.h.
#include "render/dxf/group_codes.h"

#include <charconv>

#include "platform/text.h"

namespace qm::dxf {

namespace {

// Of a code or a number with its line end.
constexpr std::size_t kNumberBytes = 32;

char* PutCode(char* at, int code) {
    at = std::to_chars(at, at + kNumberBytes, code).ptr;
    *at++ = '\n';
    return at;
}

// A number of parts as millimetres, without trailing zeros; and the line end.
char* PutLength(char* at, std::int64_t parts) {
    constexpr std::uint64_t kParts = 10000;
    auto magnitude = static_cast<std::uint64_t>(parts);
    if (parts < 0) {
        *at++ = '-';
        magnitude = 0 - magnitude;
    }
    at = std::to_chars(at, at + kNumberBytes, magnitude / kParts).ptr;
    std::uint64_t rest = magnitude % kParts;
    if (rest != 0) *at++ = '.';
    for (std::uint64_t digit = kParts / 10; rest != 0; digit /= 10) {
        *at++ = static_cast<char>('0' + rest / digit);
        rest %= digit;
    }
    *at++ = '\n';
    return at;
}

std::string_view Between(const char* begin, const char* end) {
    return {begin, static_cast<std::size_t>(end - begin)};
}

std::string UnicodeEscape(unsigned character) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text = "\\U+";
    for (int shift = 12; shift >= 0; shift -= 4) text += kDigits[character >> shift & 15];
    return text;
}

}  // namespace

void GroupCodes::Pairs(std::string_view pairs) {
    bool inCode = true;
    for (const char letter : pairs) {
        const bool ends = letter == (inCode ? '=' : '|');
        out_ << (ends ? '\n' : letter);
        if (ends) inCode = !inCode;
    }
}

void GroupCodes::Text(int code, std::string_view value) {
    out_ << std::int64_t{code} << '\n' << value << '\n';
}

void GroupCodes::Number(int code, std::int64_t value) {
    out_ << std::int64_t{code} << '\n' << value << '\n';
}

void GroupCodes::Real(int code, double value) {
    out_ << std::int64_t{code} << '\n' << value << '\n';
}

void GroupCodes::Length(int code, std::int64_t parts) {
    char line[2 * kNumberBytes];
    out_ << Between(line, PutLength(PutCode(line, code), parts));
}

void GroupCodes::Place(int code, Position position) {
    char lines[4 * kNumberBytes];
    char* at = PutLength(PutCode(lines, code), position.x);
    at = PutLength(PutCode(at, code + 10), position.y);
    out_ << Between(lines, at);
}

void GroupCodes::Handle(int code, std::uint64_t handle) {
    constexpr int kHexadecimal = 16;
    char line[2 * kNumberBytes];
    char* at = PutCode(line, code);
    at = std::to_chars(at, at + kNumberBytes, handle, kHexadecimal).ptr;
    *at++ = '\n';
    out_ << Between(line, at);
}

std::string EscapedValue(std::string_view utf8) {
    std::string value;
    // Wide characters are UTF-16 on Windows: of a pair the first part stands for both.
    const auto isPairSecond = [](unsigned c) { return c >= 0xDC00 && c < 0xE000; };
    const auto isBeyond = [](unsigned c) { return c > 0xFFFF || (c >= 0xD800 && c < 0xDC00); };
    const std::wstring text = Utf8ToWide(utf8);
    const auto startsCode = [&](std::size_t i) { return text.compare(i, 3, L"\\U+") == 0; };
    for (std::size_t i = 0; i < text.size(); ++i) {
        const unsigned character = std::char_traits<wchar_t>::to_int_type(text[i]);
        if (character < 0x20 || character == 0x7F) {
            value += ' ';
        } else if (character == '^') {
            value += "^ ";
        } else if (character == '%' && i + 1 < text.size() && text[i + 1] == L'%') {
            value += "%%%";
        } else if (isBeyond(character)) {
            value += '?';
        } else if (character > 0x7F || startsCode(i)) {
            if (!isPairSecond(character)) value += UnicodeEscape(character);
        } else {
            value += static_cast<char>(character);
        }
    }
    return value;
}

}  // namespace qm::dxf
