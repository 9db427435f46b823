// OutputGuard: keeps a run from writing over what somebody still needs. Test:
// tests/cli/transcripts_test.cpp.
#pragma once

#include <map>
#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "cli/files.h"
#include "cli/output_format.h"

namespace qm::cli {

// May be used by several threads.
class OutputGuard {
  public:
    // `inputs` are all files that the run reads; with `overwrite` plots may be replaced.
    OutputGuard(std::vector<std::string> inputs, bool overwrite)
        : inputs_(std::move(inputs)), overwrite_(overwrite) {}

    // `output` is about to be written from `input`. Throws ToolError when it is one of the inputs,
    // when another input of this run was written there, and when it is a plot that exists.
    void Claim(const std::string& output, const std::string& input, const OutputFormat& format);

  private:
    bool IsInput(const FileStatus& file);

    const std::vector<std::string> inputs_;
    const bool overwrite_;
    std::mutex mutex_;  // guards what follows
    bool inputsKnown_ = false;
    std::set<std::pair<std::uint64_t, std::uint64_t>> inputNumbers_;  // device and number
    std::map<std::string, std::string> inputOf_;                      // by output
};

}  // namespace qm::cli
