// Labels as a plotter writes them; see labels.h.

#include <algorithm>
#include <cmath>
#include <utility>

#include "common/numbers.h"
#include "common/units.h"
#include "interpreter/attributes/labels.h"
#include "interpreter/attributes/lines.h"
#include "interpreter/attributes/stroke_font.h"
#include "interpreter/lexer.h"
#include "interpreter/pen_motion.h"

namespace qm {

namespace {

constexpr double kGridCellWidths = 1.5;
constexpr double kCellHeights = 2.0;
// Of a font's height in points capitals take two thirds; the default size is this much wider than
// high.
constexpr double kCapitals = 2.0 / 3.0;
constexpr double kWidthOfHeight = 0.285 / 0.375;
constexpr int kTabColumns = 8;

constexpr char kTab = 9;
constexpr char kVerticalTab = 11;
constexpr char kShiftOut = 14;
constexpr char kShiftIn = 15;

PointD Times(PointD v, double factor) { return {v.x * factor, v.y * factor}; }

// The label's attributes with size and direction worked out, in plotter units.
LabelState Sized(const LabelState& label, const CoordinateState& c) {
    LabelState sized = label;
    const LabelGrid& grid = label.grid;
    const PointD distance{std::fabs(c.p2.x - c.p1.x), std::fabs(c.p2.y - c.p1.y)};
    const auto percent = [&](PointD v) {
        return PointD{v.x * distance.x / 100.0, v.y * distance.y / 100.0};
    };
    const PointD size = grid.relativeSize ? percent(grid.size) : grid.size;
    sized.CharWidth = size.x;
    sized.CharHeight = size.y;
    const PointD run = grid.relativeDirection ? percent(grid.run) : grid.run;
    const double length = Length(run.x, run.y);
    sized.direction = length > 0.0 ? Times(run, 1.0 / length) : PointD{1.0, 0.0};
    return sized;
}

// The steps of a label along its own axes: x along the text, y up from it.
class Cells {
  public:
    explicit Cells(const LabelState& sized) : sized_(sized) {
        const double width = sized.CharWidth * kGridCellWidths * sized.CharSpacingFactor;
        const double height = sized.CharHeight * kCellHeights * sized.LineSpacingFactor;
        switch (sized.TextPath) {
            case 1:
                step_ = {0.0, -height};
                line_ = {-width, 0.0};
                break;
            case 2:
                step_ = {-width, 0.0};
                line_ = {0.0, height};
                break;
            case 3:
                step_ = {0.0, height};
                line_ = {width, 0.0};
                break;
            default:
                step_ = {width, 0.0};
                line_ = {0.0, -height};
                break;
        }
        if (sized.grid.linesReversed) line_ = Times(line_, -1.0);
    }

    PointD Step() const { return Turned(step_); }
    PointD LineFeed() const { return Turned(line_); }

    // From the pen to the first of `count` characters: LO.
    PointD OriginOffset(int count) const {
        const bool plain = sized_.LabelOriginH == 0 && sized_.LabelOriginV == 0;
        if (count <= 0 || (plain && !sized_.grid.clear)) return {};
        const auto place = [count](double step, double size, std::int32_t third) {
            const double rest = step * (count - 1);
            // Steps against the character's own direction put the first one at the far end.
            const bool against = rest * size < 0.0;
            const double extent = against ? size - rest : size + rest;
            return -((against ? rest : 0.0) + extent * third / 2.0);
        };
        PointD offset{place(step_.x, sized_.CharWidth, sized_.LabelOriginH),
                      place(step_.y, sized_.CharHeight, sized_.LabelOriginV)};
        if (sized_.grid.clear) {
            offset = offset + PointD{(1 - sized_.LabelOriginH) * sized_.CharWidth / 2.0,
                                     (1 - sized_.LabelOriginV) * sized_.CharHeight / 2.0};
        }
        return Turned(offset);
    }

    PointD Turned(PointD v) const {
        const PointD d = sized_.direction;
        return {d.x * v.x - d.y * v.y, d.y * v.x + d.x * v.y};
    }

  private:
    const LabelState& sized_;
    PointD step_;
    PointD line_;
};

// Plotter units and solid lines while it exists; then the scale and the line type are back.
class PlainPaper {
  public:
    explicit PlainPaper(Drawing& drawing)
        : drawing_(drawing),
          scaled_(std::exchange(drawing.coordinates.scaleOn, false)),
          dashes_(std::exchange(drawing.lines.dashes, {})) {
        if (dashes_.count > 0) SendDashes({}, drawing.out);
    }
    ~PlainPaper() {
        if (dashes_.count > 0) SendDashes(dashes_, drawing_.out);
        drawing_.lines.fittedDashes = drawing_.lines.dashes = dashes_;
        drawing_.coordinates.scaleOn = scaled_;
    }
    PlainPaper(const PlainPaper&) = delete;
    PlainPaper& operator=(const PlainPaper&) = delete;

  private:
    Drawing& drawing_;
    bool scaled_;
    Dashes dashes_;
};

void DrawGlyphAt(Drawing& drawing, const GlyphTransform& transform, const unsigned char* glyph,
                 PointD origin) {
    GlyphCursor cursor(glyph);
    while (const auto stroke = cursor.Next()) {
        const PointD target = transform.At(origin, stroke->x, stroke->y);
        if (stroke->down) {
            drawing.DrawTo(target);
        } else {
            drawing.MoveTo(target);
        }
    }
}

// Writes one label; all places in plotter units.
class GridWriter {
  public:
    GridWriter(LabelState& label, Drawing& drawing, PointD pen)
        : label_(label),
          drawing_(drawing),
          sized_(Sized(label, drawing.coordinates)),
          cells_(sized_),
          transform_(sized_),
          pen_(pen) {}

    // Draws the lines between `text` and `end`; returns where the pen ends.
    PointD Write(char* text, char* end) {
        while (text < end) {
            char* const lineEnd =
                std::find_if(text, end, [this](char c) { return IsControl(c) && EndsLine(c); });
            WriteLine(text, lineEnd);
            if (lineEnd == end) break;
            if (*lineEnd == '\r') {
                pen_ = label_.grid.lineStart;
            } else {
                const PointD feed = Times(cells_.LineFeed(), *lineEnd == '\n' ? 1.0 : -1.0);
                pen_ = pen_ + feed;
                label_.grid.lineStart = label_.grid.lineStart + feed;
            }
            text = lineEnd + 1;
        }
        return pen_;
    }

  private:
    bool IsControl(char c) const {
        return sized_.TransparentData == 0 && static_cast<unsigned char>(c) < ' ';
    }

    // A vertical tab is a line feed upwards.
    static bool EndsLine(char c) { return c == '\r' || c == '\n' || c == kVerticalTab; }

    // How many columns the pen stands behind the carriage-return point, from which tabs count.
    int StartColumn() const {
        const PointD step = cells_.Step();
        const PointD run = pen_ - label_.grid.lineStart;
        const double square = step.x * step.x + step.y * step.y;
        if (!(square > 0.0)) return 0;
        constexpr double kMost = 1e6;
        const double columns = (run.x * step.x + run.y * step.y) / square;
        return RoundToInt32(std::clamp(columns, 0.0, kMost));
    }

    // Where control character `c` puts a line that stands at `column`.
    int ColumnBehind(int column, char c) const {
        if (c == static_cast<char>(kBackspace)) return column - 1;
        if (c == kTab) return column + kTabColumns - (startColumn_ + column) % kTabColumns;
        return column;
    }

    // The columns that a line takes.
    int Width(const char* text, const char* end) const {
        int column = 0;
        int width = 0;
        for (; text < end; ++text) {
            column = IsControl(*text) ? ColumnBehind(column, *text) : column + 1;
            width = std::max(width, column);
        }
        return width;
    }

    void WriteLine(char* text, char* end) {
        startColumn_ = StartColumn();
        const PointD origin = pen_ + cells_.OriginOffset(Width(text, end));
        int column = 0;
        while (text < end) {
            char* const runEnd = std::find_if(text, end, [this](char c) { return IsControl(c); });
            if (runEnd > text) {
                WriteRun(text, runEnd, origin + Times(cells_.Step(), column));
                column += static_cast<int>(runEnd - text);
            }
            if (runEnd == end) break;
            if (*runEnd == kShiftOut) label_.CurrentCharSet = label_.AlternateCharSet;
            if (*runEnd == kShiftIn) label_.CurrentCharSet = label_.StandardCharSet;
            column = ColumnBehind(column, *runEnd);
            text = runEnd + 1;
        }
        if (sized_.LabelOriginH == 0) pen_ = pen_ + Times(cells_.Step(), column);
    }

    // Characters without control ones among them; the byte behind them becomes a 0 for a while.
    void WriteRun(char* text, char* end, PointD origin) {
        const char behind = std::exchange(*end, '\0');
        drawing_.out.BeginLabelExtent(text, TruncateToInt32(std::fabs(sized_.CharHeight)));
        for (const char* c = text; c < end; ++c) {
            const int code = MapCharacter(static_cast<std::uint8_t>(*c), label_.CurrentCharSet);
            DrawGlyphAt(drawing_, transform_, StrokeGlyph(code, label_.CurrentCharSet), origin);
            origin = origin + cells_.Step();
        }
        drawing_.out.EndLabelExtent(text);
        *end = behind;
    }

    LabelState& label_;
    Drawing& drawing_;
    const LabelState sized_;
    Cells cells_;
    GlyphTransform transform_;
    PointD pen_;
    int startColumn_ = 0;  // of the line being written
};

// The pen on the paper; a label that does not stand where the last one ended begins lines anew.
PointD BeginText(LabelState& label, const Drawing& drawing) {
    const PointD pen = drawing.coordinates.ToPlotterReal(drawing.motion.penPos);
    if (!(pen == label.grid.textEnd)) label.grid.lineStart = pen;
    return pen;
}

void EndText(LabelState& label, Drawing& drawing, PointD pen) {
    const CoordinateState& c = drawing.coordinates;
    drawing.motion.penPos = c.FromPlotter(pen);
    label.grid.textEnd = c.ToPlotterReal(drawing.motion.penPos);
}

}  // namespace

void DrawGridLabel(LabelState& label, Drawing& drawing, char* text, std::size_t length) {
    if (drawing.polygon.mode) return;
    PointD pen = BeginText(label, drawing);
    {
        const PlainPaper paper(drawing);
        pen = GridWriter(label, drawing, pen).Write(text, text + length);
    }
    EndText(label, drawing, pen);
}

void DrawGridSymbol(const LabelState& label, Drawing& drawing) {
    if (drawing.polygon.mode) return;
    const PointD place = drawing.motion.penPos;
    const PointD pen = drawing.coordinates.ToPlotterReal(place);
    const LabelState sized = Sized(label, drawing.coordinates);
    {
        const PlainPaper paper(drawing);
        const PointD half = Cells(sized).Turned({sized.CharWidth / 2.0, sized.CharHeight / 2.0});
        DrawGlyphAt(drawing, GlyphTransform(sized),
                    StrokeGlyph(label.SymbolChar, label.CurrentCharSet), pen - half);
    }
    drawing.motion.penPos = place;
}

void MoveOnGrid(Parameters& in, LabelState& label, Drawing& drawing) {
    PointD pen = BeginText(label, drawing);
    const LabelState sized = Sized(label, drawing.coordinates);
    const Cells cells(sized);
    PointD& lineStart = label.grid.lineStart;
    PointD count;
    if (in.GetPoint(count)) {
        const PointD up = Times(cells.LineFeed(), -count.y);
        lineStart = lineStart + up;
        pen = pen + up + Times(cells.Step(), count.x);
    } else {
        lineStart = lineStart + cells.LineFeed();
        pen = lineStart;
    }
    EndText(label, drawing, pen);
}

void SetAbsoluteSize(LabelState& label, int given, PointD size) {
    if (given == 1) return;
    if (given == 0) size = {0.285, 0.375};
    label.grid.size = Times(size, kUnitsPerCentimetre);
    label.grid.relativeSize = false;
}

void SetRelativeSize(LabelState& label, int given, PointD percent) {
    if (given == 1) return;
    label.grid.size = given == 0 ? PointD{0.75, 1.5} : percent;
    label.grid.relativeSize = true;
}

void SetRun(LabelState& label, PointD run, bool relative) {
    if (run.x == 0.0 && run.y == 0.0) return;
    label.grid.run = run;
    label.grid.relativeDirection = relative;
}

void SetFontSize(LabelState& label, std::int16_t kind, double value) {
    if (value <= 0.0 || (kind != 3 && kind != 4)) return;
    PointD& size = label.grid.size;
    if (kind == 3) size.x = kUnitsPerInch / value / kGridCellWidths;
    if (kind == 4) {
        size.y = value / kPointsPerInch * kUnitsPerInch * kCapitals;
        size.x = size.y * kWidthOfHeight;
    }
    label.grid.relativeSize = false;
}

}  // namespace qm
