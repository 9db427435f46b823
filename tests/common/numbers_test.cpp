// Conversions at the edges of their ranges: where a wrong cast would be undefined behaviour or a
// wrong coordinate.
#include "common/numbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace qm {
namespace {

TEST(Numbers, TruncationGivesTheMinimumOutsideTheRange) {
    const double infinity = std::numeric_limits<double>::infinity();
    for (const double value :
         {2147483648.0, -2147483648.9, 1e300, infinity, -infinity, std::nan("")})
        EXPECT_EQ(TruncateToInt32(value), INT32_MIN) << value;
    EXPECT_EQ(TruncateToInt32(-0.9), 0);
    EXPECT_EQ(TruncateToInt32(2147483647.9), INT32_MAX);
}

TEST(Numbers, RoundingIsHalfUp) {
    EXPECT_EQ(RoundToInt32(2.5), 3);
    EXPECT_EQ(RoundToInt32(-2.5), -2);
    EXPECT_EQ(RoundToInt32(1e12), INT32_MIN);
}

TEST(Numbers, SumsWrap) {
    EXPECT_EQ(WrapAdd(INT32_MAX, 1), INT32_MIN);
    EXPECT_EQ(WrapNegate(INT32_MIN), INT32_MIN);
}

TEST(Numbers, TheLengthOfDecimalsDoesNotFallShortOfAWholeNumber) {
    EXPECT_EQ(Length(37.8, 50.4), 63.0);
}

TEST(Numbers, CheckedBytesRefusesWhatAFileMayNotClaim) {
    EXPECT_EQ(CheckedBytes(10, 4), 40U);
    EXPECT_FALSE(CheckedBytes(-1, 4));
    EXPECT_FALSE(CheckedBytes(std::int64_t{1} << 62, 4));
    EXPECT_FALSE(CheckedBytes((std::int64_t{1} << 31) + 1, 1));
}

}  // namespace
}  // namespace qm
