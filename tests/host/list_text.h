// Prints a display list as text, a record a line, for tests that compare what was appended with
// what comes back.
#pragma once

#include <sstream>
#include <string>

#include "host/display_list_player.h"

namespace qm {

class ListPrinter final : public DisplayListVisitor {
  public:
    std::string Text() const { return out_.str(); }

    void Lines(const DrawingStyle&, PointSpan points) override {
        out_ << "Lines";
        Print(points);
    }
    void Rectangle(const DrawingStyle&, const BoxI& box, bool filled) override {
        out_ << "Rectangle " << filled << BoxText(box) << '\n';
    }
    void Circle(const DrawingStyle&, PointI centre, std::int32_t radius, bool filled) override {
        out_ << "Circle " << filled << ' ' << centre.x << ',' << centre.y << ' ' << radius << '\n';
    }
    void Arc(const DrawingStyle&, const ArcShape& arc) override {
        out_ << "Arc " << arc.centre.x << ',' << arc.centre.y << ' ' << arc.radiusX << ' '
             << arc.radiusY << ' ' << arc.start << ' ' << arc.span << '\n';
    }
    void Polygon(const DrawingStyle&, PointSpan points, bool filled) override {
        out_ << "Polygon " << filled;
        Print(points);
    }
    void PolyPolygon(const DrawingStyle&, const Rings& rings, bool filled) override {
        out_ << "PolyPolygon " << filled;
        for (std::size_t i = 0; i < rings.count; ++i) out_ << ' ' << rings.lengths[i];
        Print(rings.points);
    }
    void Text(const DrawingStyle&, const BoxI& box, std::string_view text) override {
        out_ << "Text" << BoxText(box) << ' ' << text << '\n';
    }
    void Picture(const DrawingStyle&, const BoxI& box, std::int32_t rop, ByteRun bytes) override {
        out_ << "Picture" << BoxText(box) << ' ' << rop;
        Print(bytes);
    }
    void Pattern(const FillPattern& pattern) override {
        out_ << "Pattern " << pattern.index << ' ' << pattern.width << 'x' << pattern.height;
        Print(pattern.bits);
    }
    void ClipRegion(PointSpan points) override {
        out_ << "Clip";
        Print(points);
    }
    void EndClipRegion() override { out_ << "EndClip\n"; }
    // Prints the whole style, so that a test sees what a change leaves alone.
    void StyleChange(const DrawingStyle& style, RecordKind kind) override {
        out_ << "Style " << static_cast<int>(kind) << ": pen " << style.pen << " layer "
             << style.layer << " colour " << style.drawColour << ' ' << style.fillColour << " line "
             << style.lineStyle << ' ' << style.lineWidth << ' ' << style.lineAttributes << " mode "
             << style.drawMode << " fill " << style.fillKind << ' ' << style.fillIndex << " dash";
        for (std::size_t i = 0; i < style.dashCount; ++i) out_ << ' ' << style.dash[i];
        out_ << '\n';
    }

  private:
    static std::string BoxText(const BoxI& box) {
        std::ostringstream text;
        text << ' ' << box.a.x << ',' << box.a.y << ' ' << box.b.x << ',' << box.b.y;
        return text.str();
    }
    void Print(PointSpan points) {
        for (const PointI p : points) out_ << ' ' << p.x << ',' << p.y;
        out_ << '\n';
    }
    void Print(ByteRun bytes) {
        for (std::size_t i = 0; i < bytes.size; ++i) out_ << ' ' << int{bytes.data[i]};
        out_ << '\n';
    }

    std::ostringstream out_;
};

inline std::string Printed(const DisplayList& list) {
    ListPrinter printer;
    Play(list, printer);
    return printer.Text();
}

}  // namespace qm
