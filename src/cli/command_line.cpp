// See command_line.h.
#include "cli/command_line.h"

#include <algorithm>
#include <utility>

namespace qm::cli {

namespace {

// Letters to be added, dropped, replaced or swapped with their neighbour to make `b` of `a`.
std::size_t Distance(const std::string& a, const std::string& b) {
    std::vector<std::vector<std::size_t>> cost(a.size() + 1,
                                               std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = 0; i <= a.size(); ++i) {
        for (std::size_t j = 0; j <= b.size(); ++j) {
            if (i == 0 || j == 0) {
                cost[i][j] = i + j;
                continue;
            }
            cost[i][j] = std::min({cost[i - 1][j] + 1, cost[i][j - 1] + 1,
                                   cost[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1)});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                cost[i][j] = std::min(cost[i][j], cost[i - 2][j - 2] + 1);
            }
        }
    }
    return cost[a.size()][b.size()];
}

class Parser {
  public:
    Parser(const Command& command, const std::vector<std::string>& words)
        : command_(command), words_(words) {}

    ParsedLine Parse() {
        bool optionsEnded = false;
        while (next_ < words_.size()) {
            const std::string& word = words_[next_++];
            if (optionsEnded || word.size() < 2 || word[0] != '-') {
                line_.operands.push_back(word);
            } else if (word == "--") {
                optionsEnded = true;
            } else if (word[1] == '-') {
                TakeLong(word);
            } else {
                TakeLetters(word);
            }
        }
        CheckNeeds();
        CheckOperands();
        return std::move(line_);
    }

  private:
    template <typename Matches>
    const Option* Find(Matches&& matches) const {
        for (const OptionGroup& group : command_.groups) {
            for (const Option& option : group.options) {
                if (matches(option)) return &option;
            }
        }
        return nullptr;
    }
    template <typename Matches>
    bool IsGiven(Matches&& matches) const {
        return std::any_of(line_.given.begin(), line_.given.end(),
                           [&](const ParsedLine::Given& given) { return matches(*given.option); });
    }
    UsageError Error(const std::string& message) const { return {message, command_.name}; }
    UsageError UnknownOption(const std::string& name) const {
        std::vector<std::string> names = {"--help"};
        for (const OptionGroup& group : command_.groups) {
            for (const Option& option : group.options) names.push_back("--" + option.name);
        }
        const std::string meant = NearestName(names, name);
        return Error(name + " is no option of " + command_.name +
                     (meant.empty() ? "" : "; did you mean " + meant + "?"));
    }
    // In a word of letters, which may be the name of a file.
    UsageError UnknownLetter(const std::string& name, const std::string& word) const {
        return Error(name + " is no option of " + command_.name +
                     (word.size() > 2 ? "; if " + word + " is a file, write -- before it" : ""));
    }
    void TakeLong(const std::string& word) {
        const std::size_t equals = word.find('=');
        const std::string name = word.substr(0, equals);
        const Option* option = Find([&](const Option& o) { return "--" + o.name == name; });
        if (option == nullptr) throw UnknownOption(name);
        const bool joined = equals != std::string::npos;
        if (option->value.empty() && joined) throw Error(name + " takes no value");
        Set(*option, name,
            option->value.empty() ? "" : (joined ? word.substr(equals + 1) : NextWord(name)));
    }
    void TakeLetters(const std::string& word) {
        for (std::size_t i = 1; i < word.size(); ++i) {
            const std::string name = {'-', word[i]};
            const Option* option = Find([&](const Option& o) { return o.letter == word[i]; });
            if (option == nullptr) throw UnknownLetter(name, word);
            if (option->value.empty()) {
                Set(*option, name, "");
                continue;
            }
            const std::string rest = word.substr(i + 1);
            return Set(*option, name, rest.empty() ? NextWord(name) : rest);
        }
    }
    const std::string& NextWord(const std::string& name) {
        if (next_ == words_.size()) throw Error(name + " wants a value");
        return words_[next_++];
    }
    void Set(const Option& option, const std::string& name, const std::string& value) {
        const bool again = IsGiven([&](const Option& other) { return &other == &option; });
        if (again && !option.repeats && !option.value.empty()) {
            throw Error(name + " is given twice");
        }
        try {
            option.set(value);
        } catch (const ToolError& error) {
            throw Error(name + ": " + error.what());
        }
        line_.given.push_back({&option, value});
    }
    bool IsGiven(const std::string& name) const {
        return IsGiven([&](const Option& option) { return option.name == name; });
    }
    void CheckNeeds() const {
        for (const auto& [option, value] : line_.given) {
            const std::string name = "--" + option->name;
            if (!option->needs.empty() && !IsGiven(option->needs)) {
                throw Error(name + " wants --" + option->needs + " as well");
            }
            if (!option->bars.empty() && IsGiven(option->bars)) {
                throw Error(name + " and --" + option->bars + " cannot both be given");
            }
        }
    }
    void CheckOperands() const {
        const auto& wanted = command_.operands;
        if (line_.operands.size() < wanted.size() && !wanted[line_.operands.size()].optional) {
            throw Error(wanted[line_.operands.size()].name + " is missing");
        }
        if (line_.operands.size() > wanted.size() && !wanted.back().many) {
            throw Error("'" + line_.operands[wanted.size()] + "' is one argument too many");
        }
    }

    const Command& command_;
    const std::vector<std::string>& words_;
    std::size_t next_ = 0;
    ParsedLine line_;
};

}  // namespace

std::string NearestName(const std::vector<std::string>& names, const std::string& given) {
    std::string nearest;
    std::size_t least = 1 + given.size() / 4;  // more letters apart is another word
    for (const std::string& name : names) {
        if (given.size() > 3 && name.compare(0, given.size(), given) == 0) return name;
        const std::size_t distance = Distance(given, name);
        if (distance > least || (distance == least && !nearest.empty())) continue;
        least = distance;
        nearest = name;
    }
    return nearest;
}

const Command& FindCommand(const std::vector<Command>& commands, const std::string& name) {
    std::vector<std::string> names;
    for (const Command& command : commands) {
        if (command.name == name) return command;
        names.push_back(command.name);
    }
    if (name.compare(0, 1, "-") == 0) throw UsageError(name + " is no option", "");
    const std::string meant = NearestName(names, name);
    throw UsageError(
        name + " is not a command" + (meant.empty() ? "" : "; did you mean " + meant + "?"), "");
}

bool AsksForHelp(const std::vector<std::string>& words) {
    const auto end = std::find(words.begin(), words.end(), "--");
    return std::any_of(words.begin(), end,
                       [](const std::string& word) { return word == "--help" || word == "-h"; });
}

ParsedLine ParseWords(const Command& command, const std::vector<std::string>& words) {
    return Parser(command, words).Parse();
}

}  // namespace qm::cli
