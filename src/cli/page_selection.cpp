// See page_selection.h.
#include "cli/page_selection.h"

#include <algorithm>
#include <cctype>
#include <limits>
#include <sstream>

#include "common/tool_error.h"

namespace qm::cli {

namespace {

constexpr std::size_t kOpen = std::numeric_limits<std::size_t>::max();
constexpr std::size_t kMostDigits = 7;

// 0 for what is no page number.
std::size_t NumberOf(const std::string& text) {
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    if (text.empty() || text.size() > kMostDigits) return 0;
    if (!std::all_of(text.begin(), text.end(), isDigit)) return 0;
    return std::stoul(text);
}

}  // namespace

PageSelection::PageSelection(const std::string& text) {
    std::istringstream list(text + ',');
    for (std::string part; std::getline(list, part, ',');) {
        const std::size_t dash = part.find('-');
        Range range{NumberOf(part.substr(0, dash)), 0};
        range.last = dash == std::string::npos ? range.first
                     : dash + 1 == part.size() ? kOpen
                                               : NumberOf(part.substr(dash + 1));
        if (range.first == 0 || range.last < range.first) {
            throw ToolError("'" + text + "' names no pages; 2 or 1-3,5 or 4- do");
        }
        ranges_.push_back(range);
    }
}

bool PageSelection::Contains(std::size_t page) const {
    return ranges_.empty() || std::any_of(ranges_.begin(), ranges_.end(), [page](Range range) {
               return page >= range.first && page <= range.last;
           });
}

std::size_t PageSelection::Highest() const {
    std::size_t highest = 0;
    for (const Range range : ranges_) {
        highest = std::max(highest, range.last == kOpen ? range.first : range.last);
    }
    return highest;
}

Option PageOption(PageSelection& pages) {
    return {"page", 0, "LIST", "Only these pages, from 1: 2 or 1-3,5 or 4-",
            [&pages](const std::string& text) { pages = PageSelection(text); }};
}

}  // namespace qm::cli
