// DotQuad: four dots of a band at once, which may lie anywhere. Compilers make of the vector types
// what the processor has. Test: tests/render/bitmap/stroke_quality_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "render/bitmap/band.h"

namespace qm::bitmap {

using QuadWords = std::uint16_t __attribute__((vector_size(16)));  // two for each dot
using QuadLongs = std::uint32_t __attribute__((vector_size(16)));  // one for each dot
using QuadSigned = std::int32_t __attribute__((vector_size(16)));
using QuadPairs = std::uint64_t __attribute__((vector_size(16)));

inline QuadLongs AllFour(std::uint32_t value) { return QuadLongs{value, value, value, value}; }

// What a line covers of four dots.
struct QuadCoverage {
    QuadWords parts;      // of 256, as Mix takes them
    QuadLongs coverages;  // 0 to 255

    QuadCoverage() : QuadCoverage(0, 0, 0, 0) {}
    QuadCoverage(std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t d)
        : coverages{a, b, c, d} {
        const QuadLongs whole = coverages + (coverages >> 7);
        parts = reinterpret_cast<QuadWords>(whole | whole << 16);
    }
};

// A colour that is mixed into dots.
class QuadColour {
  public:
    explicit QuadColour(std::uint32_t colour)
        : outer_(reinterpret_cast<QuadWords>(AllFour(colour & 0xFF00FF))),
          inner_(reinterpret_cast<QuadWords>(AllFour(colour >> 8 & 0xFF00FF))) {}

    // Mix of blending.h.
    QuadLongs MixedInto(QuadLongs paper, QuadWords parts) const {
        const QuadWords rest = 256 - parts;
        const auto outer = reinterpret_cast<QuadWords>(paper & 0xFF00FF);
        const auto inner = reinterpret_cast<QuadWords>(paper >> 8 & 0xFF00FF);
        const QuadWords mixedOuter = (outer * rest + outer_ * parts + 128) >> 8;
        const QuadWords mixedInner = (inner * rest + inner_ * parts + 128) >> 8;
        return reinterpret_cast<QuadLongs>(mixedOuter) | reinterpret_cast<QuadLongs>(mixedInner)
                                                             << 8;
    }

  private:
    QuadWords outer_;  // red and blue
    QuadWords inner_;  // green
};

class DotQuad {
  public:
    // dot[0], dot[step], dot[2 * step] and dot[3 * step].
    DotQuad(BandDot* dot, std::ptrdiff_t step) : dot_(dot), step_(step) {
        const auto upper = reinterpret_cast<QuadLongs>(QuadPairs{Load(0), Load(1)});
        const auto lower = reinterpret_cast<QuadLongs>(QuadPairs{Load(2), Load(3)});
        colours_ = __builtin_shufflevector(upper, lower, 0, 2, 4, 6);
        marks_ = __builtin_shufflevector(upper, lower, 1, 3, 5, 7);
    }

    QuadLongs Colours() const { return colours_; }
    // Whether a dot has that mark, which is below 2^31, or a greater one.
    bool HasMarksFrom(std::uint32_t first) const {
        const auto least = reinterpret_cast<QuadSigned>(AllFour(first));
        const auto found =
            reinterpret_cast<QuadPairs>(reinterpret_cast<QuadSigned>(marks_) >= least);
        return (found[0] | found[1]) != 0;
    }
    void Store(QuadLongs colours, QuadLongs marks) const {
        const auto upper =
            reinterpret_cast<QuadPairs>(__builtin_shufflevector(colours, marks, 0, 4, 1, 5));
        const auto lower =
            reinterpret_cast<QuadPairs>(__builtin_shufflevector(colours, marks, 2, 6, 3, 7));
        Put(0, upper[0]);
        Put(1, upper[1]);
        Put(2, lower[0]);
        Put(3, lower[1]);
    }

  private:
    std::uint64_t Load(int index) const {
        std::uint64_t both = 0;
        static_assert(sizeof(BandDot) == sizeof both);
        std::memcpy(&both, dot_ + index * step_, sizeof both);
        return both;
    }
    void Put(int index, std::uint64_t both) const {
        std::memcpy(static_cast<void*>(dot_ + index * step_), &both, sizeof both);
    }

    BandDot* dot_;
    std::ptrdiff_t step_;
    QuadLongs colours_;
    QuadLongs marks_;
};

}  // namespace qm::bitmap
