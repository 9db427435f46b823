// See messages.h.
#include "cli/messages.h"

#include <algorithm>
#include <cstdio>
#include <iostream>

#include "cli/console.h"

namespace qm::cli {

namespace {

constexpr std::size_t kMostCells = 40;
constexpr std::size_t kFewestCells = 10;
constexpr auto kDelay = std::chrono::seconds(1);

bool StartsCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }

std::size_t CharactersOf(const std::string& utf8) {
    return static_cast<std::size_t>(std::count_if(utf8.begin(), utf8.end(), StartsCharacter));
}

// The last `room` characters of `name`, with dots for what is missing.
std::string Shortened(const std::string& name, std::size_t room) {
    constexpr std::size_t kDots = 3;
    if (CharactersOf(name) <= room) return name;
    if (room <= kDots) return {};
    std::size_t from = name.size();
    for (std::size_t left = room - kDots; left > 0; --left) {
        do --from;
        while (!StartsCharacter(name[from]));
    }
    return "..." + name.substr(from);
}

// One line that leaves the last column free, for some terminals go on to the next line there.
std::string LineOf(const std::string& lead, const std::string& name, int percent,
                   std::size_t columns) {
    std::string number = std::to_string(percent) + " %";
    number.insert(0, 5 - std::min<std::size_t>(5, number.size()), ' ');
    const std::size_t room = columns - std::min<std::size_t>(columns, 1 + number.size());
    const std::size_t cells = std::clamp(room / 3, kFewestCells, kMostCells);
    const std::size_t taken = CharactersOf(lead) + cells + 4;  // " [] "
    if (room <= taken) return number;
    const std::size_t full = static_cast<std::size_t>(percent) * cells / 100;
    return lead + Shortened(name, room - taken) + " [" + std::string(full, '#') +
           std::string(cells - full, '-') + "] " + number;
}

}  // namespace

void ProgressBar::Hide() {
    if (!shown_.empty()) std::fputs("\r\033[K", stderr);
    shown_.clear();
}

void ProgressBar::Show(const std::string& lead, const std::string& name, int percent) {
    if (std::chrono::steady_clock::now() - start_ < kDelay) return;
    const int columns = ErrorColumns();
    if (columns == 0) return;
    const std::string line =
        LineOf(lead, name, std::clamp(percent, 0, 100), static_cast<std::size_t>(columns));
    if (line == shown_) return;
    std::fputs(("\r\033[K" + line).c_str(), stderr);
    shown_ = line;
}

OptionGroup MessageGroup(MessageOptions& options) {
    return {"Messages",
            {Flag("quiet", 'q', "Only errors: no notes, no summary, no progress", options.quiet),
             Flag("verbose", 'v', "Also a line for each file that is done", options.verbose)}};
}

void Messages::Progress(const std::string& lead, const std::string& name, int percent) {
    if (options_.quiet) return;
    const std::lock_guard<std::mutex> lock(mutex_);
    bar_.Show(lead, name, percent);
}

void Messages::HideProgress() {
    const std::lock_guard<std::mutex> lock(mutex_);
    bar_.Hide();
}

void Messages::Say(const std::string& text) {
    const std::lock_guard<std::mutex> lock(mutex_);
    bar_.Hide();
    std::cerr << "qmplot: " + text + '\n';
}

}  // namespace qm::cli
