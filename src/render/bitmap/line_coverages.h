// LineCoverages: what an endless thin line covers of the four dots of a column, by its direction
// and by where its middle lies between two dots. Test:
// tests/render/bitmap/stroke_quality_test.cpp.
//
// A direction gets a table once as many columns were asked for as making it takes. Until then the
// same values are reckoned one by one, so that which lines came before changes no dot.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "common/numbers.h"
#include "render/bitmap/dot_quad.h"
#include "render/bitmap/half_planes.h"

namespace qm::bitmap {

class LineCoverages {
  public:
    static constexpr std::size_t kPlaces = 256;  // of the middle between two dots
    static constexpr std::size_t kSlopes = 33;   // from 0 to 1

    // In dots, 0.5 to 1.
    void SetHalfWidth(double halfWidth) {
        halfWidth_ = static_cast<float>(halfWidth);
        columns_.fill(0);
    }

    // What four dots are covered, 0 to 255 each, as Unpacked of dot_quad.h takes it.
    using Table = std::array<std::uint32_t, kPlaces>;

    // Lines of about one slope.
    class Slope {
      public:
        Slope(std::size_t index, float halfWidth)
            : Slope(1.0 / std::hypot(1.0, Of(index)), index, halfWidth) {}
        // A line whose middle is 1.5 dots and place / kPlaces of the next below the first dot's
        // centre.
        QuadLongs Covered(std::size_t place) const {
            const float beyond = (static_cast<float>(place) + 0.5F) / kPlaces + 1.0F;
            const QuadFloats away =
                Absolute((QuadFloats{0.0F, 1.0F, 2.0F, 3.0F} - beyond) * across_);
            const QuadFloats covered =
                planes_.Inside(halfWidth_ - away) - planes_.Beyond(halfWidth_ + away);
            return AsLongs(covered * 255.0F + 0.5F);
        }

      private:
        static double Of(std::size_t index) { return static_cast<double>(index) / (kSlopes - 1); }
        Slope(double across, std::size_t index, float halfWidth)
            : planes_(across, across * Of(index)),
              across_(static_cast<float>(across)),
              halfWidth_(halfWidth) {}

        HalfPlanes planes_;
        float across_;  // distance from the line of neighbouring dots in a column
        float halfWidth_;
    };
    // The number of a slope from -1 to 1.
    static std::size_t NumberOf(double slope) {
        const double place = std::abs(slope) * (kSlopes - 1) + 0.5;
        return static_cast<std::size_t>(TruncateToInt32(std::min(place, kSlopes - 0.5)));
    }
    Slope Of(std::size_t slope) const { return {slope, halfWidth_}; }
    // For a line of so many columns, at least 0; null as long as it would not pay.
    const Table* TableFor(std::size_t slope, std::int32_t columns) {
        std::size_t& asked = columns_[slope];
        if (asked >= kPlaces) return &tables_[slope];
        asked += static_cast<std::size_t>(columns);
        if (asked < kPlaces) return nullptr;
        const Slope line = Of(slope);
        for (std::size_t place = 0; place < kPlaces; ++place) {
            tables_[slope][place] = Packed(line.Covered(place));
        }
        return &tables_[slope];
    }

  private:
    static std::uint32_t Packed(QuadLongs dots) {
        return dots[0] | dots[1] << 8 | dots[2] << 16 | dots[3] << 24;
    }

    float halfWidth_ = 0.0F;
    std::array<std::size_t, kSlopes> columns_{};  // asked for so far
    std::array<Table, kSlopes> tables_;
};

}  // namespace qm::bitmap
