#include "render/bitmap/disc_table.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "common/numbers.h"

namespace qm::bitmap {

namespace {

// Bounds of what is a place, far outside any page.
constexpr double kFarthest = 1e6;

// The part of a dot that a disc covers, by the distance of their centres: mean of so many rows.
std::uint8_t CoverageOfDisc(double radius, double x, double y) {
    constexpr int kRows = 16;
    double sum = 0.0;
    for (int row = 0; row < kRows; ++row) {
        const double away = y + (row + 0.5) / kRows - 0.5;
        const double half = std::sqrt(std::max(0.0, radius * radius - away * away));
        sum += std::max(0.0, std::min(x + 0.5, half) - std::max(x - 0.5, -half));
    }
    return static_cast<std::uint8_t>(RoundToInt32(sum * 255.0 / kRows));
}

}  // namespace

DiscTable::DiscTable(double radius) : reach_(RoundToInt32(std::ceil(radius * kSteps))) {
    // By distance in places; dots further away than this are not covered.
    constexpr std::size_t kPlaces = kSteps;
    constexpr std::size_t kFar = kPlaces + kPlaces / 2;
    std::array<std::array<std::uint8_t, kFar>, kFar> quarter{};
    const std::size_t touched = static_cast<std::size_t>(reach_) + kPlaces / 2;
    for (std::size_t y = 0; y < touched; ++y) {
        for (std::size_t x = 0; x <= y; ++x) {
            quarter[y][x] = quarter[x][y] = CoverageOfDisc(radius, static_cast<double>(x) / kSteps,
                                                           static_cast<double>(y) / kSteps);
        }
    }
    const auto awayOf = [&](std::size_t dot, std::size_t place) {
        const auto middle = static_cast<std::int32_t>(dot * kPlaces + kPlaces / 2);
        return static_cast<std::size_t>(
            std::abs(middle - static_cast<std::int32_t>(place) - reach_));
    };
    for (std::size_t place = 0; place < kPlaces * kPlaces; ++place) {
        Columns& columns = columns_[place / kPlaces][place % kPlaces];
        for (std::size_t dot = 0; dot < 16; ++dot) {
            const std::size_t x = awayOf(dot / 4, place % kPlaces);
            const std::size_t y = awayOf(dot % 4, place / kPlaces);
            if (x >= kFar || y >= kFar) continue;
            columns[dot / 4] |= std::uint32_t{quarter[y][x]} << 8 * (dot % 4);
        }
    }
}

DiscTable::Disc DiscTable::Around(PointD centre) const {
    const auto placeOf = [&](double value) {
        return TruncateToInt32(
                   (std::clamp(value, -kFarthest, kFarthest) + 2.0 * kFarthest) * kSteps + 0.5) -
               reach_;
    };
    constexpr auto kMoved = static_cast<std::int32_t>(2.0 * kFarthest);
    const std::int32_t x = placeOf(centre.x);
    const std::int32_t y = placeOf(centre.y);
    return {&columns_[static_cast<std::size_t>(y % kSteps)][static_cast<std::size_t>(x % kSteps)],
            x / kSteps - kMoved, y / kSteps - kMoved};
}

}  // namespace qm::bitmap
