// ThinLines: lines of up to two dots' width, the ones that plots are made of. Test:
// tests/render/bitmap/stroke_quality_test.cpp.
//
// A line is walked along its longer side, four dots across it at a time. What it covers of them
// follows from their distances from its two sides, away from its ends by line_coverages.h. Near an
// end that is reduced to the part of each dot in front of the line's end, and what the round end
// covers of the rest is added. Of a short line the dots around it are visited row by row instead,
// which takes less to get ready for.
#pragma once

#include <cstdint>

#include "common/geometry.h"
#include "render/bitmap/band.h"
#include "render/bitmap/disc_table.h"
#include "render/bitmap/line_coverages.h"
#include "render/bitmap/stroke_ink.h"

namespace qm::bitmap {

class ThinLines {
  public:
    // Half widths from 0.5 to this, in dots.
    static constexpr double kMostHalf = 1.0;

    enum class Cap {
        kFlat,
        kRound,
        kShared,  // with a line drawn before, which had a round end here
    };
    struct Line {
        PointD from;
        PointD to;
        PointD along;  // a unit vector
        Cap start = Cap::kRound;
        Cap end = Cap::kRound;
        double beyond = 0.0;  // of flat ends, how far they reach over the points
    };

    ThinLines(Band& band, const StrokeInk& ink) : band_(band), ink_(ink) {}

    void SetBounds(const DotBox& bounds) { bounds_ = bounds; }
    void SetHalfWidth(double halfWidth);

    void Add(const Line& line);
    // Has the memory of a line's dots brought near, for a line that is soon added.
    void Fetch(PointD from, PointD to) const;

  private:
    // A line with x and y swapped where it is steep, and its end that is at hand.
    struct Walk;
    struct Limit;
    struct Roundness;

    void AddShort(const Line& line) const;
    void AddBody(const Walk& walk, std::int32_t from, std::int32_t end);
    template <typename Coverages>
    void AddColumns(const Walk& walk, std::int32_t from, std::int32_t end,
                    const Coverages& coverages) const;
    // Columns that the other end, if given, shortens as well.
    template <bool kBothEnds>
    void AddEnd(const Walk& walk, std::int32_t from, std::int32_t end, const Limit& limit,
                const Limit& other) const;

    Band& band_;
    const StrokeInk& ink_;
    DotBox bounds_;
    double halfWidth_ = 0.0;
    const DiscTable* discs_ = nullptr;
    LineCoverages coverages_;
};

}  // namespace qm::bitmap
