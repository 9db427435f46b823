// HardLines: lines with hard edges and round ends; a dot is drawn when its centre lies on the line.
// Test: tests/render/bitmap/hard_lines_test.cpp.
//
// Of a line of few dots each of the dots around it is asked. Of a longer one each row is a run
// between the line's sides or round ends; most rows see the sides alone, which are stepped from
// row to row.
#pragma once

#include <cstdint>

#include "common/geometry.h"
#include "render/bitmap/band.h"

namespace qm::bitmap {

class HardLines {
  public:
    explicit HardLines(Band& band) : band_(band) {}

    // Dots outside `bounds`, which lies in the band, stay as they are.
    void SetBounds(const DotBox& bounds) { bounds_ = bounds; }
    // Of the lines that follow: `halfWidth` in dots, at least 0.5; `colour` is 0x00RRGGBB.
    void Begin(double halfWidth, std::uint32_t colour);
    // The dots up to half the width away from the segment, those on the edge included; of a line
    // that lies between the centres of dots, the dot in its middle. Points are dots of the page,
    // y down, and may lie anywhere. Marks of dots are lost.
    void Add(const PointD& from, const PointD& to) const;

  private:
    // A line of many rows, and what its rows have in common.
    struct Capsule;

    void AddDots(const PointD& from, const PointD& to, const DotBox& box) const;
    void AddRows(const PointD& from, const PointD& to, std::int32_t top, std::int32_t bottom) const;
    void AddRoundRows(const Capsule& line, std::int32_t top, std::int32_t bottom) const;
    void AddStraightRows(const Capsule& line, std::int32_t first, std::int32_t top,
                         std::int32_t bottom) const;
    void AddSpeck(PointD middle) const;

    Band& band_;
    DotBox bounds_;
    BandDot ink_;
    double halfWidth_ = 0.5;
    double square_ = 0.25;  // of the half width
    double speck_ = 1.0;    // square of the length below which a line may miss all centres
};

}  // namespace qm::bitmap
