// StrokeInk: the colour of a stroke and what of it each dot of a band has got, so that the lines of
// one stroke cover their dots as one area. Test: tests/render/bitmap/stroke_quality_test.cpp.
//
// Each dot remembers the line that covered it last and how much it is covered. Where a line meets
// the one before, they share the dots: coverages add up. Where it comes back over an older line of
// its stroke, the larger coverage holds. Either way only the difference is mixed in, so that
// joints look like one line and not like two above each other.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "common/numbers.h"
#include "render/bitmap/band.h"
#include "render/bitmap/blending.h"
#include "render/bitmap/dot_quad.h"

namespace qm::bitmap {

class StrokeInk {
  public:
    // More lines than these are several strokes.
    static constexpr std::uint32_t kMostLines = 1U << 22;

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
                part = PartOf(before, coverage);
            }
            dot.mark = mark_ | coverage;
            dot.colour = Mix(dot.colour, colour_, part);
        }
        // Of a DotQuad or DotRun, where a dot may have the coverage 0.
        template <typename Place>
        void CoverFour(const Place& place, QuadLongs coverages, const QuadColour& colour) const {
            const QuadDots dots = place.Load();
            const QuadLongs own = From(dots.marks, first_);
            if (!AnyOf(own)) {
                return place.Store({colour.MixedInto(dots.colours, PartsOf(coverages)),
                                    AllFour(mark_) | coverages});
            }
            const QuadLongs before = dots.marks & own & 255;
            const QuadLongs sum = before + coverages;
            const QuadLongs shared = own & From(dots.marks, sharedFrom_);
            const QuadLongs larger = Chosen(Greater(coverages, before), coverages, before);
            const QuadLongs least = Chosen(Greater(sum, AllFour(255U)), AllFour(255U), sum);
            const QuadLongs after = Chosen(shared, least, larger);
            const QuadFloats missing = AtLeast(AsFloats(255 - before), 1.0F);
            const QuadLongs part = AsLongs(AsFloats(after - before) * 255.0F / missing + 0.5F);
            place.Store({colour.MixedInto(dots.colours, PartsOf(part)),
                         Chosen(Greater(after, before), AllFour(mark_) | after, dots.marks)});
        }
        QuadColour Colour() const { return QuadColour(colour_); }
        // The dots from `dot` to `end` - 1, whole.
        void Fill(BandDot* dot, BandDot* end) const {
            std::fill(dot, std::max(dot, end), BandDot{colour_, mark_ | 255});
        }

      private:
        friend class StrokeInk;
        explicit Line(const StrokeInk& ink)
            : first_(ink.first_),
              sharedFrom_(ink.sharedFrom_),
              mark_(ink.line_ << 8),
              colour_(ink.colour_) {}

        // Of what was not covered yet; CoverFour does the same.
        static unsigned PartOf(unsigned before, unsigned after) {
            const auto missing = static_cast<float>(std::max(255U - before, 1U));
            const float part = static_cast<float>(after - before) * 255.0F / missing;
            return static_cast<unsigned>(TruncateToInt32(double{part + 0.5F}));
        }

        std::uint32_t first_;
        std::uint32_t sharedFrom_;
        std::uint32_t mark_;
        std::uint32_t colour_;
    };
    Line Current() const { return Line(*this); }

  private:
    // DotQuad compares marks as signed numbers.
    static constexpr std::uint32_t kLast = 0x7FFFFF;

    std::uint32_t colour_ = 0;
    std::uint32_t line_ = 0;
    std::uint32_t first_ = 0;  // marks of the stroke at hand are this or more
    std::uint32_t sharedFrom_ = 0;
};

}  // namespace qm::bitmap
