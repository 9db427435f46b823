// PageSelection: which pages of a plot are meant. Test: tests/cli/qmplot_test.cpp.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "cli/command.h"

namespace qm::cli {

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
    struct Range {
        std::size_t first;
        std::size_t last;  // kOpen: up to the plot's last page
    };
    std::vector<Range> ranges_;  // none: all pages
};

// --page; `pages` must outlive it.
Option PageOption(PageSelection& pages);

}  // namespace qm::cli
