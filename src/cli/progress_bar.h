// ProgressBar: how far a file is, on standard error, for work that takes longer than a second. Says
// nothing when standard error is no terminal.
#pragma once

#include <chrono>
#include <string>

namespace qm::cli {

class ProgressBar {
  public:
    explicit ProgressBar(std::string label);
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;
    ~ProgressBar() { Hide(); }

    // `percent` 0 to 100.
    void Show(int percent);
    // Takes the bar off the screen, for instance for a message.
    void Hide();

  private:
    std::string label_;
    bool terminal_;
    bool visible_ = false;
    int shown_ = -1;  // the percentage on the screen
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace qm::cli
