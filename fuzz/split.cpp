// SplitPlot, SplitScript, Join: see tokens.h.
#include <algorithm>
#include <cstdlib>

#include "fuzz/tokens.h"

namespace qm::fuzz {

namespace {

constexpr char kEscape = '\x1b';
constexpr char kLabelEnd = '\x03';

bool IsLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }
bool IsUpperLetter(char c) { return c >= 'A' && c <= 'Z'; }
char Upper(char c) { return IsLetter(c) ? static_cast<char>(c & ~0x20) : c; }

// Cuts tokens off the front of a plot.
class PlotSplitter {
  public:
    explicit PlotSplitter(std::string_view plot) : rest_(plot) {}

    bool Over() const { return rest_.empty(); }
    Token Next() {
        if (rest_[0] == kEscape) return TakeEscape();
        if (rest_.size() >= 2 && IsLetter(rest_[0]) && IsLetter(rest_[1])) return TakeCommand();
        return TakeText(Find([](char c) { return IsLetter(c) || c == kEscape; }, 1));
    }

  private:
    template <typename Ends>
    std::size_t Find(Ends&& ends, std::size_t from) const {
        const auto start =
            rest_.begin() + static_cast<std::ptrdiff_t>(std::min(from, rest_.size()));
        return static_cast<std::size_t>(std::find_if(start, rest_.end(), ends) - rest_.begin());
    }
    Token TakeText(std::size_t count) {
        Token token;
        token.text = rest_.substr(0, count);
        rest_.remove_prefix(token.text.size());
        return token;
    }
    Token TakeCommand() {
        const char first = Upper(rest_[0]);
        const char second = Upper(rest_[1]);
        if (first == 'L' && second == 'B') {
            return TakeText(Find([](char c) { return c == kLabelEnd; }, 2) + 1);
        }
        if (first == 'P' && second == 'E') {
            return TakeText(Find([](char c) { return c == ';' || c == kEscape; }, 2) + 1);
        }
        const std::size_t end =
            Find([](char c) { return IsLetter(c) || c == ';' || c == kEscape; }, 2);
        return TakeText(end < rest_.size() && rest_[end] == ';' ? end + 1 : end);
    }
    // ESC, two bytes, numbers with lower-case letters, one with an upper-case letter, its data.
    Token TakeEscape() {
        if (rest_.size() < 3 ||
            std::string_view("%&*()").find(rest_[1]) == std::string_view::npos) {
            return TakeText(2);
        }
        const std::size_t end =
            Find([](char c) { return IsUpperLetter(c) || c == kEscape || c == '\n'; }, 2);
        if (end >= rest_.size() || !IsUpperLetter(rest_[end])) return TakeText(end);
        Token token = TakeText(end + 1);
        const char last = token.text.back();
        token.counted =
            token.text[1] != '%' && (last == 'W' || (last == 'V' && token.text[2] == 'b'));
        if (!token.counted) return token;
        std::size_t digits = token.text.size() - 1;
        while (token.text[digits - 1] >= '0' && token.text[digits - 1] <= '9') --digits;
        const auto count = std::strtoul(token.text.c_str() + digits, nullptr, 10);
        token.data = rest_.substr(0, count);
        rest_.remove_prefix(token.data.size());
        return token;
    }

    std::string_view rest_;
};

}  // namespace

Tokens SplitPlot(std::string_view plot) {
    Tokens tokens;
    for (PlotSplitter splitter(plot); !splitter.Over();) tokens.push_back(splitter.Next());
    return tokens;
}

Tokens SplitScript(std::string_view script) {
    Tokens tokens;
    while (!script.empty()) {
        const std::size_t end = std::min(script.find('\n'), script.size() - 1) + 1;
        tokens.push_back({std::string(script.substr(0, end)), {}, false});
        script.remove_prefix(end);
    }
    return tokens;
}

std::string Join(const Tokens& tokens) {
    std::string joined;
    for (const Token& token : tokens) {
        joined += token.text;
        joined += token.data;
    }
    return joined;
}

}  // namespace qm::fuzz
