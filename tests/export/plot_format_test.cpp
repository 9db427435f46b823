// The formatter writes the bytes of printf, also for numbers no plot should hold.
#include "export/plot_format.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <limits>
#include <string>

namespace qm {
namespace {

constexpr Command<Int, Real, Int> kMixed{"A%d,%2.2f;%%B%d"};

std::string Printed(Int a, Real b, Int c) {
    char text[400];
    std::snprintf(text, sizeof(text), "A%d,%2.2f;%%B%d", static_cast<int>(a), b,
                  static_cast<int>(c));
    return text;
}

TEST(PlotFormat, AgreesWithPrintf) {
    constexpr double kLargest = std::numeric_limits<double>::max();
    for (const double value :
         {0.0, -0.0, 0.35, 0.125, 0.375, 0.005, 0.015, 2.675, -0.001, -0.005, 1e15, 123456.785,
          1e22, kLargest, -kLargest, std::numeric_limits<double>::denorm_min(),
          std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
          std::numeric_limits<double>::quiet_NaN()}) {
        const CommandText text(kMixed, std::numeric_limits<Int>::min(), value, 7);
        EXPECT_EQ(text.View(), Printed(std::numeric_limits<Int>::min(), value, 7));
    }
    EXPECT_EQ(CommandText(Command<>("%%1%%")).View(), "%1%");
}

}  // namespace
}  // namespace qm
