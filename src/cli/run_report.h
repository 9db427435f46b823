// RunReport: what became of each file of a run, a JSON object a line (docs/json.md), for --report
// and for the parent of a child process. Test: tests/cli/transcripts_test.cpp.
#pragma once

#include <cstdint>
#include <fstream>
#include <mutex>
#include <string>
#include <string_view>

#include "cli/conversion.h"

namespace qm::cli {

enum class Outcome { kConverted, kFailed, kSkipped };

struct FileReport {
    std::string input;
    Outcome outcome = Outcome::kConverted;
    int status = 0;       // the exit status that the file alone would give
    std::string message;  // why it failed or was skipped
    double seconds = 0.0;
    ConversionResult result;
};

// Without its line end; the outcome is the first member.
std::string JsonOf(const FileReport& report);
// The outcome of such a line; false when the line is not whole.
bool ReadOutcome(std::string_view line, Outcome& outcome, int& status);

// Lines that are added to a file, each as soon as it is known and in one piece. May be used by
// several threads.
class RunReport {
  public:
    // Empty: no report. Throws ToolError.
    explicit RunReport(const std::string& path);
    void Add(const std::string& line);

  private:
    std::string path_;
    std::mutex mutex_;
    std::ofstream file_;
};

}  // namespace qm::cli
