// See entity_writer.h.
#include "render/dxf/entity_writer.h"

#include <cmath>

#include "common/numbers.h"
#include "render/dxf/colour_index.h"
#include "render/fill_pattern.h"
#include "render/line_look.h"

namespace qm::dxf {

namespace {

// The heaviest line weight, in parts of a millimetre.
constexpr std::int64_t kHeaviest = 21100;
// Flags of a light-weight polyline.
constexpr int kClosed = 1;
constexpr int kDashesGoOn = 128;

bool IsDrawn(const DrawingStyle& style) { return BlendOfDrawMode(style.drawMode) != Blend::kNone; }

PointD AsDouble(PointI point) {
    return {static_cast<double>(point.x), static_cast<double>(point.y)};
}

bool IsNear(PointD a, PointI b) { return std::abs(a.x - b.x) <= 1.0 && std::abs(a.y - b.y) <= 1.0; }

// Without the last point where that repeats the first.
PointSpan WithoutReturn(PointSpan points) {
    const bool returns = points.count > 1 && points[0] == points[points.count - 1];
    return {points.data, points.count - (returns ? 1 : 0)};
}

// Whether something of the ring can be filled.
bool IsArea(PointSpan ring) { return WithoutReturn(ring).count > 2 && !IsDot(ring); }

// Both radii positive: a negative one mirrors the angles.
ArcShape Upright(ArcShape arc) {
    if (arc.radiusX < 0) {
        arc.start = 180.0F - arc.start;
        arc.span = -arc.span;
    }
    if (arc.radiusY < 0) {
        arc.start = -arc.start;
        arc.span = -arc.span;
    }
    arc.radiusX = std::abs(std::max(arc.radiusX, -INT32_MAX));
    arc.radiusY = std::abs(std::max(arc.radiusY, -INT32_MAX));
    return arc;
}

// 0 to 360.
double Normalised(double degrees) {
    constexpr double kTurn = 360.0;
    const double rest = std::fmod(degrees, kTurn);
    return rest < 0.0 ? rest + kTurn : rest;
}

class Gatherer final : public DisplayListVisitor {
  public:
    explicit Gatherer(PageTables& tables) : tables_(tables) {}

    void Lines(const DrawingStyle& style, PointSpan) override { Note(style, false); }
    void Rectangle(const DrawingStyle& style, const BoxI&, bool filled) override {
        Note(style, filled);
    }
    void Circle(const DrawingStyle& style, PointI, std::int32_t, bool filled) override {
        Note(style, filled);
    }
    void Arc(const DrawingStyle& style, const ArcShape&) override { Note(style, false); }
    void Polygon(const DrawingStyle& style, PointSpan, bool filled) override {
        Note(style, filled);
    }
    void PolyPolygon(const DrawingStyle& style, const Rings& rings, bool filled) override {
        Note(style, filled, filled ? 1 : rings.count);
    }
    void Text(const DrawingStyle& style, const BoxI& box, std::string_view text) override {
        if (!PlaceOfText(box, text).shown) return;
        Note(style, false);
        tables_.NoteText();
    }
    void Pattern(const FillPattern& pattern) override { patterns_[pattern.index] = pattern; }
    void StyleChange(const DrawingStyle&, RecordKind) override { noted_[0] = noted_[1] = false; }

  private:
    void Note(const DrawingStyle& style, bool filled, std::size_t entities = 1) {
        tables_.CountEntities(entities);
        bool& noted = noted_[filled ? 1 : 0];
        if (noted || !IsDrawn(style)) return;
        noted = true;
        if (filled) {
            tables_.AreaLook(style, AreaColour(style, patterns_));
        } else {
            tables_.StrokeLook(style);
        }
    }

    PageTables& tables_;
    std::map<std::int32_t, FillPattern> patterns_;
    bool noted_[2] = {false, false};  // whether this style's outlines, areas are known
};

}  // namespace

void Gather(const DisplayList& list, PageTables& tables) {
    Gatherer gatherer(tables);
    Play(list, gatherer);
}

// ------------------------------------------------------------------------------------------- style

std::string EntityWriter::PairsOf(const Look& look) const {
    const Look& base = tables_.LayerOf(look.layer).look;
    std::string pairs = "100\nAcDbEntity\n8\n" + LayerName(look.layer) + '\n';
    if (look.lineType != 0) pairs += "6\n" + LineTypeName(look.lineType) + '\n';
    if (look.colour != base.colour) {
        const IndexedColour colour = IndexOf(look.colour);
        pairs += "62\n" + std::to_string(colour.index) + '\n';
        if (!colour.exact) pairs += "420\n" + std::to_string(TrueColour(look.colour)) + '\n';
    }
    if (look.weight != base.weight) pairs += "370\n" + std::to_string(look.weight) + '\n';
    return pairs;
}

void EntityWriter::Update(const DrawingStyle& style) {
    if (!isStale_) return;
    isStale_ = false;
    const std::int64_t width = placement_.Length(std::max(style.lineWidth, 0));
    wideLine_ = width > kHeaviest ? width : 0;
    // Plots send a pen's attributes again and again without changing them.
    const Look stroke = tables_.StrokeLook(style);
    if (stroke_.pairs.empty() || !(stroke == stroke_.look)) {
        WriteDot();
        at_.reset();
        stroke_ = {stroke, PairsOf(stroke)};
    }
    const Look area = tables_.AreaLook(style, AreaColour(style, patterns_));
    if (area_.pairs.empty() || !(area == area_.look)) area_ = {area, PairsOf(area)};
}

void EntityWriter::Begin(std::string_view type, const Attributes& attributes) {
    out_.Text(0, type);
    out_.Handle(5, handle_++);
    out_.Raw(attributes.pairs);
}

void EntityWriter::Progress(int percent) {
    if (options_.checkpoint) options_.checkpoint();
    if (options_.progress) options_.progress(percent);
}

// -------------------------------------------------------------------------------------------- dots

void EntityWriter::BeginStroke(const DrawingStyle& style, const StrokeEnds& ends) {
    Update(style);
    if (dot_ && (IsNear(ends.from, *dot_) || IsNear(ends.to, *dot_))) dot_.reset();
    WriteDot();
    at_ = ends.to;
}

void EntityWriter::WriteDot() {
    if (!dot_) return;
    Begin("POINT", stroke_);
    out_.Text(100, "AcDbPoint");
    out_.Place(10, placement_(*dot_));
    out_.Number(30, 0);
    dot_.reset();
}

// ---------------------------------------------------------------------------------------- outlines

void EntityWriter::BeginPolyline(std::size_t points, bool closed) {
    Begin("LWPOLYLINE", stroke_);
    out_.Text(100, "AcDbPolyline");
    out_.Number(90, static_cast<std::int64_t>(points));
    out_.Number(70, (closed ? kClosed : 0) + (stroke_.look.lineType != 0 ? kDashesGoOn : 0));
    if (wideLine_ > 0) out_.Length(43, wideLine_);
}

void EntityWriter::Lines(const DrawingStyle& style, PointSpan points) {
    if (!IsDrawn(style) || points.count == 0) return;
    if (IsDot(points)) {
        Update(style);
        WriteDot();
        if (!at_ || !IsNear(*at_, points[0])) dot_ = points[0];
        return;
    }
    BeginStroke(style, {AsDouble(points[0]), AsDouble(points[points.count - 1])});
    if (points.count == 2 && wideLine_ == 0) {
        Begin("LINE", stroke_);
        out_.Text(100, "AcDbLine");
        out_.Place(10, placement_(points[0]));
        out_.Number(30, 0);
        out_.Place(11, placement_(points[1]));
        out_.Number(31, 0);
        return;
    }
    const PointSpan path = points.count > 2 ? WithoutReturn(points) : points;
    BeginPolyline(path.count, path.count < points.count);
    for (const PointI point : path) out_.Place(10, placement_(point));
}

void EntityWriter::Rectangle(const DrawingStyle& style, const BoxI& box, bool filled) {
    const PointI corners[] = {box.a, {box.b.x, box.a.y}, box.b, {box.a.x, box.b.y}, box.a};
    Polygon(style, {corners, 5}, filled);
}

void EntityWriter::Arc(const DrawingStyle& style, const ArcShape& shape) {
    if (!IsDrawn(style)) return;
    const ArcShape arc = Upright(shape);
    const bool isWhole = IsWholeEllipse(arc);
    if (arc.radiusX == 0 && arc.radiusY == 0) return Lines(style, {&arc.centre, 1});
    if (isWhole && arc.radiusX == arc.radiusY) {
        return Circle(style, arc.centre, arc.radiusX, false);
    }
    BeginStroke(style, {PointOnArc(arc, arc.start), PointOnArc(arc, double{arc.start} + arc.span)});
    if (arc.radiusX != arc.radiusY) return WriteEllipse(arc);
    Begin("ARC", stroke_);
    out_.Text(100, "AcDbCircle");
    out_.Place(10, placement_(arc.centre));
    out_.Number(30, 0);
    out_.Length(40, placement_.Length(arc.radiusX));
    out_.Text(100, "AcDbArc");
    // Arcs of the format run counter-clockwise.
    const double from = double{arc.start} + std::min(arc.span, 0.0F) + placement_.Turn();
    out_.Real(50, Normalised(from));
    out_.Real(51, Normalised(from + std::abs(arc.span)));
}

// The longer axis first, then the ratio of the shorter one, and angles from the longer axis in
// radians. An ellipse without height is no ellipse: it gets the height of a thousandth.
void EntityWriter::WriteEllipse(const ArcShape& arc) {
    constexpr double kLeastRatio = 0.001;
    constexpr double kTurn = 360.0;
    const bool isHigh = arc.radiusY > arc.radiusX;
    const double longer = isHigh ? arc.radiusY : arc.radiusX;
    const double shorter = isHigh ? arc.radiusX : arc.radiusY;
    const double axis = (placement_.Turn() + (isHigh ? 90.0 : 0.0)) * kRadiansPerDegree;
    const double length = static_cast<double>(placement_.Length(longer)) / kPartsPerMillimetre;
    double from = 0.0;
    double span = kTurn;
    if (!IsWholeEllipse(arc)) {
        from = Normalised(double{arc.start} + std::min(arc.span, 0.0F) - (isHigh ? 90.0 : 0.0));
        span = std::abs(arc.span);
    }
    Begin("ELLIPSE", stroke_);
    out_.Text(100, "AcDbEllipse");
    out_.Place(10, placement_(arc.centre));
    out_.Number(30, 0);
    out_.Real(11, length * std::cos(axis));
    out_.Real(21, length * std::sin(axis));
    out_.Number(31, 0);
    out_.Real(40, std::max(shorter / longer, kLeastRatio));
    out_.Real(41, from * kRadiansPerDegree);
    out_.Real(42, (from + span) * kRadiansPerDegree);
}

void EntityWriter::Circle(const DrawingStyle& style, PointI centre, std::int32_t radius,
                          bool filled) {
    if (!IsDrawn(style)) return;
    const double size = std::abs(double{1} * radius);
    if (radius == 0) {
        if (!filled) Lines(style, {&centre, 1});
        return;
    }
    const Position at = placement_(centre);
    const std::int64_t length = placement_.Length(size);
    if (filled) {
        Update(style);
        // Two half circles: bulges of 1.
        Begin("HATCH", area_);
        BeginHatch(1);
        out_.Pairs("92=3|72=1|73=1|93=2|");
        for (const std::int64_t side : {-length, length}) {
            out_.Place(10, {at.x + side, at.y});
            out_.Number(42, 1);
        }
        out_.Pairs("97=0|");
        return EndHatch();
    }
    const PointD start{centre.x + size, static_cast<double>(centre.y)};
    BeginStroke(style, {start, start});
    Begin("CIRCLE", stroke_);
    out_.Text(100, "AcDbCircle");
    out_.Place(10, at);
    out_.Number(30, 0);
    out_.Length(40, length);
}

// ------------------------------------------------------------------------------------------- areas

void EntityWriter::BeginHatch(std::size_t rings) {
    out_.Pairs("100=AcDbHatch|10=0|20=0|30=0|210=0|220=0|230=1|2=SOLID|70=1|71=0|");
    out_.Number(91, static_cast<std::int64_t>(rings));
}

// Even-odd, without seed points but the one that some programs ask for.
void EntityWriter::EndHatch() { out_.Pairs("75=0|76=1|98=1|10=0|20=0|"); }

void EntityWriter::Polygon(const DrawingStyle& style, PointSpan points, bool filled) {
    if (!filled) return Lines(style, points);
    const auto length = static_cast<std::int32_t>(points.count);
    PolyPolygon(style, {&length, 1, points}, true);
}

void EntityWriter::PolyPolygon(const DrawingStyle& style, const Rings& rings, bool filled) {
    if (!IsDrawn(style)) return;
    const auto forEachRing = [&](const auto& use) {
        const PointI* ring = rings.points.data;
        for (std::size_t i = 0; i < rings.count; ++i) {
            const auto count = static_cast<std::size_t>(rings.lengths[i]);
            use(PointSpan{ring, count});
            ring += count;
        }
    };
    if (!filled) return forEachRing([&](PointSpan ring) { Lines(style, ring); });
    std::size_t areas = 0;
    forEachRing([&](PointSpan ring) { areas += std::size_t{IsArea(ring)}; });
    if (areas == 0) return;
    Update(style);
    Begin("HATCH", area_);
    BeginHatch(areas);
    bool isFirst = true;
    forEachRing([&](PointSpan ring) {
        if (!IsArea(ring)) return;
        const PointSpan points = WithoutReturn(ring);
        // Polylines; the first one is called external, the others outermost.
        out_.Number(92, isFirst ? 3 : 18);
        out_.Pairs("72=0|73=1|");
        out_.Number(93, static_cast<std::int64_t>(points.count));
        for (const PointI point : points) out_.Place(10, placement_(point));
        out_.Pairs("97=0|");
        isFirst = false;
    });
    EndHatch();
}

void EntityWriter::Text(const DrawingStyle& style, const BoxI& box, std::string_view text) {
    const TextPlace place = PlaceOfText(box, text);
    if (!place.shown || !IsDrawn(style)) return;
    Update(style);
    const Matrix& m = place.toDrawing;
    const IndexedColour colour = IndexOf(style.drawColour);
    Begin("TEXT", {{},
                   "100\nAcDbEntity\n8\n" + std::string(kTextLayer) + "\n62\n" +
                       std::to_string(colour.index) + '\n'});
    out_.Text(100, "AcDbText");
    out_.Place(10, placement_.At(m.e, m.f));
    out_.Number(30, 0);
    // The format measures texts by their capitals.
    out_.Length(40, placement_.Length(place.fontSize * kCapitalHeight));
    out_.Text(1, EscapedValue(text));
    out_.Real(50, Normalised((m.b > 0.0 ? 90.0 : 0.0) + placement_.Turn()));
    // Alignment 5: as wide as from the first point to the second.
    out_.Number(72, 5);
    out_.Place(11, placement_.At(m.a * place.length + m.e, m.b * place.length + m.f));
    out_.Number(31, 0);
    out_.Text(100, "AcDbText");
}

}  // namespace qm::dxf
