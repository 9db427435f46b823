#include "render/bitmap/disc_table.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "common/numbers.h"

namespace qm::bitmap {

namespace {

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
    // By distance in places; dots at kFar or further away are not covered.
    constexpr std::size_t kPlaces = kSteps;
    constexpr std::size_t kFar = kPlaces + kPlaces / 2;
    std::array<std::array<std::uint8_t, kFar + 1>, kFar + 1> quarter{};
    const std::size_t touched = static_cast<std::size_t>(reach_) + kPlaces / 2;
    for (std::size_t y = 0; y < touched; ++y) {
        for (std::size_t x = 0; x <= y; ++x) {
            quarter[y][x] = quarter[x][y] = CoverageOfDisc(radius, static_cast<double>(x) / kSteps,
                                                           static_cast<double>(y) / kSteps);
        }
    }
    std::array<std::array<std::size_t, 4>, kPlaces> away{};  // of the four dots
    for (std::size_t place = 0; place < kPlaces; ++place) {
        for (std::size_t dot = 0; dot < 4; ++dot) {
            const auto middle = static_cast<std::int32_t>(dot * kPlaces + kPlaces / 2 - place);
            away[place][dot] = std::min(static_cast<std::size_t>(std::abs(middle - reach_)), kFar);
        }
    }
    for (std::size_t y = 0; y < kPlaces; ++y) {
        for (std::size_t x = 0; x < kPlaces; ++x) {
            for (std::size_t column = 0; column < 4; ++column) {
                const auto& dots = quarter[away[x][column]];
                const auto at = [&](std::size_t row) { return std::uint32_t{dots[away[y][row]]}; };
                columns_[y][x][column] = at(0) | at(1) << 8 | at(2) << 16 | at(3) << 24;
            }
        }
    }
}

namespace {

constexpr std::size_t kTables = 33;  // of radii 1/64 dots apart

template <std::size_t kIndex>
const DiscTable& Known() {
    static const DiscTable table(0.5 + kIndex / 64.0);
    return table;
}
template <std::size_t... kIndices>
const DiscTable& Known(std::size_t index, std::index_sequence<kIndices...>) {
    using Getter = const DiscTable& (*)();
    constexpr Getter kGetters[] = {Known<kIndices>...};
    return kGetters[index]();
}

}  // namespace

const DiscTable& DiscTable::For(double radius) {
    constexpr auto kLast = static_cast<std::int32_t>(kTables) - 1;
    const std::int32_t index = std::clamp(TruncateToInt32((radius - 0.5) * 64.0 + 0.5), 0, kLast);
    return Known(static_cast<std::size_t>(index), std::make_index_sequence<kTables>());
}

}  // namespace qm::bitmap
