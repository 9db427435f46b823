// See labels.h. Handlers: LB CP.
#include "interpreter/attributes/labels.h"

#include <algorithm>
#include <array>

#include "common/numbers.h"
#include "common/units.h"
#include "interpreter/attributes/stroke_font.h"
#include "interpreter/handlers.h"
#include "interpreter/lexer.h"
#include "interpreter/pen_motion.h"
#include "interpreter/reading.h"

namespace qm {

namespace {

// Characters kept of one label; the rest is read and lost.
constexpr std::size_t kMaxLabelLength = 256;
constexpr int kRoomlessCode = 15;  // the one code that takes no room

// A character cell is this many character widths wide, the gap to the next included.
constexpr double kCellWidths = 1.4;
constexpr double kGridSteps = 12.0;

enum Path : std::int32_t { kRight, kDown, kLeft, kUp };

PointD Scaled(PointD v, double factor) { return {v.x * factor, v.y * factor}; }

}  // namespace

// Quirk: off the ordinary path the step is no perpendicular of the direction. It is the direction
// itself, mirrored, and for two paths its y component is multiplied by the character height, so
// only a label at angle 0 stays near the pen.
PointD AdvanceVector(const LabelState& label) {
    const PointD direction = label.direction;
    if (label.TextPath == kRight) {
        return Scaled(direction, label.CharWidth * kCellWidths * label.CharSpacingFactor);
    }
    PointD step = Scaled(Scaled(direction, label.CharWidth), kCellWidths);
    if (label.TextPath == kDown || label.TextPath == kUp) step.y = -step.y * label.CharHeight;
    if (label.TextPath == kDown || label.TextPath == kLeft) step = {-step.x, -step.y};
    return Scaled(step, label.CharSpacingFactor);
}

// Quirk: the vector lies along the baseline, not across it, so the lines of a label stand to the
// left of each other. Off the ordinary path it is spaced by the character factor.
PointD LineFeedVector(const LabelState& label) {
    const PointD direction = label.direction;
    if (label.TextPath == kRight) {
        return Scaled(direction, label.CharHeight * label.LineSpacingFactor);
    }
    PointD step = Scaled(direction, label.CharWidth);
    if (label.TextPath == kLeft) step.y = -step.y * label.CharHeight;
    if (label.TextPath == kDown || label.TextPath == kLeft) step = {-step.x, -step.y};
    return Scaled(step, label.CharSpacingFactor);
}

// Quirk: the width counts whole cells, the gap behind the last character too, and knows no extra
// spacing, so centred and right-aligned text stands a little to the left.
PointD LabelOriginOffset(const LabelState& label, std::size_t count) {
    if (count == 0) return {};
    const double width = label.CharWidth * static_cast<double>(count) * kCellWidths;
    const auto shift = [](double size, std::int32_t place) {
        return place == 0 ? 0.0 : -size * place / 2.0;
    };
    const double dx = shift(width, label.LabelOriginH);
    const double dy = shift(label.CharHeight, label.LabelOriginV);
    const PointD d = label.direction;
    return {d.x * dx - d.y * dy, d.y * dx + d.x * dy};
}

int MapCharacter(std::uint8_t byte, std::int32_t characterSet) {
    if (characterSet == kCharSetGerman) {
        if (byte == '{') return 132;
        if (byte == '}') return 129;
        return byte == '~' ? 225 : byte;
    }
    if (characterSet == kCharSetNorwegian) {
        if (byte == '\\' || byte == 216) return 249;
        if (byte == '{' || byte == 230) return 252;
        if (byte == '|' || byte == 248) return 250;
        return byte == '}' || byte == 229 ? 251 : byte;
    }
    return byte == 219 ? 154 : byte;
}

GlyphTransform::GlyphTransform(const LabelState& label)
    : direction_(label.direction),
      unitX_(label.CharWidth / kGridSteps),
      slantX_(label.SlantTangent * (label.CharHeight / kGridSteps)) {
    for (int x = 0; x <= kGlyphRight; ++x) across_[static_cast<std::size_t>(x)] = Across(x, 0);
    for (int y = kGlyphBottom; y <= kGlyphTop; ++y) {
        const double localY = y * (label.CharHeight / kGridSteps);
        up_[static_cast<std::size_t>(y - kGlyphBottom)] = {-(direction_.y * localY),
                                                           direction_.x * localY};
    }
    for (const PointD product : {across_.back(), up_.back()}) {
        reach_ += std::fabs(product.x) + std::fabs(product.y);
    }
}

namespace {

// The strokes of the letter at hand, in plotter units.
class LetterStrokes {
  public:
    // `pointOf` answers where a point of the font's grid lies. Moves without a line are left out.
    template <typename PointOf>
    void Collect(const unsigned char* glyph, const PointOf& pointOf) {
        count_ = runs_ = 0;
        GlyphCursor cursor(glyph);
        PointI* point = points_.data();
        while (!cursor.AtEnd()) {
            GlyphStroke stroke = cursor.Take();
            PointI* const begin = point;
            *point++ = pointOf(stroke.x, stroke.y);
            while (cursor.Draws()) {
                stroke = cursor.Take();
                *point++ = pointOf(stroke.x, stroke.y);
            }
            if (point - begin < 2) {
                point = begin;
            } else {
                lengths_[runs_++] = static_cast<std::uint8_t>(point - begin);
            }
        }
        count_ = static_cast<std::size_t>(point - points_.data());
    }
    bool IsEmpty() const { return runs_ == 0; }
    Strokes All() const { return {points_.data(), count_, lengths_.data(), runs_}; }

  private:
    std::array<PointI, kMostGlyphPoints> points_;
    std::array<std::uint8_t, kMostGlyphPoints> lengths_;
    std::size_t count_ = 0;
    std::size_t runs_ = 0;
};

// The same as moving and drawing to the points, of which each is converted once.
void DrawStrokes(Drawing& drawing, const GlyphTransform& transform, const unsigned char* glyph,
                 PointD origin, LetterStrokes& strokes) {
    const CoordinateState& c = drawing.coordinates;
    if (!c.scaleOn && transform.IsPlain(origin)) {
        strokes.Collect(glyph, [&](int x, int y) { return transform.PlainAt(origin, x, y); });
    } else {
        strokes.Collect(glyph,
                        [&](int x, int y) { return c.ToPlotter(transform.At(origin, x, y)); });
    }
    if (!strokes.IsEmpty()) drawing.EmitLetter(strokes.All());
}

// Draws a glyph as solid lines through the pen moves; in polygon mode they become vertices. The pen
// position stays. Codes without a glyph (null) go through the line attributes all the same.
// Quirk: the line type is restored, the dash pattern is not; it stays solid until the next LT.
void DrawGlyph(Drawing& drawing, const GlyphTransform& transform, const unsigned char* glyph,
               PointD origin, LetterStrokes& strokes) {
    LineState& lines = drawing.lines;
    const std::int32_t lineType = lines.EmittedLineType;
    const PointD pen = drawing.motion.penPos;
    lines.SendLineType(0, drawing.out);
    lines.SendPattern(1.0, -1, drawing.out);
    if (drawing.polygon.mode || !drawing.DrawsLines()) {
        GlyphCursor cursor(glyph);
        while (const auto stroke = cursor.Next()) {
            const PointD target = transform.At(origin, stroke->x, stroke->y);
            if (stroke->down) {
                drawing.DrawTo(target);
            } else {
                drawing.MoveTo(target);
            }
        }
    } else {
        DrawStrokes(drawing, transform, glyph, origin, strokes);
    }
    lines.SendLineType(lineType, drawing.out);
    drawing.motion.penPos = pen;
}

// Reads up to the terminator into `text` (room for kMaxLabelLength bytes); returns how many are
// kept. A label that the end of the input cuts off keeps the stale byte behind the last one.
std::size_t ReadLabelText(InputReader& input, const LabelState& label, char* text) {
    std::size_t length = 0;
    while (true) {
        const std::uint8_t c = input.GetRaw();
        if (c == label.LabelTerminator || input.Over()) break;
        if (length < kMaxLabelLength) text[length++] = static_cast<char>(c);
    }
    if (label.PrintTerminator && length < kMaxLabelLength) {
        text[length++] = static_cast<char>(label.LabelTerminator);
    }
    return length;
}

// Draws `count` characters from the pen position on; returns where a further one would stand.
PointD DrawCharacters(const LabelState& label, Drawing& drawing, const char* text,
                      std::size_t count) {
    const PointD advance = AdvanceVector(label);
    const GlyphTransform transform(label);
    LetterStrokes strokes;
    PointD origin = drawing.motion.penPos + LabelOriginOffset(label, count);
    for (std::size_t i = 0; i < count; ++i) {
        const int code = MapCharacter(static_cast<std::uint8_t>(text[i]), label.CurrentCharSet);
        DrawGlyph(drawing, transform, StrokeGlyph(code, label.CurrentCharSet), origin, strokes);
        if (code != kRoomlessCode) origin = origin + advance;
    }
    return origin;
}

// A piece of a label as the builder's text element; text[count] must be 0.
PointD DrawPiece(const LabelState& label, Drawing& drawing, const char* text, std::size_t count) {
    drawing.out.BeginLabelExtent(text, TruncateToInt32(label.CharHeight));
    const PointD end = DrawCharacters(label, drawing, text, count);
    drawing.out.EndLabelExtent(text);
    return end;
}

// Draws a label line by line (DrawGridLabel in the other reading) and leaves the pen behind its
// last character. Quirk: that holds behind a closing CR or LF as well, whose own move is lost. The
// line ends in `text` (room for length + 1) are overwritten, so that each piece ends in a zero.
void DrawLabel(const LabelState& label, Drawing& drawing, char* text, std::size_t length) {
    PointD& pen = drawing.motion.penPos;
    PointD origin = pen;
    PointD lineStart = pen;
    char* const end = text + length;
    const auto isLineEnd = [](char c) { return c == kCarriageReturn || c == kLineFeed; };
    while (text < end) {
        char* const pieceEnd =
            label.TransparentData == 0 ? std::find_if(text, end, isLineEnd) : end;
        const char control = pieceEnd == end ? '\0' : *pieceEnd;
        *pieceEnd = '\0';
        origin = DrawPiece(label, drawing, text, static_cast<std::size_t>(pieceEnd - text));
        if (control == kLineFeed) {
            const PointD lineFeed = LineFeedVector(label);
            lineStart = lineStart - lineFeed;
            pen = origin - lineFeed;
        } else if (control == kCarriageReturn) {
            pen = lineStart;
        }
        text = pieceEnd + (pieceEnd < end ? 1 : 0);
    }
    pen = origin;
}

}  // namespace

void DrawSymbol(const LabelState& label, Drawing& drawing) {
    if (drawing.reading.labelsOnGrid) return DrawGridSymbol(label, drawing);
    const PointD half{label.CharWidth / 2.0, label.CharHeight / 2.0};
    LetterStrokes strokes;
    DrawGlyph(drawing, GlyphTransform(label), StrokeGlyph(label.SymbolChar, label.CurrentCharSet),
              drawing.motion.penPos - half, strokes);
}

namespace handlers {

// LB text terminator
void Label(InputReader& input, LabelState& label, Drawing& drawing) {
    Output& out = drawing.out;
    if (label.StrokeWeight != kPenStrokeWeight) out.SetLineWidth(label.StrokeWeight);
    std::array<char, kMaxLabelLength + 1> text;
    const std::size_t length = ReadLabelText(input, label, text.data());
    if (drawing.reading.labelsOnGrid) {
        DrawGridLabel(label, drawing, text.data(), length);
    } else {
        DrawLabel(label, drawing, text.data(), length);
    }
    out.SetLineWidth(drawing.lines.EmittedWidth);
}

// CP [spaces, lines]; otherwise one line feed. Only the pen position changes, no vertex is
// recorded. Quirk: a positive number of lines moves along the line-feed vector, CP alone against
// it.
void CharacterPlot(Parameters& in, LabelState& label, Drawing& drawing) {
    if (drawing.reading.labelsOnGrid) return MoveOnGrid(in, label, drawing);
    PenMotion& motion = drawing.motion;
    const PointD lineFeed = LineFeedVector(label);
    PointD count;
    if (!in.GetPoint(count)) {
        motion.penPos = motion.penPos - lineFeed;
        return;
    }
    motion.penPos =
        motion.penPos + (Scaled(AdvanceVector(label), count.x) + Scaled(lineFeed, count.y));
}

}  // namespace handlers
}  // namespace qm
