// StrokeInk: the colour of a stroke and what of it each dot of a band has got, so that the lines of
// one stroke cover their dots as one area. Test: tests/render/bitmap/stroke_quality_test.cpp.
//
// Each dot remembers the line that covered it last and how much it is covered. Where a line meets
// the one before, they share the dots: coverages add up. Where it comes back over an older line of
// its stroke, the larger coverage holds. Either way only the difference is mixed in, so that
// joints look like one line and not like two above each other.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "render/bitmap/band.h"
#include "render/bitmap/blending.h"
#include "render/bitmap/dot_quad.h"

namespace qm::bitmap {

class StrokeInk {
  public:
    // More lines than these are several strokes.
    static constexpr std::uint32_t kMostLines = 1U << 22;

    StrokeInk() {
        for (std::uint32_t covered = 0; covered < 255; ++covered) {
            scale_[covered] = ((255U << 16) + (255 - covered) / 2) / (255 - covered);
        }
    }

    // A stroke of at most kMostLines lines; `colour` is 0x00RRGGBB.
    void Begin(Band& band, std::uint32_t colour) {
        if (line_ > kLast - kMostLines - 1) {
            band.ClearMarks();
            line_ = 0;
        }
        colour_ = colour;
        first_ = (line_ + 1) << 8;
    }
    // The following coverages are another line's; it shares dots with so many lines before it.
    void NextLine(std::uint32_t sharing) {
        line_ = std::min(line_ + 1, kLast);
        sharedFrom_ = (line_ - sharing) << 8;
    }
    // So many lines are left out.
    void Skip(std::uint32_t lines) { line_ = std::min(line_ + lines, kLast); }
    // The line at hand, to be copied for its dots.
    class Line {
      public:
        void Cover(BandDot& dot, unsigned coverage) const {
            unsigned part = coverage;
            if (dot.mark >= first_) {
                const unsigned before = dot.mark & 255;
                if (dot.mark >= sharedFrom_) coverage = std::min(before + coverage, 255U);
                if (coverage <= before) return;
                part = ((coverage - before) * scale_[before]) >> 16;
            }
            dot.mark = mark_ | coverage;
            dot.colour = Mix(dot.colour, colour_, part);
        }
        // dot[0], dot[step], ... of four, where a dot may have the coverage 0.
        void CoverFour(BandDot* dot, std::ptrdiff_t step, const QuadCoverage& coverage,
                       const QuadColour& colour) const {
            const DotQuad dots(dot, step);
            if (dots.HasMarksFrom(first_)) {
                for (std::size_t i = 0; i < 4; ++i, dot += step) {
                    if (coverage.coverages[i] != 0) Cover(*dot, coverage.coverages[i]);
                }
                return;
            }
            dots.Store(colour.MixedInto(dots.Colours(), coverage.parts),
                       AllFour(mark_) | coverage.coverages);
        }
        QuadColour Colour() const { return QuadColour(colour_); }
        // The dots from `dot` to `end` - 1, whole.
        void Fill(BandDot* dot, BandDot* end) const {
            std::fill(dot, std::max(dot, end), BandDot{colour_, mark_ | 255});
        }

      private:
        friend class StrokeInk;
        Line(const StrokeInk& ink, const std::uint32_t* scale)
            : first_(ink.first_),
              sharedFrom_(ink.sharedFrom_),
              mark_(ink.line_ << 8),
              colour_(ink.colour_),
              scale_(scale) {}

        std::uint32_t first_;
        std::uint32_t sharedFrom_;
        std::uint32_t mark_;
        std::uint32_t colour_;
        const std::uint32_t* scale_;
    };
    Line Current() const { return {*this, scale_.data()}; }

  private:
    // DotQuad compares marks as signed numbers.
    static constexpr std::uint32_t kLast = 0x7FFFFF;

    std::uint32_t colour_ = 0;
    std::uint32_t line_ = 0;
    std::uint32_t first_ = 0;  // marks of the stroke at hand are this or more
    std::uint32_t sharedFrom_ = 0;
    std::array<std::uint32_t, 256> scale_{};  // of what is missing to 255, to 65536
};

}  // namespace qm::bitmap
