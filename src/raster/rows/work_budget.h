// WorkBudget: how many bytes of pictures one plot may have made.
//
// A few bytes of a plot can ask for gigabytes (a row repeated 65535 times, a row of 2 GiB), and can
// ask again and again. Each picture is bounded, the budget bounds them all together; what goes
// beyond counts as a failed allocation. Tests: tests/raster/raster_mode_test.cpp.
#pragma once

#include <cstdint>

namespace qm {

class WorkBudget {
  public:
    // For a plot of `plotBytes` bytes: enough for one picture of the largest size (its rows and its
    // bitmap), and for files whose every five bytes stand for a blank row of a very large page.
    static WorkBudget ForPlot(std::uint32_t plotBytes) {
        return WorkBudget(kBase + kPerPlotByte * plotBytes);
    }
    explicit WorkBudget(std::int64_t bytes = INT64_MAX) : left_(bytes) {}

    // False, and nothing taken, when less is left.
    bool Take(std::int64_t bytes) {
        if (bytes > left_) return false;
        left_ -= bytes;
        return true;
    }
    // For `rows` rows of `bytes` bytes; short rows cost more than their bytes.
    bool TakeRows(std::int64_t rows, std::size_t bytes) {
        return Take(rows * (static_cast<std::int64_t>(bytes) + kPerRow));
    }

  private:
    static constexpr std::int64_t kBase = std::int64_t{1} << 32;
    static constexpr std::int64_t kPerPlotByte = 65536;
    static constexpr std::int64_t kPerRow = 64;

    std::int64_t left_;
};

}  // namespace qm
