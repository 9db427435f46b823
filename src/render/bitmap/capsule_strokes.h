// CapsuleStrokes: lines in one colour over what is there, drawn line by line straight into the
// band. The fast way for most lines; stroke_outline.h draws the rest. Test:
// tests/render/bitmap/page_painter_test.cpp, tests/render/bitmap/stroke_quality_test.cpp.
//
// A line is a capsule: the dots up to half the pen's width away. stroke_ink.h makes one area of
// those of a stroke, thin_lines.h draws the thin ones, hard_lines.h those with hard edges.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "common/geometry.h"
#include "render/bitmap/band.h"
#include "render/bitmap/hard_lines.h"
#include "render/bitmap/stroke_ink.h"
#include "render/bitmap/thin_lines.h"

namespace qm::bitmap {

class CapsuleStrokes {
  public:
    // What an end of a line adds to it.
    enum class End { kRound, kButt, kSquare };
    // Pens up to this half width have ends of any kind; wider ones are round.
    static constexpr double kThin = ThinLines::kMostHalf;
    static constexpr std::size_t kMostLines = StrokeInk::kMostLines;

    // Lines that continue each other; a stroke may be drawn in several pieces.
    struct Piece {
        const PointD* points;     // dots of the page, y down; equal ones make a dot
        std::size_t count;        // at least 1
        End first = End::kRound;  // of the ends that are free
        End last = End::kRound;
        const PointD* before = nullptr;  // the stroke's points next to the piece, if it goes on
        const PointD* after = nullptr;
    };

    CapsuleStrokes(Band& band, bool smooth)
        : band_(band), smooth_(smooth), thin_(band, ink_), hard_(band) {}

    // Dots outside `bounds`, which lies in the band, stay as they are.
    void SetBounds(const DotBox& bounds) {
        bounds_ = bounds;
        thin_.SetBounds(bounds);
        hard_.SetBounds(bounds);
    }
    // The following pieces belong to one stroke, of kMostLines lines at most. `halfWidth` in dots,
    // at least 0.5; `colour` is 0x00RRGGBB.
    void Begin(double halfWidth, std::uint32_t colour);
    void Add(const Piece& piece);
    // Has the memory of the dots between two points brought near, for lines that are soon added.
    void Fetch(PointD corner, PointD opposite) const;
    // Instead of a piece of `lines` lines that the bounds do not show.
    void Skip(std::size_t lines) { ink_.Skip(static_cast<std::uint32_t>(lines)); }

  private:
    // A line of a piece and how it goes on.
    struct Line {
        PointD from;
        PointD to;
        double length = 0.0;
        PointD along{1.0, 0.0};

        Line(PointD first, PointD second);
    };

    struct Run {
        double low = 0.0;
        double high = -1.0;
    };

    bool MayShow(const Piece& piece) const;
    void AddLong(const Piece& piece);
    void AddThin(const Piece& piece);
    void TakeLines(const Piece& piece);
    void AddThick(const Line& line);
    static Run RunOf(const Line& line, double radius, double y);
    unsigned CoverageAt(const Line& line, double x, double y) const;

    Band& band_;
    bool smooth_;
    DotBox bounds_;
    StrokeInk ink_;
    ThinLines thin_;
    HardLines hard_;
    double halfWidth_ = 0.5;
    std::vector<Line> lines_;
};

}  // namespace qm::bitmap
