#include "cli/progress_bar.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <utility>

namespace qm::cli {

namespace {

constexpr int kBarCells = 40;
constexpr auto kDelay = std::chrono::seconds(1);

}  // namespace

ProgressBar::ProgressBar(std::string label)
    : label_(std::move(label)), terminal_(isatty(STDERR_FILENO) != 0) {}

void ProgressBar::Hide() {
    if (visible_) std::fputs("\r\033[K", stderr);
    visible_ = false;
    shown_ = -1;
}

void ProgressBar::Show(int percent) {
    if (!terminal_ || percent == shown_) return;
    if (std::chrono::steady_clock::now() - start_ < kDelay) return;
    percent = std::clamp(percent, 0, 100);
    const auto full = static_cast<std::size_t>(percent * kBarCells / 100);
    const std::string bar = std::string(full, '#') + std::string(kBarCells - full, '-');
    std::fprintf(stderr, "\r\033[K%s [%s] %3d %%", label_.c_str(), bar.c_str(), percent);
    visible_ = true;
    shown_ = percent;
}

}  // namespace qm::cli
