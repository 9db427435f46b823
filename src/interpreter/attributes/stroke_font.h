// The stroke font of labels and symbols: one byte string a character, walked by a local cursor.
//
// Entry points: StrokeGlyph finds the glyph of a mapped label byte, GlyphCursor walks its strokes.
// The outlines are drawn as text in stroke_font_ascii.h and stroke_font_latin.h and encoded by the
// compiler (stroke_font_encoding.h). Tests: tests/interpreter/stroke_font_test.cpp.
#pragma once

#include <array>
#include <cstddef>
#include <optional>

namespace qm {

inline constexpr int kFirstGlyphCode = 32;
inline constexpr int kGlyphCount = 224;
// The grid: x from 0 to kGlyphRight, y from the lowest descender to the highest accent, within
// which lines of text stay apart.
inline constexpr int kGlyphRight = 12;
inline constexpr int kGlyphBottom = -4;
inline constexpr int kGlyphTop = 16;
// No glyph has more points.
inline constexpr std::size_t kMostGlyphPoints = 64;
// The character sets in which some codes hold other letters; the numbers are those of SD and AD.
inline constexpr int kCharSetNorwegian = 36;
inline constexpr int kCharSetGerman = 39;

// The glyphs of the codes 32-255, code - 32 as index: ASCII, the letters of code page 850 at
// 128-159, Latin-1 from 160. 127 is blank; codes that show the same letter share one glyph.
//
// A glyph is one leading byte, then pairs of bytes, then a zero byte. A pair holds in its first
// byte the pen (top bit: 1 draws, 0 moves) and x + 62, in its second y as a signed byte; y may be
// 0, so only the first byte of a pair tells the end. x is in twelfths of the character width
// (0-12), y in twelfths of the character height above the baseline (-4 for descenders, 12 for
// capitals, up to 16 for their accents).
extern const std::array<const unsigned char*, kGlyphCount> StrokeFont;

// Returns the glyph of `code` as it stands after the character-set mapping, nullptr outside 32-255.
// Set 36 shows Ø ø å æ at 249-252 and set 39 shows ß at 225, the codes to which the mapping sends
// these letters; every other set shows Latin-1 there. The glyph lives as long as the program.
const unsigned char* StrokeGlyph(int code, int characterSet = 0);

// One step of a glyph: where to go on the grid of twelfths, and whether the pen draws on the way.
struct GlyphStroke {
    int x = 0;
    int y = 0;
    bool down = false;
};

// Walks the strokes of one glyph; it keeps its place in itself, so labels can be drawn on several
// threads at once.
class GlyphCursor {
  public:
    // `glyph` must be a glyph of StrokeFont, or nullptr, which has no strokes.
    explicit GlyphCursor(const unsigned char* glyph)
        : next_(glyph == nullptr ? &kNoStrokes : glyph + 1) {}

    // Returns the next stroke, or nothing at the end of the glyph and after it.
    std::optional<GlyphStroke> Next() {
        if (AtEnd()) return std::nullopt;
        return Take();
    }

    bool AtEnd() const { return *next_ == 0; }
    // The next stroke draws.
    bool Draws() const { return *next_ >= 128; }
    // The same as Next, not at the end.
    GlyphStroke Take() {
        const int first = next_[0];
        const int second = next_[1];
        next_ += 2;
        return GlyphStroke{(first & 0x7F) - 62, (second ^ 0x80) - 0x80, first >= 128};
    }

  private:
    static constexpr unsigned char kNoStrokes = 0;

    const unsigned char* next_;
};

}  // namespace qm
