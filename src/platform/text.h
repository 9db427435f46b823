// Conversions between wide and 8-bit text, of our own because the C library's depend on the locale;
// status codes as text.
//
// They serve both widths of wchar_t: code points above 0xFFFF are surrogate pairs where it has 2
// bytes. Test: tests/platform/text_test.cpp.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace qm {

// Plot text: each byte becomes the character of the same number (Latin-1).
std::wstring BytesToWide(std::string_view bytes);
// The way back; characters above 255 become '?'.
std::string WideToBytes(std::wstring_view text);

// File names and output of the tool. Bytes that are no UTF-8 survive a round trip: each becomes a
// lone low surrogate 0xDC80 to 0xDCFF and turns back into its byte. Other lone surrogates become
// U+FFFD.
std::wstring Utf8ToWide(std::string_view bytes);
std::string WideToUtf8(std::wstring_view text);

// Equality that ignores the case of A to Z and nothing else.
bool EqualIgnoringAsciiCase(std::wstring_view a, std::wstring_view b) noexcept;

// "S_OK", "E_FAIL", ... for the codes this module and its hosts use, "0x8003001D" for all others.
std::string StatusName(HRESULT status);

}  // namespace qm
