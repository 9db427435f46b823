// CapsuleStrokes: lines in one colour over what is there, drawn segment by segment straight into
// the band. The fast way for most lines; stroke_outline.h draws the rest. Test:
// tests/render/bitmap/page_painter_test.cpp.
//
// A segment is a capsule: the dots up to half the pen's width away. Each dot remembers the stroke
// that covered it last and how much: when another segment of the same stroke covers more of it, the
// difference is mixed in, so that joints look like one line and not like two above each other.
#pragma once

#include <cstdint>

#include "common/geometry.h"
#include "render/bitmap/band.h"
#include "render/bitmap/edge_profile.h"

namespace qm::bitmap {

class CapsuleStrokes {
  public:
    // What an end of a segment adds to it.
    enum class End { kRound, kButt, kSquare };
    // Pens up to this half width have ends of any kind; wider ones are round.
    static constexpr double kThin = 1.0;

    CapsuleStrokes(Band& band, bool smooth) : band_(band), smooth_(smooth) {}

    // Dots outside `bounds`, which lies in the band, stay as they are.
    void SetBounds(const DotBox& bounds) { bounds_ = bounds; }
    // The following segments belong to one stroke. `halfWidth` in dots, at least 0.5; `colour` is
    // 0x00RRGGBB.
    void Begin(double halfWidth, std::uint32_t colour);
    // Points in dots of the page, y down. Points that are the same make a dot.
    void Add(PointD from, PointD to, End fromEnd = End::kRound, End toEnd = End::kRound);

  private:
    struct Segment;
    struct Run {
        double low = 0.0;
        double high = -1.0;
    };

    void AddThin(const Segment& segment, End fromEnd, End toEnd);
    void AddThick(const Segment& segment);
    void AddHard(const Segment& segment);
    static Run RunOf(const Segment& segment, double radius, double y);
    unsigned CoverageAt(const Segment& segment, double x, double y) const;
    void Cover(BandDot& dot, unsigned coverage) const;
    // Columns first to end - 1, already inside the bounds.
    void Fill(BandDot* row, std::int32_t first, std::int32_t end) const;
    double ExtensionOf(End end) const;

    Band& band_;
    bool smooth_;
    DotBox bounds_;
    EdgeProfile profile_;
    const EdgeProfile::Line* line_ = nullptr;
    double halfWidth_ = 0.5;
    std::uint32_t colour_ = 0;
    std::uint32_t stroke_ = 0;  // number << 8
};

}  // namespace qm::bitmap
