// Labels: text drawn with the stroke font, and symbol mode.
//
// Commands LB CP in labels.cpp, the character attributes in character_attributes.cpp, labels as a
// plotter writes them in label_grid.cpp, the glyphs in stroke_font.h. Where a character, the next
// one and the next line go is computed by the pure functions below. Tests:
// tests/interpreter/attributes/labels_test.cpp, tests/interpreter/reading_test.cpp.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "common/geometry.h"
#include "common/numbers.h"
#include "interpreter/attributes/stroke_font.h"

namespace qm {

struct Drawing;
struct Parameters;

// The stroke weight (SD kind 6) that leaves label strokes the width of the pen.
inline constexpr std::int32_t kPenStrokeWeight = 9999;

// Labels on the grid of character cells (label_grid.cpp): sizes and directions as given, because a
// relative one follows P1 and P2.
struct LabelGrid {
    PointD size{75.0, 108.0};  // plotter units, or percent of the distance of P1 and P2
    bool relativeSize = false;
    PointD run{1.0, 0.0};  // DI's run and rise, or DR's in percent of that distance
    bool relativeDirection = false;
    bool linesReversed = false;  // DV's second number
    bool clear = false;          // LO11 to LO19: off the point by half a character
    PointD lineStart;            // where CR goes, plotter units
    PointD textEnd;              // where the last label or CP left the pen, plotter units
};

struct LabelState {
    std::uint8_t LabelTerminator = 3;
    bool PrintTerminator = false;  // DT mode 0: the terminator is drawn too
    double CharWidth = 60.0;       // current units
    double CharHeight = 120.0;
    PointD direction{1.0, 0.0};  // cosine and sine of the label's angle
    double SlantTangent = 0.0;
    std::int32_t TextPath = 0;  // DV
    double CharSpacingFactor = 1.0;
    double LineSpacingFactor = 1.0;
    std::int32_t LabelOriginH = 0;  // 0 left, 1 centre, 2 right
    std::int32_t LabelOriginV = 0;  // 0 bottom, 1 middle, 2 top
    std::int32_t StandardCharSet = 0;
    std::int32_t AlternateCharSet = 0;
    std::int32_t CurrentCharSet = 0;
    std::int32_t StrokeWeight = 0;     // sent as the width of label strokes unless kPenStrokeWeight
    std::uint8_t SymbolChar = 0;       // 0: symbol mode off
    std::int32_t TransparentData = 0;  // non-zero: CR and LF in a label are characters
    LabelGrid grid;
};

// From one character's origin to the next one's, in current units.
PointD AdvanceVector(const LabelState& label);

// What a line feed subtracts from the position, in current units.
PointD LineFeedVector(const LabelState& label);

// From the pen to the origin of the first of `count` characters, in current units: the label origin
// (LO), turned with the text. Zero for an empty text.
PointD LabelOriginOffset(const LabelState& label, std::size_t count);

// The font's code for a label byte under a character set (a number of SD or AD).
int MapCharacter(std::uint8_t byte, std::int32_t characterSet);

// Puts points of the glyph grid into current units: size, slant and direction of a label state,
// taken once for all characters of a text.
class GlyphTransform {
  public:
    explicit GlyphTransform(const LabelState& label);

    // The point (x, y) of the font's grid, in twelfths of width and height, of a glyph whose origin
    // is `origin`.
    PointD At(PointD origin, int x, int y) const {
        const PointD up = up_[static_cast<std::size_t>(y - kGlyphBottom)];
        const PointD across = slantX_ == 0.0 ? across_[static_cast<std::size_t>(x)] : Across(x, y);
        return {origin.x + across.x + up.x, origin.y + across.y + up.y};
    }
    // All points of a glyph at `origin` are within kSmall, and text is not slanted.
    bool IsPlain(PointD origin) const {
        return slantX_ == 0.0 && std::fabs(origin.x) < kSmall / 2.0 &&
               std::fabs(origin.y) < kSmall / 2.0 && reach_ < kSmall / 2.0;
    }
    // At, truncated, when IsPlain.
    PointI PlainAt(PointD origin, int x, int y) const {
        const PointD up = up_[static_cast<std::size_t>(y - kGlyphBottom)];
        const PointD across = across_[static_cast<std::size_t>(x)];
        return {TruncateSmall(origin.x + across.x + up.x),
                TruncateSmall(origin.y + across.y + up.y)};
    }

  private:
    // What the way along the text adds to a point.
    PointD Across(int x, int y) const {
        const double localX = x * unitX_ + slantX_ * y;
        return {direction_.x * localX, direction_.y * localX};
    }

    PointD direction_;
    double unitX_;
    double slantX_;       // what a twelfth of height adds to x
    double reach_ = 0.0;  // no point lies further from the origin; infinite, or no number, rather
    // Products, because the same ones come back for each point; they are added in the order in
    // which they always were, and the result is the same to the last bit.
    std::array<PointD, kGlyphRight + 1> across_;           // by x, without slant
    std::array<PointD, kGlyphTop - kGlyphBottom + 1> up_;  // by y
};

// Draws the symbol-mode character about the pen position, which stays. The character's code is not
// mapped.
void DrawSymbol(const LabelState& label, Drawing& drawing);

// ---------------------------------------------------------------- Labels as a plotter writes them
//
// On a grid of character cells: one and a half character widths by two heights, in plotter units
// whatever the scale is. LB, CP, SM and the character attributes come here when the reading puts
// labels on the grid (reading.h). Source: HP-GL/2 reference, "The character group".

// LB: control characters move without a mark, LF goes a line down, CR to the carriage-return point,
// a backspace one cell back; each line is placed by LO for itself. The pen ends behind the last
// character, with a centred or right-aligned origin where it was. Nothing in polygon mode.
// `text` has room for length + 1 bytes and is overwritten.
void DrawGridLabel(LabelState& label, Drawing& drawing, char* text, std::size_t length);

// SM's character about the pen position, which stays.
void DrawGridSymbol(const LabelState& label, Drawing& drawing);

// CP [spaces, lines]: lines count upwards and move the carriage-return point too; alone it is CR
// and LF.
void MoveOnGrid(Parameters& in, LabelState& label, Drawing& drawing);

// SI, with `given` numbers in centimetres: none gives 0.285 x 0.375, one changes nothing.
void SetAbsoluteSize(LabelState& label, int given, PointD size);
// SR, in percent: none gives 0.75 x 1.5, one changes nothing.
void SetRelativeSize(LabelState& label, int given, PointD percent);
// DI and DR (`relative`); 0, 0 changes nothing.
void SetRun(LabelState& label, PointD run, bool relative);
// SD kinds 3 (characters an inch) and 4 (points); other kinds and values of 0 or less change
// nothing.
void SetFontSize(LabelState& label, std::int16_t kind, double value);

}  // namespace qm
