// DiscTable: what a small disc covers of the dots around its centre, for the round ends of thin
// lines. Test: tests/render/bitmap/stroke_quality_test.cpp.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "common/geometry.h"

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
    };
    // Of a disc around that point, which lies on or near a page.
    Disc Around(PointD centre) const;

  private:
    static constexpr std::int32_t kSteps = 32;  // places of a dot

    std::int32_t reach_;  // the radius in places, rounded up
    // By the place of the disc's edge in its first dot, across and down.
    std::array<std::array<Columns, kSteps>, kSteps> columns_{};
};

}  // namespace qm::bitmap
