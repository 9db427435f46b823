// PlotReader: an interpreter over a plot in memory whose operations are only listed, for tests of
// reading itself.
#pragma once

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "interpreter/plotter.h"
#include "trace/operation_recorder.h"

namespace qm {

class PlotReader : public OperationRecorder {
  public:
    explicit PlotReader(const std::string& plot)
        : OperationRecorder(
              [plot, done = std::size_t{0}](void* buffer, std::size_t size) mutable {
                  const std::size_t count = std::min(size, plot.size() - done);
                  std::memcpy(buffer, plot.data() + done, count);
                  done += count;
                  return count;
              },
              static_cast<std::uint32_t>(plot.size()),
              [this](std::string_view line) { lines.emplace_back(line); }) {}

    using HPGLRead::State;
    Parameters& in = State().in;
    InputReader& input = in.input;

    int ReportProgress(std::int32_t percent) override {
        progress.push_back(percent);
        return percent < abortAt;
    }

    // The next `count` bytes.
    std::string Read(std::size_t count, bool raw = false) {
        std::string bytes;
        for (std::size_t i = 0; i < count; ++i) bytes += static_cast<char>(input.GetChar(raw));
        return bytes;
    }

    std::vector<std::string> lines;
    std::vector<std::int32_t> progress;
    std::int32_t abortAt = 1000;
};

}  // namespace qm
