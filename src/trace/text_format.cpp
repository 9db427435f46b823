// See text_format.h.
#include "trace/text_format.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <cstring>

namespace qm {

namespace {

constexpr char kHexDigits[] = "0123456789ABCDEF";

void AppendByte(std::string& out, std::uint8_t byte) {
    out += kHexDigits[byte >> 4];
    out += kHexDigits[byte & 15];
}

}  // namespace

void AppendInteger(std::string& out, std::int64_t value) {
    std::array<char, 24> text;
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value);
    out.append(text.data(), end.ptr);
}

void AppendDouble(std::string& out, double value) {
    std::array<char, 40> text;
    std::snprintf(text.data(), text.size(), "%.9g", value);
    out += text.data();
    if (std::strpbrk(text.data(), ".eni") == nullptr) out += ".0";
}

void AppendQuoted(std::string& out, std::string_view text) {
    out += '"';
    for (const char c : text) {
        const auto byte = static_cast<std::uint8_t>(c);
        if (byte < 32 || byte >= 127) {
            out += "\\x";
            AppendByte(out, byte);
            continue;
        }
        if (c == '"' || c == '\\') out += '\\';
        out += c;
    }
    out += '"';
}

void AppendHex(std::string& out, const std::uint8_t* bytes, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) AppendByte(out, bytes[i]);
}

void AppendHexNumber(std::string& out, std::uint32_t value, int digits) {
    std::array<char, 16> text;
    std::snprintf(text.data(), text.size(), "0x%0*X", digits, value);
    out += text.data();
}

void AppendPoints(std::string& out, const PointI* points, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        out += ' ';
        AppendInteger(out, points[i].x);
        out += ',';
        AppendInteger(out, points[i].y);
    }
}

}  // namespace qm
