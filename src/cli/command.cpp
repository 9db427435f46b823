// See command.h.
#include "cli/command.h"

#include <algorithm>
#include <iomanip>
#include <locale>
#include <sstream>
#include <utility>

#include "common/tool_error.h"

namespace qm::cli {

namespace {

// Whole numbers and others, whatever the locale.
template <typename Number>
Number NumberOf(const std::string& text, Number low, Number high, const char* kind) {
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    Number number{};
    if (stream >> std::noskipws >> number && stream.eof() && number >= low && number <= high) {
        return number;
    }
    std::ostringstream message;
    message << std::setprecision(9) << "'" << text << "' is no " << kind << " from " << low
            << " to " << high;
    throw ToolError(message.str());
}

std::vector<std::string> WordsOf(const std::string& choices) {
    std::vector<std::string> words;
    std::istringstream list(choices);
    for (std::string choice; std::getline(list, choice, '|');) words.push_back(choice);
    return words;
}

}  // namespace

Option Flag(std::string name, char letter, std::string text, bool& target, bool given) {
    return {std::move(name), letter, "", std::move(text),
            [&target, given](const std::string&) { target = given; }};
}

Option IntegerOption(std::string name, char letter, std::string value, std::string text,
                     int& target, int low, int high) {
    return {std::move(name), letter, std::move(value), std::move(text),
            [&target, low, high](const std::string& given) {
                target = NumberOf(given, low, high, "whole number");
            }};
}

Option NumberOption(std::string name, std::string value, std::string text,
                    std::function<void(double)> set, double low, double high) {
    return {std::move(name), 0, std::move(value), std::move(text),
            [set = std::move(set), low, high](const std::string& given) {
                set(NumberOf(given, low, high, "number"));
            }};
}

Option TextOption(std::string name, char letter, std::string value, std::string text,
                  std::string& target) {
    return {std::move(name), letter, std::move(value), std::move(text),
            [&target](const std::string& given) { target = given; }};
}

Option FileOption(std::string name, char letter, std::string value, std::string text,
                  std::string& target) {
    Option option = TextOption(std::move(name), letter, std::move(value), std::move(text), target);
    option.isFile = true;
    return option;
}

Option ChoiceOption(std::string name, std::string choices, std::string text,
                    std::function<void(const std::string&)> set) {
    const std::vector<std::string> words = WordsOf(choices);
    auto take = [choices, words, set = std::move(set)](const std::string& given) {
        if (std::find(words.begin(), words.end(), given) == words.end()) {
            throw ToolError("'" + given + "' is none of " + choices);
        }
        set(given);
    };
    Option option = {std::move(name), 0, std::move(choices), std::move(text), std::move(take)};
    option.words = words;
    return option;
}

}  // namespace qm::cli
