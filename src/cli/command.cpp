// See command.h.
#include "cli/command.h"

#include <charconv>
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
    message << "'" << text << "' is no " << kind << " from " << low << " to " << high;
    throw ToolError(message.str());
}

bool IsOneOf(const std::string& value, const std::string& choices) {
    std::istringstream list(choices);
    for (std::string choice; std::getline(list, choice, '|');) {
        if (choice == value) return true;
    }
    return false;
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

Option ChoiceOption(std::string name, std::string choices, std::string text,
                    std::function<void(const std::string&)> set) {
    auto take = [choices, set = std::move(set)](const std::string& given) {
        if (!IsOneOf(given, choices)) throw ToolError("'" + given + "' is none of " + choices);
        set(given);
    };
    return {std::move(name), 0, std::move(choices), std::move(text), std::move(take)};
}

}  // namespace qm::cli
