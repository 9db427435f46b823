// Turns outlines written as text into the bytes of the stroke font, at compile time.
//
// An outline lists strokes parted by "|"; a stroke is a row of points "x,y" to which the pen moves
// up for the first one and down for the others: "2,0 6,12 10,0 | 4,4 8,4". A slip in an outline
// reaches a throw, which the compiler reports as an error. Used by stroke_font.cpp only; tests:
// tests/interpreter/stroke_font_test.cpp.
#pragma once

#include <cstddef>
#include <string_view>

#include "interpreter/attributes/stroke_font.h"

namespace qm {

// The text of one character: a base and, for accented letters, a mark raised by `raise` twelfths.
struct Outline {
    int code = 0;  // ASCII or Latin-1; it is the place in its table, kept for the reader
    std::string_view base;
    std::string_view mark = "";
    int raise = 0;
};

// Drawing ignores the byte before the pairs; every glyph carries the same one.
inline constexpr unsigned char kGlyphLead = 8;

// Returns the number of points in an outline's text: each has one comma.
constexpr std::size_t CountPoints(std::string_view text) {
    std::size_t points = 0;
    for (const char c : text) {
        if (c == ',') ++points;
    }
    return points;
}

// Returns the bytes that the outline's glyph takes, the leading and the zero byte included.
constexpr std::size_t EncodedSize(const Outline& outline) {
    return 2 * (CountPoints(outline.base) + CountPoints(outline.mark)) + 2;
}

// Reads the parts of an outline's text from left to right.
class OutlineReader {
  public:
    constexpr explicit OutlineReader(std::string_view text) : text_(text) {}

    constexpr bool AtEnd() const { return at_ == text_.size(); }

    // Takes blanks and `c`, if it stands next; says whether it did.
    constexpr bool Accept(char c) {
        while (!AtEnd() && text_[at_] == ' ') ++at_;
        if (AtEnd() || text_[at_] != c) return false;
        ++at_;
        return true;
    }

    // Takes one coordinate. Anything else than an integer of the grid stops the compilation.
    constexpr int Coordinate() {
        const bool negative = Accept('-');
        if (AtEnd() || text_[at_] < '0' || text_[at_] > '9') throw "a coordinate is missing";
        int value = 0;
        while (!AtEnd() && text_[at_] >= '0' && text_[at_] <= '9') {
            value = 10 * value + (text_[at_++] - '0');
        }
        return negative ? -value : value;
    }

  private:
    std::string_view text_;
    std::size_t at_ = 0;
};

// Writes the pairs of one outline text, raised by `raise`, and returns the place after them.
constexpr unsigned char* EncodeStrokes(std::string_view text, int raise, unsigned char* out) {
    OutlineReader reader(text);
    bool down = false;
    while (!reader.AtEnd()) {
        if (reader.Accept('|')) down = false;
        const int x = reader.Coordinate();
        if (!reader.Accept(',')) throw "a point is x,y";
        const int y = reader.Coordinate() + raise;
        if (x < 0 || x > kGlyphRight || y < kGlyphBottom || y > kGlyphTop)
            throw "a point off the grid";
        *out++ = static_cast<unsigned char>((x + 62) | (down ? 0x80 : 0));
        *out++ = static_cast<unsigned char>(y);
        down = true;
    }
    return out;
}

// Writes the whole glyph of an outline and returns the place after it.
constexpr unsigned char* EncodeGlyph(const Outline& outline, unsigned char* out) {
    *out++ = kGlyphLead;
    out = EncodeStrokes(outline.base, 0, out);
    out = EncodeStrokes(outline.mark, outline.raise, out);
    *out++ = 0;
    return out;
}

}  // namespace qm
