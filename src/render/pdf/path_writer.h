// PathWriter: path construction operators: polylines in whole plotter units, arcs as Bezier curves,
// small ones in tenths of them. Test: tests/render/pdf/pdf_writer_test.cpp.
#pragma once

#include "host/display_list_player.h"
#include "render/pdf/content_stream.h"

namespace qm::pdf {

class PathWriter {
  public:
    // `origin` is taken off every coordinate.
    PathWriter(ContentStream& out, PointI origin) : out_(out), origin_(origin) {}

    // Begins another path.
    void Start() {
        segments_ = 0;
        open_ = false;
    }
    // A polyline, which continues the one before when it begins where that ended; `close`: back to
    // its first point. A single point becomes a dot.
    void Polyline(PointSpan points, bool close);
    void Rectangle(const BoxI& box);
    // An open arc, or a closed ellipse. No radius, or no span: a dot.
    void Arc(const ArcShape& arc);
    // Lines and curves since Start.
    std::size_t Segments() const { return segments_; }

  private:
    void Place(PointI point, char command) {
        out_.Point(std::int64_t{point.x} - origin_.x, std::int64_t{point.y} - origin_.y, command);
    }

    ContentStream& out_;
    PointI origin_;
    std::size_t segments_ = 0;
    PointI at_;
    bool open_ = false;  // a polyline that ends at `at_` can be continued
};

}  // namespace qm::pdf
