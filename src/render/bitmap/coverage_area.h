// CoverageArea: how much of each dot of a band the inside of closed outlines covers, by summing up
// the signed areas to the right of their edges. Test: tests/render/bitmap/page_painter_test.cpp.
//
//   CoverageArea area(width, rows, smooth);
//   area.Start(bounds);
//   area.AddRing(points, count);
//   area.Sweep(kEvenOdd, [](int y, int x, int count, unsigned coverage) { ... });
//
// Sums are integers and computed from the page's coordinates alone, so that a band gives the same
// coverages whatever its borders are, and an outline that is closed leaves nothing behind. Time is
// that of the dots that the edges cross, plus a step for each 64 dots between them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "common/geometry.h"
#include "render/bitmap/band.h"

namespace qm::bitmap {

enum class FillRule { kEvenOdd, kNonZero };

class CoverageArea {
  public:
    // For bands of at most `rows` rows. Not `smooth`: a dot is covered when its centre is.
    CoverageArea(std::int32_t width, std::int32_t rows, bool smooth);

    // Only dots inside `bounds` will be swept; its rows are not more than there is room for. Throws
    // std::bad_alloc.
    void Start(const DotBox& bounds);
    // An edge of an outline, in dots of the page, y down. Edges of an outline must close it.
    void AddEdge(PointD from, PointD to);
    // A closed outline. Its direction does not matter: it is turned so that it winds once around
    // its inside, hence neighbouring rings cover their common dots as one area.
    void AddRing(const PointD* points, std::size_t count);

    // Calls emit(y, x, count, coverage) for runs of equal coverage 1 to 255, then is empty again.
    template <typename Emit>
    void Sweep(FillRule rule, const Emit& emit) {
        for (std::int32_t y = firstRow_; y < endRow_; ++y) SweepRow(rule, y, emit);
        firstRow_ = bounds_.bottom;
        endRow_ = bounds_.top;
    }

  private:
    // Sums of a whole dot, of 256 x 256 places of which each is two halves.
    static constexpr std::int32_t kWhole = 1 << 17;
    static constexpr int kBlockShift = 6;
    static constexpr std::int32_t kBlock = 1 << kBlockShift;

    struct FixedPoint {
        std::int32_t x = 0;
        std::int32_t y = 0;
    };
    FixedPoint Fixed(PointD point) const;
    void AddFixed(FixedPoint from, FixedPoint to);
    void AddSmooth(FixedPoint from, FixedPoint to, std::int32_t sign);
    void AddHard(FixedPoint from, FixedPoint to, std::int32_t sign);
    // The part of an edge inside a row: from (fromX, fromY) to (toX, toY), y within the row.
    void AddInRow(std::int32_t row, std::int32_t fromX, std::int32_t toX, std::int32_t fromY,
                  std::int32_t toY, std::int32_t sign);
    void AddCell(std::int32_t* sums, std::int32_t column, std::int32_t height,
                 std::int32_t twiceFraction) {
        sums[column] = Sum(sums[column], height * (512 - twiceFraction));
        sums[column + 1] = Sum(sums[column + 1], height * twiceFraction);
    }
    // Outlines that wind thousands of times around a dot wrap.
    static std::int32_t Sum(std::int32_t a, std::int32_t b) {
        return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) +
                                         static_cast<std::uint32_t>(b));
    }
    void Touch(std::int32_t row, std::int32_t first, std::int32_t last);

    static unsigned CoverageOf(FillRule rule, std::int32_t sum) {
        std::uint32_t part = 0;
        if (rule == FillRule::kEvenOdd) {
            part = static_cast<std::uint32_t>(sum) & (2 * kWhole - 1);
            if (part > kWhole) part = 2 * kWhole - part;
        } else {
            part = sum < 0 ? 0U - static_cast<std::uint32_t>(sum) : static_cast<std::uint32_t>(sum);
            if (part > kWhole) part = kWhole;
        }
        return (part * 255 + kWhole / 2) >> 17;
    }
    std::int32_t* SumsOf(std::int32_t row) {
        return sums_.data() + static_cast<std::size_t>(row - bounds_.top) * stride_;
    }
    std::uint64_t* BlocksOf(std::int32_t row) {
        return blocks_.data() + static_cast<std::size_t>(row - bounds_.top) * blockWords_;
    }

    template <typename Emit>
    void SweepRow(FillRule rule, std::int32_t y, const Emit& emit) {
        std::int32_t* const sums = SumsOf(y);
        std::uint64_t* const touched = BlocksOf(y);
        std::int32_t sum = 0;
        unsigned coverage = 0;
        std::int32_t from = 0;  // of the run of `coverage`
        const auto endRun = [&](std::int32_t x) {
            const std::int32_t left = from > bounds_.left ? from : bounds_.left;
            const std::int32_t right = x < bounds_.right ? x : bounds_.right;
            if (coverage != 0 && left < right) emit(y, left, right - left, coverage);
            from = x;
        };
        for (std::size_t word = 0; word < blockWords_; ++word) {
            for (std::uint64_t bits = touched[word]; bits != 0; bits &= bits - 1) {
                const auto block = static_cast<std::int32_t>(word * 64) + LowestBit(bits);
                const std::int32_t end = (block + 1) * kBlock;
                for (std::int32_t x = block * kBlock; x < end; ++x) {
                    if (sums[x] == 0) continue;
                    sum = Sum(sum, sums[x]);
                    sums[x] = 0;
                    const unsigned next = CoverageOf(rule, sum);
                    if (next == coverage) continue;
                    endRun(x);
                    coverage = next;
                }
            }
            touched[word] = 0;
        }
        endRun(width_);
    }
    static std::int32_t LowestBit(std::uint64_t bits) { return __builtin_ctzll(bits); }

    std::int32_t width_;
    bool smooth_;
    std::size_t stride_;
    std::size_t blockWords_;
    std::size_t rows_;
    DotBox bounds_;
    std::int32_t firstRow_ = 0;  // touched rows
    std::int32_t endRow_ = 0;
    std::vector<std::int32_t> sums_;
    std::vector<std::uint64_t> blocks_;  // a bit for each kBlock dots that hold a sum
    std::vector<FixedPoint> ring_;
};

}  // namespace qm::bitmap
