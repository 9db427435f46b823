// The tables of the stroke font, computed by the compiler from the outlines.
//
// Entry points: StrokeFont and StrokeGlyph (stroke_font.h). All glyphs lie end to end in one byte
// array; the table points into it. Tests: tests/interpreter/stroke_font_test.cpp.
#include "interpreter/attributes/stroke_font.h"

#include <cstddef>
#include <iterator>

#include "interpreter/attributes/stroke_font_encoding.h"
#include "interpreter/attributes/stroke_font_latin.h"

namespace qm {
namespace {

constexpr int kLastAscii = 126;
constexpr int kFirstLatin = 160;

// What code page 850 has at 128-159, as Latin-1 codes; the florin sign keeps its own code.
constexpr int kCodePage850[32] = {0xC7, 0xFC, 0xE9, 0xE2, 0xE4, 0xE0, 0xE5, 0xE7,
                                  0xEA, 0xEB, 0xE8, 0xEF, 0xEE, 0xEC, 0xC4, 0xC5,
                                  0xC9, 0xE6, 0xC6, 0xF4, 0xF6, 0xF2, 0xFB, 0xF9,
                                  0xFF, 0xD6, 0xDC, 0xF8, 0xA3, 0xD8, 0xD7, kFlorin.code};

// Returns the code whose outline `code` shows: its own, or that of the letter it repeats.
constexpr int OutlineCode(int code) {
    if (code == 127 || code == 0xA0) return ' ';
    if (code == 0xAD) return '-';
    if (code >= 128 && code < kFirstLatin) return kCodePage850[code - 128];
    return code;
}

constexpr const Outline& OutlineOf(int code) {
    if (code == kFlorin.code) return kFlorin;
    if (code <= kLastAscii) return kAsciiOutlines[code - kFirstGlyphCode];
    return kLatinOutlines[code - kFirstLatin];
}

// Says whether each row of a table stands at the place of its code.
template <std::size_t kRows>
constexpr bool InOrder(const Outline (&rows)[kRows], int firstCode) {
    for (const Outline& row : rows) {
        if (row.code != firstCode++) return false;
    }
    return true;
}
static_assert(std::size(kAsciiOutlines) == kLastAscii - kFirstGlyphCode + 1 &&
              InOrder(kAsciiOutlines, kFirstGlyphCode));
static_assert(std::size(kLatinOutlines) == 256 - kFirstLatin &&
              InOrder(kLatinOutlines, kFirstLatin));

// Calls visit(code) for each code that has an outline of its own.
template <typename Visit>
constexpr void ForEachOutline(Visit visit) {
    for (int code = kFirstGlyphCode; code < kFirstGlyphCode + kGlyphCount; ++code) {
        if (OutlineCode(code) == code) visit(code);
    }
}

constexpr bool PointsStayInBound() {
    bool stay = true;
    ForEachOutline([&stay](int code) {
        stay = stay && EncodedSize(OutlineOf(code)) <= 2 * kMostGlyphPoints + 2;
    });
    return stay;
}
static_assert(PointsStayInBound());

constexpr std::size_t TotalSize() {
    std::size_t size = 0;
    ForEachOutline([&size](int code) { size += EncodedSize(OutlineOf(code)); });
    return size;
}

// Every glyph end to end, and where each begins.
struct EncodedFont {
    unsigned char bytes[TotalSize()] = {};
    std::size_t start[kGlyphCount] = {};
};

constexpr EncodedFont EncodeFont() {
    EncodedFont font;
    unsigned char* out = font.bytes;
    ForEachOutline([&font, &out](int code) {
        font.start[code - kFirstGlyphCode] = static_cast<std::size_t>(out - font.bytes);
        out = EncodeGlyph(OutlineOf(code), out);
    });
    return font;
}

constexpr EncodedFont kFont = EncodeFont();

constexpr std::array<const unsigned char*, kGlyphCount> PointIntoFont() {
    std::array<const unsigned char*, kGlyphCount> glyphs = {};
    for (int code = kFirstGlyphCode; code < kFirstGlyphCode + kGlyphCount; ++code) {
        const std::size_t start = kFont.start[OutlineCode(code) - kFirstGlyphCode];
        glyphs[static_cast<std::size_t>(code - kFirstGlyphCode)] = kFont.bytes + start;
    }
    return glyphs;
}

// Returns the Latin-1 code of the letter that `code` means under `characterSet`.
int LetterUnderSet(int code, int characterSet) {
    if (characterSet == kCharSetGerman && code == 225) return 0xDF;
    if (characterSet != kCharSetNorwegian) return code;
    switch (code) {
        case 249:
            return 0xD8;
        case 250:
            return 0xF8;
        case 251:
            return 0xE5;
        case 252:
            return 0xE6;
        default:
            return code;
    }
}

}  // namespace

extern constexpr std::array<const unsigned char*, kGlyphCount> StrokeFont = PointIntoFont();

const unsigned char* StrokeGlyph(int code, int characterSet) {
    if (code < kFirstGlyphCode || code >= kFirstGlyphCode + kGlyphCount) return nullptr;
    const int letter = LetterUnderSet(code, characterSet);
    return StrokeFont[static_cast<std::size_t>(letter - kFirstGlyphCode)];
}

}  // namespace qm
