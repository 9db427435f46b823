// DiscTable: what a small disc covers of the dots around its centre, for the round ends of thin
// lines. Test: tests/render/bitmap/stroke_quality_test.cpp.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "common/geometry.h"
#include "common/numbers.h"

namespace qm::bitmap {

class DiscTable {
  public:
    // Radius in dots, 0.5 to 1.
    explicit DiscTable(double radius);
    // One of the tables that all share, made when it is asked for first; its radius differs from
    // `radius` by 1/128 dot at most.
    static const DiscTable& For(double radius);

    // Four dots of each of four columns, a byte each, the uppermost lowest.
    using Columns = std::array<std::uint32_t, 4>;
    struct Disc {
        const Columns* columns;
        std::int32_t x;  // the dot at the upper left
        std::int32_t y;

        // Of the dots (column, row) to (column, row + 3), a byte each, 0 to 255.
        std::uint32_t At(std::int32_t column, std::int32_t row) const {
            const auto index = static_cast<std::uint32_t>(column) - static_cast<std::uint32_t>(x);
            const auto down = static_cast<std::uint32_t>(row) - static_cast<std::uint32_t>(y) + 3U;
            if (index > 3 || down > 6) return 0;
            const std::uint64_t dots = (*columns)[index];
            return static_cast<std::uint32_t>(dots << 32 >> (8 * (down + 1)));
        }
        // The dots (column, row) to (column, row + 3) of one row and any column.
        struct Row {
            const Columns* columns;
            std::int32_t x;
            unsigned shift;

            std::uint32_t At(std::int32_t column) const {
                const auto index =
                    static_cast<std::uint32_t>(column) - static_cast<std::uint32_t>(x);
                const std::uint64_t dots = index > 3 ? 0 : (*columns)[index];
                return static_cast<std::uint32_t>(dots << 32 >> shift);
            }
        };
        Row From(std::int32_t row) const {
            constexpr std::int32_t kNowhere = -(1 << 30);
            const auto down = static_cast<std::uint32_t>(row) - static_cast<std::uint32_t>(y) + 3U;
            if (down > 6) return {columns, kNowhere, 8};
            return {columns, x, 8 * (down + 1)};
        }
    };
    // Of a disc around that point, which lies on or near a page.
    Disc Around(PointD centre) const {
        const std::uint32_t x = PlaceOf(centre.x);
        const std::uint32_t y = PlaceOf(centre.y);
        return {&columns_[y % kSteps][x % kSteps], static_cast<std::int32_t>(x / kSteps) - kMoved,
                static_cast<std::int32_t>(y / kSteps) - kMoved};
    }

  private:
    static constexpr std::int32_t kSteps = 32;         // places of a dot
    static constexpr std::int32_t kMoved = 2'000'000;  // so that no place is negative
    static constexpr double kFarthest = kMoved / 2.0;  // outside any page

    // Of the disc's upper or left edge; no number counts as far outside.
    std::uint32_t PlaceOf(double centre) const {
        const double place = std::min(kFarthest, std::max(-kFarthest, centre));
        return static_cast<std::uint32_t>(TruncateSmall((place + kMoved) * kSteps + 0.5) - reach_);
    }

    std::int32_t reach_;  // the radius in places, rounded up
    // By the place of the disc's edge in its first dot, across and down.
    std::array<std::array<Columns, kSteps>, kSteps> columns_{};
};

}  // namespace qm::bitmap
