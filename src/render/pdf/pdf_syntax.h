// How numbers, strings and Unicode text are spelt in a PDF file. Test:
// tests/render/pdf/pdf_file_test.cpp.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "render/page_frame.h"

namespace qm::pdf {

// Without exponent or trailing zeros, which PDF does not know; what is no number becomes 0, what is
// beyond any paper a large one.
std::string Real(double number, int decimals = 4);
// The six numbers of a matrix, enough digits for large pages.
std::string MatrixText(const Matrix& matrix);
// `text` (UTF-8) for people to read: "(Page 1)", in UTF-16 when it is not ASCII.
std::string TextString(std::string_view text);
// Four hexadecimal digits a UTF-16 code unit, without delimiters.
std::string Utf16Hex(char32_t code);
// The characters of UTF-8 text; bytes that belong to none are left out.
std::u32string CodePoints(std::string_view text);

}  // namespace qm::pdf
