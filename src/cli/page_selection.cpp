// See page_selection.h.
#include "cli/page_selection.h"

#include <algorithm>
#include <cctype>
#include <optional>
#include <sstream>

#include "common/tool_error.h"

namespace qm::cli {

namespace {

constexpr std::size_t kMostDigits = 7;

std::optional<std::size_t> NumberOf(const std::string& text) {
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    if (text.empty() || text.size() > kMostDigits) return std::nullopt;
    if (!std::all_of(text.begin(), text.end(), isDigit)) return std::nullopt;
    return std::stoul(text);
}

}  // namespace

std::vector<NumberRange> RangesIn(const std::string& text, std::size_t lowest) {
    std::vector<NumberRange> ranges;
    std::istringstream list(text + ',');
    for (std::string part; std::getline(list, part, ',');) {
        const std::size_t dash = part.find('-');
        const auto first = NumberOf(part.substr(0, dash));
        const auto last = dash == std::string::npos ? first
                          : dash + 1 == part.size() ? NumberRange::kOpen
                                                    : NumberOf(part.substr(dash + 1));
        if (!first || !last || *first < lowest || *last < *first) return {};
        ranges.push_back({*first, *last});
    }
    return ranges;
}

PageSelection::PageSelection(const std::string& text) : ranges_(RangesIn(text, 1)) {
    if (ranges_.empty()) throw ToolError("'" + text + "' names no pages; 2 or 1-3,5 or 4- do");
}

bool PageSelection::Contains(std::size_t page) const {
    return ranges_.empty() ||
           std::any_of(ranges_.begin(), ranges_.end(), [page](NumberRange range) {
               return page >= range.first && page <= range.last;
           });
}

std::size_t PageSelection::Highest() const {
    std::size_t highest = 0;
    for (const NumberRange range : ranges_) {
        highest = std::max(highest, range.last == NumberRange::kOpen ? range.first : range.last);
    }
    return highest;
}

Option PageOption(PageSelection& pages) {
    return {"page", 0, "LIST", "Only these pages, from 1: 2 or 1-3,5 or 4-",
            [&pages](const std::string& text) { pages = PageSelection(text); }};
}

}  // namespace qm::cli
