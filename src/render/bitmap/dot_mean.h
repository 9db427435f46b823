// DotMean: what sums of a picture's components, by the weights of what lies under a dot of the
// page, come to: exactly what integers give, without dividing them. Test:
// tests/render/bitmap/picture_sampler_test.cpp.
#pragma once

#include <cstdint>

#include "common/numbers.h"
#include "render/bitmap/column_sums.h"
#include "render/bitmap/picture_row.h"

namespace qm::bitmap {

class DotMean {
  public:
    // The shares must not be empty.
    DotMean(const PictureShare& rows, const PictureShare& columns)
        : weight_(std::uint64_t{rows.weight} * columns.weight),
          whole_(std::uint64_t{rows.whole} * columns.whole) {}

    // Of ones that weigh so much, the others being zeros. What the picture does not cover is paper.
    std::uint32_t Of(BitSums::Total ones, const BitSums::Inks& inks, std::uint32_t paper) const {
        const bool isWhole = weight_ == whole_;
        if (ones == 0 && isWhole) return inks.zero;
        const Divider divider(whole_);
        const auto part = [&](int shift) {
            const auto of = [shift](std::uint32_t colour) { return colour >> shift & 0xFF; };
            return divider.Rounded(of(inks.one) * ones + of(inks.zero) * (weight_ - ones) +
                                   of(paper) * (whole_ - weight_));
        };
        if (inks.areGrey && (isWhole || IsGrey(paper))) return part(0) * 0x010101;
        return part(16) << 16 | part(8) << 8 | part(0);
    }
    std::uint32_t Of(const ColourTotal& total, const ColourSums::Inks&, std::uint32_t paper) const {
        const Divider divider(whole_);
        const std::uint64_t rest = whole_ - weight_;
        return divider.Rounded(total.red + (paper >> 16) * rest) << 16 |
               divider.Rounded(total.green + (paper >> 8 & 0xFF) * rest) << 8 |
               divider.Rounded(total.blue + (paper & 0xFF) * rest);
    }

  private:
    // Quotients below 256, rounded half up. Half a unit more keeps what comes out even from falling
    // below, and is too little to reach the next number; beyond kMostExact it might not be.
    class Divider {
      public:
        explicit Divider(std::uint64_t by)
            : by_(by), reciprocal_(1.0 / static_cast<double>(static_cast<std::int64_t>(by))) {}
        std::uint32_t Rounded(std::uint64_t sum) const {
            const std::uint64_t more = sum + by_ / 2;
            if (by_ > kMostExact) return static_cast<std::uint32_t>(more / by_);
            const auto exact = static_cast<double>(static_cast<std::int64_t>(more));
            return static_cast<std::uint32_t>(TruncateSmall((exact + 0.5) * reciprocal_));
        }

      private:
        static constexpr std::uint64_t kMostExact = std::uint64_t{1} << 40;

        std::uint64_t by_;
        double reciprocal_;
    };

    std::uint64_t weight_;
    std::uint64_t whole_;
};

}  // namespace qm::bitmap
