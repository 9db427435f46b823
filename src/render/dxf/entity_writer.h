// EntityWriter: a display list as the entities of a DXF drawing, in drawing order. WriteDxf
// (page_writers.h) runs it. Test: tests/render/dxf/dxf_writer_test.cpp.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "host/display_list_player.h"
#include "render/dxf/group_codes.h"
#include "render/dxf/page_tables.h"

namespace qm::dxf {

// Stands in front of the entities: plays the list into `tables`.
void Gather(const DisplayList& list, PageTables& tables);

class EntityWriter final : public DisplayListVisitor {
  public:
    // `tables` has been gathered from the same list; entities take the handles from `handle` on.
    EntityWriter(PageTables& tables, const Placement& placement, std::uint64_t handle,
                 const PageOptions& options, GroupCodes& out)
        : tables_(tables), placement_(placement), handle_(handle), options_(options), out_(out) {}

    // To be called at the end.
    void Finish() { WriteDot(); }

    void Lines(const DrawingStyle& style, PointSpan points) override;
    void Rectangle(const DrawingStyle& style, const BoxI& box, bool filled) override;
    void Circle(const DrawingStyle& style, PointI centre, std::int32_t radius,
                bool filled) override;
    void Arc(const DrawingStyle& style, const ArcShape& arc) override;
    void Polygon(const DrawingStyle& style, PointSpan points, bool filled) override;
    void PolyPolygon(const DrawingStyle& style, const Rings& rings, bool filled) override;
    void Text(const DrawingStyle& style, const BoxI& box, std::string_view text) override;
    void Pattern(const FillPattern& pattern) override { patterns_[pattern.index] = pattern; }
    void StyleChange(const DrawingStyle&, RecordKind) override { isStale_ = true; }
    void Progress(int percent) override;

  private:
    // The pairs that entities of one look have in common.
    struct Attributes {
        Look look;
        std::string pairs;
    };
    // Ends of the stroke at hand, by which dots are known that the stroke covers.
    struct StrokeEnds {
        PointD from;
        PointD to;
    };

    // Makes sure that `stroke_` and `area_` are those of `style`; flushes the dot when they change.
    void Update(const DrawingStyle& style);
    std::string PairsOf(const Look& look) const;
    void Begin(std::string_view type, const Attributes& attributes);
    // An outline between these ends follows: drops the dot that it covers, writes another.
    void BeginStroke(const DrawingStyle& style, const StrokeEnds& ends);
    void BeginPolyline(std::size_t points, bool closed);
    void WriteDot();
    void WriteEllipse(const ArcShape& arc);
    void BeginHatch(std::size_t rings);
    void EndHatch();

    PageTables& tables_;
    const Placement& placement_;
    std::uint64_t handle_;
    const PageOptions& options_;
    GroupCodes& out_;
    std::map<std::int32_t, FillPattern> patterns_;
    bool isStale_ = true;  // the style has changed since Update
    Attributes stroke_;
    Attributes area_;
    std::int64_t wideLine_ = 0;  // parts of a millimetre; 0: a line weight says the width
    std::optional<PointI> dot_;  // not written yet: the next stroke may cover it
    std::optional<PointD> at_;   // where the last stroke ended
};

}  // namespace qm::dxf
