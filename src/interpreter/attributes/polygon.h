// The polygon buffer, vertices that pen moves record while polygon mode is on; and how a filled
// polygon is clipped to the soft-clip window.
//
// Command PM stands in polygon.cpp, EP and FP in fill.cpp read the buffer; the clipping in
// polygon_clip.cpp, which hands gpc_polygon_clip the points and bounds its time. Tests:
// tests/interpreter/attributes/polygon_test.cpp, tests/interpreter/attributes/clip_test.cpp.
#pragma once

#include <cstdint>
#include <vector>

#include "common/geometry.h"
#include "common/work_budget.h"
#include "interpreter/coordinates.h"

namespace qm {

struct Reading;

struct PolygonVertex {
    PointD point;  // current units, as the pen moved
    std::int32_t subPolygon = 0;
    bool drawn = false;  // pen down
};

class PolygonBuffer {
  public:
    // A vertex is recorded only while fewer than this many are; further ones are lost silently.
    static constexpr std::size_t kCapacity = 14999;

    PolygonBuffer();

    // Records a pen move. The first pen-down point becomes the start point when none is fixed yet.
    void Append(PointD point, bool drawn);
    // Begins recording at `pen`; sub-polygon 0 starts afresh with the pen position as its first
    // vertex.
    void Start(PointD pen);
    // Begins recording the sub-polygon behind the current one.
    void StartNext(PointD pen);
    // Ends recording. Quirk: only sub-polygon 0 is closed by an added vertex.
    void Close(bool penDown, const Reading& reading);
    // Forgets all vertices.
    void Clear();

    bool mode = false;  // moves are recorded
    std::int32_t subPolygonNumber = 0;
    bool savedPenDown = false;  // at PM0
    PointD startPoint;
    std::vector<PolygonVertex> vertices;

  private:
    // Leads the current sub-polygon back to where it began.
    void CloseCurrent(bool penDown);

    bool startFixed_ = false;  // the start point is fixed
};

// ---------------------------------------------------------------- Clipping, pure

using Contour = std::vector<PointI>;

// True when any point lies outside the window.
bool ReachesOutside(const Contour& polygon, const ClipWindow& window);

// The parts of the polygon (even-odd) inside the window, each contour truncated to whole plotter
// units; a hole is a contour of its own. Empty when nothing is inside. A polygon whose edges meet
// each other more than kMaxEdgeMeetings times, or for whose pairs of edges `budget` (null: none)
// has no unit each, comes out as one self-touching contour of the same even-odd area instead,
// because the clipper's time and memory grow with each meeting.
std::vector<Contour> ClipPolygon(const Contour& polygon, const ClipWindow& window,
                                 WorkBudget* budget = nullptr);

// Contours that enclose by the even-odd rule what `contours` together wind around (non-zero rule).
// Contours whose edges meet each other too often, or have no units of `budget`, stay as they are.
std::vector<Contour> WoundAround(std::vector<Contour> contours, WorkBudget* budget = nullptr);

inline constexpr std::int64_t kMaxEdgeMeetings = 65536;
// Units of the budget that a pair which meets takes more than one which does not.
inline constexpr std::int64_t kMeetingCost = 64;

}  // namespace qm
