// Page::Draw and Page::Texts: the host's records of a page as the calls of qmfilter::Visitor. The
// public types are copies of the internal ones, so that those can change. Test:
// tests/embed/plot_test.cpp.
#include "embed/page_impl.h"
#include "host/display_list_player.h"

namespace qmfilter {

namespace {

Point PointOf(qm::PointI point) { return {point.x, point.y}; }
Box BoxOf(const qm::BoxI& box) { return {PointOf(box.a), PointOf(box.b)}; }

Style StyleOf(const qm::DrawingStyle& from) {
    Style style;
    style.pen = from.pen;
    style.layer = from.layer;
    style.drawColour = from.drawColour;
    style.fillColour = from.fillColour;
    style.lineStyle = from.lineStyle;
    style.dash = {from.dash, from.dashCount};
    style.lineWidth = from.lineWidth;
    style.lineAttributes = from.lineAttributes;
    style.drawMode = from.drawMode;
    style.fillKind = from.fillKind;
    style.fillIndex = from.fillIndex;
    return style;
}

class Translator final : public qm::DisplayListVisitor {
  public:
    explicit Translator(Visitor& visitor) : visitor_(visitor) {}

    void Lines(const qm::DrawingStyle& style, qm::PointSpan points) override {
        visitor_.Lines(StyleOf(style), PointsOf(points));
    }
    void Rectangle(const qm::DrawingStyle& style, const qm::BoxI& box, bool filled) override {
        visitor_.Rectangle(StyleOf(style), BoxOf(box), filled);
    }
    void Circle(const qm::DrawingStyle& style, qm::PointI centre, std::int32_t radius,
                bool filled) override {
        visitor_.Circle(StyleOf(style), PointOf(centre), radius, filled);
    }
    void Arc(const qm::DrawingStyle& style, const qm::ArcShape& arc) override {
        visitor_.Arc(StyleOf(style),
                     {PointOf(arc.centre), arc.radiusX, arc.radiusY, arc.start, arc.span});
    }
    void Polygon(const qm::DrawingStyle& style, qm::PointSpan points, bool filled) override {
        visitor_.Polygon(StyleOf(style), PointsOf(points), filled);
    }
    void PolyPolygon(const qm::DrawingStyle& style, const qm::Rings& rings, bool filled) override {
        visitor_.PolyPolygon(StyleOf(style), {rings.lengths, rings.count}, PointsOf(rings.points),
                             filled);
    }
    void Text(const qm::DrawingStyle& style, const qm::BoxI& box, std::string_view text) override {
        visitor_.Text(StyleOf(style), BoxOf(box), text);
    }
    void Picture(const qm::DrawingStyle& style, const qm::BoxI& box, std::int32_t rasterOperation,
                 qm::ByteRun bitmap) override {
        visitor_.Picture(StyleOf(style), BoxOf(box), rasterOperation, {bitmap.data, bitmap.size});
    }
    void Pattern(const qm::FillPattern& from) override {
        visitor_.DefinePattern(
            {from.index, from.width, from.height, {from.bits.data, from.bits.size}});
    }
    void ClipRegion(qm::PointSpan corners) override { visitor_.ClipRegion(PointsOf(corners)); }
    void EndClipRegion() override { visitor_.EndClipRegion(); }

  private:
    // In memory that the next call uses again.
    Span<Point> PointsOf(qm::PointSpan from) {
        points_.clear();
        for (const qm::PointI point : from) points_.push_back(PointOf(point));
        return {points_.data(), points_.size()};
    }

    Visitor& visitor_;
    std::vector<Point> points_;
};

class TextCollector final : public Visitor {
  public:
    void Text(const Style&, const Box& box, std::string_view text) override {
        texts.push_back({std::string(text), box});
    }

    std::vector<TextItem> texts;
};

}  // namespace

Visitor::~Visitor() = default;
void Visitor::Lines(const Style&, Span<Point>) {}
void Visitor::Rectangle(const Style&, const Box&, bool) {}
void Visitor::Circle(const Style&, Point, std::int32_t, bool) {}
void Visitor::Arc(const Style&, const ArcShape&) {}
void Visitor::Polygon(const Style&, Span<Point>, bool) {}
void Visitor::PolyPolygon(const Style&, Span<std::int32_t>, Span<Point>, bool) {}
void Visitor::Text(const Style&, const Box&, std::string_view) {}
void Visitor::Picture(const Style&, const Box&, std::int32_t, Span<std::uint8_t>) {}
void Visitor::DefinePattern(const Pattern&) {}
void Visitor::ClipRegion(Span<Point>) {}
void Visitor::EndClipRegion() {}

void Page::Draw(Visitor& visitor) const {
    Translator translator(visitor);
    qm::Play(impl_->page.Drawing(), translator);
}

std::vector<TextItem> Page::Texts() const {
    TextCollector collector;
    Draw(collector);
    return std::move(collector.texts);
}

}  // namespace qmfilter
