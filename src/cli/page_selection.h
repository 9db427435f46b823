// PageSelection: which pages of a plot are meant; lists of numbers. Test:
// tests/cli/qmplot_test.cpp.
#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <vector>

#include "cli/command.h"

namespace qm::cli {

// Both ends are in it; kOpen: there is no upper one.
struct NumberRange {
    static constexpr std::size_t kOpen = std::numeric_limits<std::size_t>::max();
    std::size_t first;
    std::size_t last;
};

// "2", "1-3,5", "4-": numbers from `lowest` on. None when `text` is nothing of the kind.
std::vector<NumberRange> RangesIn(const std::string& text, std::size_t lowest);

class PageSelection {
  public:
    // All pages.
    PageSelection() = default;
    // "2", "1-3,5", "4-": numbers from 1. Throws ToolError, whose message names `text`.
    explicit PageSelection(const std::string& text);

    bool Contains(std::size_t page) const;
    // The highest number that is named; 0: none.
    std::size_t Highest() const;
    // One page is meant, and it is named.
    bool IsOnePage() const { return ranges_.size() == 1 && ranges_[0].first == ranges_[0].last; }

  private:
    std::vector<NumberRange> ranges_;  // none: all pages
};

// --page; `pages` must outlive it.
Option PageOption(PageSelection& pages);

}  // namespace qm::cli
