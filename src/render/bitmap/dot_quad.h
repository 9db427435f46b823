// DotQuad: four dots of a band at once, which may lie anywhere. Compilers make of the vector types
// what the processor has. Test: tests/render/bitmap/stroke_quality_test.cpp.
#pragma once

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "render/bitmap/band.h"

namespace qm::bitmap {

using QuadWords = std::uint16_t __attribute__((vector_size(16)));  // two for each dot
using QuadLongs = std::uint32_t __attribute__((vector_size(16)));  // one for each dot
using QuadSigned = std::int32_t __attribute__((vector_size(16)));
using QuadFloats = float __attribute__((vector_size(16)));
using QuadPairs = std::uint64_t __attribute__((vector_size(16)));

inline QuadLongs AllFour(std::uint32_t value) { return QuadLongs{value, value, value, value}; }
inline QuadFloats AllFour(float value) { return QuadFloats{value, value, value, value}; }

// Compilers do not see that the processor has these in one instruction, or two.
#ifdef __SSE2__
inline QuadFloats AtLeast(QuadFloats values, float least) {
    return _mm_max_ps(values, AllFour(least));
}
inline QuadFloats AtMost(QuadFloats values, float most) {
    return _mm_min_ps(values, AllFour(most));
}
// Four bytes, the lowest first.
inline QuadLongs Unpacked(std::uint32_t bytes) {
    const __m128i packed = _mm_cvtsi32_si128(static_cast<int>(bytes));
    const __m128i words = _mm_unpacklo_epi8(packed, _mm_setzero_si128());
    return reinterpret_cast<QuadLongs>(_mm_unpacklo_epi16(words, _mm_setzero_si128()));
}
#else
inline QuadFloats AtLeast(QuadFloats values, float least) {
    return values > AllFour(least) ? values : AllFour(least);
}
inline QuadFloats AtMost(QuadFloats values, float most) {
    return values < AllFour(most) ? values : AllFour(most);
}
inline QuadLongs Unpacked(std::uint32_t bytes) {
    using Bytes = std::uint8_t __attribute__((vector_size(16)));
    const auto packed = reinterpret_cast<Bytes>(QuadLongs{bytes, 0, 0, 0});
    return reinterpret_cast<QuadLongs>(__builtin_shufflevector(
        packed, Bytes{}, 0, 16, 16, 16, 1, 16, 16, 16, 2, 16, 16, 16, 3, 16, 16, 16));
}
#endif
inline QuadFloats Absolute(QuadFloats values) {
    return reinterpret_cast<QuadFloats>(reinterpret_cast<QuadLongs>(values) & 0x7FFFFFFFU);
}

inline QuadFloats AsFloats(QuadLongs values) {
    return __builtin_convertvector(reinterpret_cast<QuadSigned>(values), QuadFloats);
}
// Not negative ones, truncated.
inline QuadLongs AsLongs(QuadFloats values) {
    return reinterpret_cast<QuadLongs>(__builtin_convertvector(values, QuadSigned));
}

// Coverages of 255 as parts of 256, as Mix takes them, twice each.
inline QuadWords PartsOf(QuadLongs coverages) {
    const QuadLongs whole = coverages + (coverages >> 7);
    return reinterpret_cast<QuadWords>(whole | whole << 16);
}

// A colour that is mixed into dots.
class QuadColour {
  public:
    explicit QuadColour(std::uint32_t colour)
        : outer_(reinterpret_cast<QuadWords>(AllFour(colour & 0xFF00FF))),
          inner_(reinterpret_cast<QuadWords>(AllFour(colour >> 8 & 0xFF00FF))) {}

    // Mix of blending.h, whose sum fits 16 bits; differences that wrap come back to it.
    QuadLongs MixedInto(QuadLongs paper, QuadWords parts) const {
        const auto outer = reinterpret_cast<QuadWords>(paper & 0xFF00FF);
        const auto inner = reinterpret_cast<QuadWords>(paper >> 8 & 0xFF00FF);
        const QuadWords mixedOuter = ((outer << 8) + (outer_ - outer) * parts + 128) >> 8;
        const QuadWords mixedInner = ((inner << 8) + (inner_ - inner) * parts + 128) >> 8;
        return reinterpret_cast<QuadLongs>(mixedOuter) | reinterpret_cast<QuadLongs>(mixedInner)
                                                             << 8;
    }

  private:
    QuadWords outer_;  // red and blue
    QuadWords inner_;  // green
};

// All bits of those values that are `least` or more, both below 2^31.
inline QuadLongs From(QuadLongs values, std::uint32_t least) {
    return reinterpret_cast<QuadLongs>(reinterpret_cast<QuadSigned>(values) >=
                                       reinterpret_cast<QuadSigned>(AllFour(least)));
}
inline QuadLongs Greater(QuadLongs values, QuadLongs others) {
    return reinterpret_cast<QuadLongs>(reinterpret_cast<QuadSigned>(values) >
                                       reinterpret_cast<QuadSigned>(others));
}
inline QuadLongs Chosen(QuadLongs where, QuadLongs values, QuadLongs others) {
    return (values & where) | (others & ~where);
}
inline bool AnyOf(QuadLongs bits) {
    const auto pairs = reinterpret_cast<QuadPairs>(bits);
    return (pairs[0] | pairs[1]) != 0;
}

// Colours and marks of four dots.
struct QuadDots {
    QuadLongs colours;
    QuadLongs marks;
};

// Dots that lie anywhere: dot[0], dot[step], dot[2 * step] and dot[3 * step].
class DotQuad {
  public:
    DotQuad(BandDot* dot, std::ptrdiff_t step) : dot_(dot), step_(step) {}

    QuadDots Load() const {
        const auto upper = reinterpret_cast<QuadLongs>(QuadPairs{At(0), At(1)});
        const auto lower = reinterpret_cast<QuadLongs>(QuadPairs{At(2), At(3)});
        return {__builtin_shufflevector(upper, lower, 0, 2, 4, 6),
                __builtin_shufflevector(upper, lower, 1, 3, 5, 7)};
    }
    void Store(const QuadDots& dots) const {
        const auto upper = reinterpret_cast<QuadPairs>(
            __builtin_shufflevector(dots.colours, dots.marks, 0, 4, 1, 5));
        const auto lower = reinterpret_cast<QuadPairs>(
            __builtin_shufflevector(dots.colours, dots.marks, 2, 6, 3, 7));
        Put(0, upper[0]);
        Put(1, upper[1]);
        Put(2, lower[0]);
        Put(3, lower[1]);
    }

  private:
    std::uint64_t At(int index) const {
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
};

// Neighbours in a row.
class DotRun {
  public:
    explicit DotRun(BandDot* dot) : dot_(dot) {}

    QuadDots Load() const {
        QuadLongs halves[2];
        static_assert(4 * sizeof(BandDot) == sizeof halves);
        std::memcpy(halves, dot_, sizeof halves);
        return {__builtin_shufflevector(halves[0], halves[1], 0, 2, 4, 6),
                __builtin_shufflevector(halves[0], halves[1], 1, 3, 5, 7)};
    }
    void Store(const QuadDots& dots) const {
        const QuadLongs halves[2] = {__builtin_shufflevector(dots.colours, dots.marks, 0, 4, 1, 5),
                                     __builtin_shufflevector(dots.colours, dots.marks, 2, 6, 3, 7)};
        std::memcpy(static_cast<void*>(dot_), halves, sizeof halves);
    }

  private:
    BandDot* dot_;
};

}  // namespace qm::bitmap
