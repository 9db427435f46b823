#include "render/pdf/pdf_syntax.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "platform/text.h"

namespace qm::pdf {

namespace {

constexpr std::string_view kHexDigits = "0123456789ABCDEF";

bool IsHighSurrogate(char32_t code) { return code >= 0xD800 && code <= 0xDBFF; }
bool IsLowSurrogate(char32_t code) { return code >= 0xDC00 && code <= 0xDFFF; }

void AppendUnit(std::string& to, char32_t unit) {
    for (int shift = 12; shift >= 0; shift -= 4) to += kHexDigits[unit >> shift & 15];
}

}  // namespace

std::string Real(double number, int decimals) {
    constexpr double kLimit = 1e12;
    if (std::isnan(number)) number = 0.0;
    if (!(std::abs(number) < kLimit)) number = number > 0.0 ? kLimit : -kLimit;
    char text[64];
    const char* end =
        std::to_chars(text, text + sizeof text, number, std::chars_format::fixed, decimals).ptr;
    while (end[-1] == '0' && decimals > 0) --end;
    if (end[-1] == '.') --end;
    const std::string_view shortest(text, static_cast<std::size_t>(end - text));
    return shortest == "-0" ? "0" : std::string(shortest);
}

std::string MatrixText(const Matrix& m) {
    constexpr int kScaleDecimals = 12;
    constexpr int kOffsetDecimals = 5;
    return Real(m.a, kScaleDecimals) + ' ' + Real(m.b, kScaleDecimals) + ' ' +
           Real(m.c, kScaleDecimals) + ' ' + Real(m.d, kScaleDecimals) + ' ' +
           Real(m.e, kOffsetDecimals) + ' ' + Real(m.f, kOffsetDecimals);
}

std::u32string CodePoints(std::string_view text) {
    if (std::all_of(text.begin(), text.end(), [](char c) { return (c & 0x80) == 0; })) {
        return {text.begin(), text.end()};
    }
    const std::wstring wide = Utf8ToWide(text);
    std::u32string codes;
    for (std::size_t i = 0; i < wide.size(); ++i) {
        auto code = static_cast<char32_t>(wide[i]);
        if (IsHighSurrogate(code) && i + 1 < wide.size() &&
            IsLowSurrogate(static_cast<char32_t>(wide[i + 1]))) {
            ++i;
            code = 0x10000 + ((code - 0xD800) << 10) + (static_cast<char32_t>(wide[i]) - 0xDC00);
        }
        // What stands alone is a byte that was no UTF-8.
        if (!IsHighSurrogate(code) && !IsLowSurrogate(code) && code <= 0x10FFFF) codes += code;
    }
    return codes;
}

std::string Utf16Hex(char32_t code) {
    std::string text;
    if (code > 0xFFFF) {
        AppendUnit(text, 0xD800 + ((code - 0x10000) >> 10));
        AppendUnit(text, 0xDC00 + ((code - 0x10000) & 0x3FF));
    } else {
        AppendUnit(text, code);
    }
    return text;
}

std::string TextString(std::string_view text) {
    const std::u32string codes = CodePoints(text);
    std::string plain = "(";
    for (const char32_t code : codes) {
        if (code < 32 || code > 126) {
            std::string utf16 = "<FEFF";
            for (const char32_t each : codes) utf16 += Utf16Hex(each);
            return utf16 + '>';
        }
        if (code == '(' || code == ')' || code == '\\') plain += '\\';
        plain += static_cast<char>(code);
    }
    return plain + ')';
}

}  // namespace qm::pdf
