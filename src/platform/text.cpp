#include "platform/text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <utility>

namespace qm {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kEscapedByte = 0xDC00;  // 0xDC00 + byte, for bytes from 0x80
constexpr bool kNarrowWide = sizeof(wchar_t) == 2;

bool IsHighSurrogate(char32_t code) noexcept { return code >= 0xD800 && code <= 0xDBFF; }
bool IsLowSurrogate(char32_t code) noexcept { return code >= 0xDC00 && code <= 0xDFFF; }
bool IsEscapedByte(char32_t code) noexcept { return code >= 0xDC80 && code <= 0xDCFF; }

char32_t CodeUnit(wchar_t unit) noexcept {
    return static_cast<char32_t>(unit) & (kNarrowWide ? 0xFFFFU : 0xFFFFFFFFU);
}

void AppendWide(std::wstring& text, char32_t code) {
    if (kNarrowWide && code > 0xFFFF) {
        text += static_cast<wchar_t>(0xD800 + ((code - 0x10000) >> 10));
        text += static_cast<wchar_t>(0xDC00 + ((code - 0x10000) & 0x3FF));
    } else {
        text += static_cast<wchar_t>(code);
    }
}

void AppendUtf8(std::string& bytes, char32_t code) {
    const auto tail = [&bytes](char32_t bits) { bytes += static_cast<char>(0x80 | (bits & 0x3F)); };
    if (code < 0x80) {
        bytes += static_cast<char>(code);
    } else if (code < 0x800) {
        bytes += static_cast<char>(0xC0 | (code >> 6));
        tail(code);
    } else if (code < 0x10000) {
        bytes += static_cast<char>(0xE0 | (code >> 12));
        tail(code >> 6);
        tail(code);
    } else {
        bytes += static_cast<char>(0xF0 | (code >> 18));
        tail(code >> 12);
        tail(code >> 6);
        tail(code);
    }
}

// One well-formed sequence at the start of `bytes`, shortest form and no surrogates: its code point
// and length. Length 0 if none.
struct Decoded {
    char32_t code;
    std::size_t length;
};

Decoded DecodeUtf8(std::string_view bytes) noexcept {
    const auto lead = static_cast<std::uint8_t>(bytes[0]);
    if (lead < 0x80) return {lead, 1};
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || bytes.size() < length) return {0, 0};
    char32_t code = lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        const auto next = static_cast<std::uint8_t>(bytes[i]);
        if ((next & 0xC0) != 0x80) return {0, 0};
        code = (code << 6) | (next & 0x3FU);
    }
    constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = IsHighSurrogate(code) || IsLowSurrogate(code);
    if (code < kSmallest[length] || code > 0x10FFFF || surrogate) return {0, 0};
    return {code, length};
}

wchar_t LowerAscii(wchar_t c) noexcept {
    return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c + (L'a' - L'A')) : c;
}

}  // namespace

std::wstring BytesToWide(std::string_view bytes) {
    std::wstring text(bytes.size(), L'\0');
    std::transform(bytes.begin(), bytes.end(), text.begin(),
                   [](char byte) { return static_cast<wchar_t>(static_cast<std::uint8_t>(byte)); });
    return text;
}

std::string WideToBytes(std::wstring_view text) {
    std::string bytes(text.size(), '?');
    std::transform(text.begin(), text.end(), bytes.begin(), [](wchar_t unit) {
        return CodeUnit(unit) > 255 ? '?' : static_cast<char>(static_cast<std::uint8_t>(unit));
    });
    return bytes;
}

std::wstring Utf8ToWide(std::string_view bytes) {
    std::wstring text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        Decoded decoded = DecodeUtf8(bytes);
        if (decoded.length == 0) decoded = {kEscapedByte + static_cast<std::uint8_t>(bytes[0]), 1};
        AppendWide(text, decoded.code);
        bytes.remove_prefix(decoded.length);
    }
    return text;
}

std::string WideToUtf8(std::wstring_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t code = CodeUnit(text[i]);
        const bool pair = kNarrowWide && IsHighSurrogate(code) && i + 1 < text.size() &&
                          IsLowSurrogate(CodeUnit(text[i + 1]));
        if (pair) {
            code = 0x10000 + ((code - 0xD800) << 10) + (CodeUnit(text[++i]) - 0xDC00);
        } else if (IsEscapedByte(code)) {
            bytes += static_cast<char>(code - kEscapedByte);
            continue;
        } else if (IsHighSurrogate(code) || IsLowSurrogate(code) || code > 0x10FFFF) {
            code = kReplacement;
        }
        AppendUtf8(bytes, code);
    }
    return bytes;
}

bool EqualIgnoringAsciiCase(std::wstring_view a, std::wstring_view b) noexcept {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](wchar_t x, wchar_t y) { return LowerAscii(x) == LowerAscii(y); });
}

std::string StatusName(HRESULT status) {
    static constexpr std::pair<HRESULT, const char*> kNames[] = {
        {S_OK, "S_OK"},
        {S_FALSE, "S_FALSE"},
        {E_ABORT, "E_ABORT"},
        {E_FAIL, "E_FAIL"},
        {E_INVALIDARG, "E_INVALIDARG"},
        {E_NOINTERFACE, "E_NOINTERFACE"},
        {E_NOTIMPL, "E_NOTIMPL"},
        {E_OUTOFMEMORY, "E_OUTOFMEMORY"},
        {E_POINTER, "E_POINTER"},
        {E_UNEXPECTED, "E_UNEXPECTED"},
        {STG_E_MEDIUMFULL, "STG_E_MEDIUMFULL"},
        {STG_E_WRITEFAULT, "STG_E_WRITEFAULT"},
    };
    for (const auto& [value, name] : kNames) {
        if (value == status) return name;
    }
    std::array<char, 11> text;
    std::snprintf(text.data(), text.size(), "0x%08X", static_cast<unsigned>(status));
    return text.data();
}

}  // namespace qm
