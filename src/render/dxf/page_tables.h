// PageTables: what a DXF file says in front of its entities: layers with their looks, line types,
// and how many entities follow. A first pass over the page's display list gathers it. Test:
// tests/render/dxf/dxf_writer_test.cpp.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "host/display_list_player.h"
#include "render/dxf/group_codes.h"
#include "render/page_frame.h"

namespace qm::dxf {

// How a primitive is drawn.
struct Look {
    std::int32_t layer = 0;
    std::uint32_t colour = 0;  // 0x00BBGGRR
    int weight = 0;            // hundredths of a millimetre, one of those that the format knows
    int lineType = 0;          // 0: continuous, else the number of a pattern
};
bool operator==(const Look& a, const Look& b);

// From the display list to the drawing, turned as the page is shown. The origin stays the plot's;
// of a turned page as far as nothing of it gets below 0.
class Placement {
  public:
    Placement(const PageSource& page, const Extent& extent);

    Position operator()(PointI point) const { return At(point.x, point.y); }
    Position At(double x, double y) const;
    // Plotter units as parts of a millimetre.
    std::int64_t Length(double units) const;
    // Degrees by which the page is turned.
    double Turn() const { return turn_; }
    // What is drawn; of a page without drawing a point.
    Position Low() const { return low_; }
    Position High() const { return high_; }

  private:
    double scale_;  // parts of a millimetre in a unit
    double turn_;
    Matrix matrix_;
    Position low_;
    Position high_;
};

class PageTables {
  public:
    PageTables(const PageSource& page, const Placement& placement);

    // Of an outline. Layers and line types that are new are added.
    Look StrokeLook(const DrawingStyle& style);
    // Of an area with the colour `bgr`: as thin as can be.
    Look AreaLook(const DrawingStyle& style, std::uint32_t bgr);
    void CountEntities(std::size_t count) { entities_ += count; }
    void NoteText() { hasTexts_ = true; }

    struct Layer {
        Look look;  // of what is drawn first
        bool visible = true;
    };
    const Layer& LayerOf(std::int32_t number) const { return layers_.at(number); }
    const std::map<std::int32_t, Layer>& Layers() const { return layers_; }
    // Lengths of dash, gap, dash, ... in parts of a millimetre by the number of the pattern.
    const std::map<std::vector<std::int64_t>, int>& LineTypes() const { return lineTypes_; }
    bool HasTexts() const { return hasTexts_; }
    // At least as many as are written.
    std::uint64_t Entities() const { return entities_; }

  private:
    Look Known(const Look& look);
    int LineTypeOf(const DrawingStyle& style);

    const PageSource& page_;
    const Placement& placement_;
    std::map<std::int32_t, Layer> layers_;
    std::map<std::vector<std::int64_t>, int> lineTypes_;
    std::uint64_t entities_ = 0;
    bool hasTexts_ = false;
};

// "Pen 3". The names that documents give their layers hold letters that DXF names must not.
std::string LayerName(std::int32_t number);
std::string LineTypeName(int number);
// The layer of the searchable texts.
inline constexpr std::string_view kTextLayer = "Texts";

// The colour of an area: of a user pattern the shade that its ink gives with the paper.
std::uint32_t AreaColour(const DrawingStyle& style,
                         const std::map<std::int32_t, FillPattern>& patterns);

}  // namespace qm::dxf
