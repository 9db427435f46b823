// Messages: what a command says to people, on standard error: errors, notes, details, and how far
// it is. Test: tests/cli/qmplot_test.cpp.
#pragma once

#include <chrono>
#include <mutex>
#include <string>

#include "cli/command.h"

namespace qm::cli {

// How far a file is, for work that takes longer than a second. Says nothing when standard error is
// no terminal.
class ProgressBar {
  public:
    ProgressBar() = default;
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;
    ~ProgressBar() { Hide(); }

    // `percent` 0 to 100. Of a `name` that does not fit the end is shown, behind `lead`.
    void Show(const std::string& lead, const std::string& name, int percent);
    // Takes the bar off the screen, for instance for a message.
    void Hide();

  private:
    std::string shown_;  // what is on the screen; empty: nothing
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

struct MessageOptions {
    bool quiet = false;    // only errors
    bool verbose = false;  // also what was done with each file
};

// -q and -v; `options` must outlive them.
OptionGroup MessageGroup(MessageOptions& options);

// May be used by several threads.
class Messages {
  public:
    explicit Messages(const MessageOptions& options) : options_(options) {}

    void Error(const std::string& text) { Say(text); }
    void Note(const std::string& text) {
        if (!options_.quiet) Say(text);
    }
    void Detail(const std::string& text) {
        if (options_.verbose) Say(text);
    }
    void Progress(const std::string& lead, const std::string& name, int percent);
    // Before something is written to standard output, which may be the same terminal.
    void HideProgress();

  private:
    void Say(const std::string& text);

    const MessageOptions options_;
    std::mutex mutex_;  // guards what follows
    ProgressBar bar_;
};

}  // namespace qm::cli
