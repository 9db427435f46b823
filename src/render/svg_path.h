// SvgPath: the data of SVG path elements in as few letters as possible: relative coordinates, one
// command letter for many points, no blank in front of a minus sign. Test:
// tests/render/svg_writer_test.cpp.
#pragma once

#include "host/display_list_player.h"
#include "render/line_look.h"
#include "render/text_buffer.h"

namespace qm {

class SvgPath {
  public:
    explicit SvgPath(TextBuffer& out) : out_(out) {}

    // Begins the data of another element.
    void Start() {
        points_ = 0;
        placed_ = false;
        command_ = 0;
    }
    // A polyline; `close`: back to its first point. At least one point.
    void Polyline(PointSpan points, bool close);
    // An elliptic arc of less than a full turn; with a span of 0 a dot.
    void Arc(const ArcShape& arc);
    void Rectangle(const BoxI& box);
    // Points since Start.
    std::size_t Points() const { return points_; }

  private:
    void MoveTo(PointI point);
    void LineTo(PointI point);
    // Writes `command` unless it repeats the last one, then up to two numbers.
    void Number(std::int64_t number, bool first);

    TextBuffer& out_;
    std::size_t points_ = 0;
    PointI at_;
    PointI start_;         // of the subpath
    bool placed_ = false;  // `at_` is the pen position
    char command_ = 0;     // that a bare number would continue
};

}  // namespace qm
