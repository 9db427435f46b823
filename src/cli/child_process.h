// Child processes: this program once more, for one file, so that whatever happens to it does not
// stop the others. posix/child_process.cpp, windows/child_process.cpp. Tests:
// tests/cli/transcripts_test.cpp, tests/cli/windows_names_test.sh.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace qm::cli {

struct ChildResult {
    std::string output;  // what it wrote to standard output
    int signal = 0;      // that ended it; 0: none
    bool timedOut = false;
    bool tooLarge = false;
};

// 0: no limit.
struct ChildLimits {
    double seconds = 0.0;
    int megabytes = 0;  // resident; looked at 50 times a second
};

// The parent's answer to a question of the child; called on the thread of RunChild.
using ChildAnswer = std::function<std::string(const std::string& question)>;

// Runs this program with `words` and waits for it. It shares standard error. When its time is up,
// or on Ctrl-C, it is asked to end, and two seconds later made to; when it is too large, at once.
// (A limit that the system enforces would make allocations fail, of which some leave a drawing
// incomplete without a word.) Throws ToolError.
ChildResult RunChild(const std::vector<std::string>& words, const ChildLimits& limits,
                     const ChildAnswer& answer);

// In the child: asks the parent and waits for the answer; neither holds a zero byte. Nothing but
// questions and the last output goes to standard output. Throws ToolError when the parent has
// ended, so that a child whose parent was killed writes nothing.
std::string AskParent(const std::string& question);

}  // namespace qm::cli
