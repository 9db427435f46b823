// ThinLines: lines of up to two dots' width, the ones that plots are made of, by looking up how
// much of the dots across a line it covers. Test: tests/render/bitmap/stroke_quality_test.cpp.
//
// A line is walked along its longer side. The coverages of the four or eight dots across it depend
// on its direction, its width and where between two dots its middle lies; they stand in a table.
// Near an end they are reduced to the part of each dot in front of the line's end, and what the
// round end covers of the rest, which stands in a table as well, is added.
#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "common/geometry.h"
#include "render/bitmap/band.h"
#include "render/bitmap/edge_profile.h"
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
    static constexpr int kPlaces = 128;  // of a line's middle between two dots
    static constexpr int kMostAcross = 8;
    struct Profile {
        std::array<std::array<std::uint8_t, kMostAcross>, kPlaces> coverage{};
        // The same for four dots at once, and for the four behind them.
        std::array<QuadCoverage, kPlaces> quads{};
        std::array<QuadCoverage, kPlaces> farQuads{};
        int across = 0;  // dots, 4 or 8
    };
    using Profiles = std::array<Profile, EdgeProfile::kDirections>;
    static constexpr int kDiscSteps = 32;  // a dot
    static constexpr int kDiscSide = 56;
    // By the distance of a dot's centre from the disc's, across and down.
    using Disc = std::array<std::array<std::uint8_t, kDiscSide>, kDiscSide>;
    struct Shapes {
        std::array<Profile, EdgeProfile::kDirections> profiles;
        Disc disc;
    };
    // A line with x and y swapped where it is steep, and its end that is at hand.
    struct Walk;
    struct Limit;

    static std::unique_ptr<Shapes> MakeShapes(double halfWidth);
    template <bool kInside>
    void AddBody(const Walk& walk, std::int32_t from, std::int32_t end) const;
    void AddEnd(const Walk& walk, std::int32_t from, std::int32_t end, const Limit& limit) const;
    void AddShort(const Walk& walk, std::int32_t from, std::int32_t end, const Limit& first,
                  const Limit& second) const;

    Band& band_;
    const StrokeInk& ink_;
    DotBox bounds_;
    EdgeProfile edges_;
    double halfWidth_ = 0.0;
    std::array<std::unique_ptr<Shapes>, 33> kept_;  // by half width, in 1/64 dots from 0.5
    const Shapes* shapes_ = nullptr;
};

}  // namespace qm::bitmap
