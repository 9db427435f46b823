// The terminal: standard output through a large buffer, its width, and Ctrl-C. posix/console.cpp,
// windows/console.cpp. Test: tests/cli/qmplot_test.cpp.
#pragma once

#include <string>
#include <string_view>

#include "common/tool_error.h"

namespace qm::cli {

// ---------------------------------------------------------------- Standard output

// Once, before anything is written: a reader that closes its end of a pipe shows as a failed write,
// and bytes stay what they are.
void PrepareStandardStreams();

// Lines for other programs. A failed write makes it drop what follows, because the lines come out
// of component calls that cannot be left by an exception; callers that loop look at Failed() and
// stop. Finish() tells the outcome.
class StandardOutput {
  public:
    StandardOutput() { buffer_.reserve(kBufferBytes); }
    StandardOutput(const StandardOutput&) = delete;
    StandardOutput& operator=(const StandardOutput&) = delete;

    void Write(std::string_view text) {
        if (buffer_.size() + text.size() > kBufferBytes) Flush();
        buffer_ += text;
    }
    bool Failed() const { return cause_ != 0; }
    // Writes what there is, so that it stands before a message that follows.
    void Flush();
    // Writes what is left. Throws ToolError when anything was lost, except to a reader that closed
    // its pipe: it has seen what it wanted.
    void Finish();

  private:
    static constexpr std::size_t kBufferBytes = std::size_t{1} << 18;

    std::string buffer_;
    int cause_ = 0;  // errno of the first failure
};

// ---------------------------------------------------------------- Terminal

// Columns of the terminal that standard error is; 0: it is none.
int ErrorColumns();

// ---------------------------------------------------------------- Ctrl-C

// The first one asks the running import to end through the abort answer of its Progress event, the
// second one ends the program. From now on SIGINT, SIGTERM and SIGHUP only set a flag, once.
void WatchForInterruption();
bool Interrupted() noexcept;
// Ends the program as the signal would have, so that a shell loop around it stops too. To be called
// when everything is cleaned up.
[[noreturn]] void EndByInterruption();

inline void ThrowIfInterrupted() {
    if (Interrupted()) throw ToolError("interrupted, nothing was written", kExitNotAPlot);
}

}  // namespace qm::cli
