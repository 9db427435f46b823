// See help.h.
#include "cli/help.h"

#include <algorithm>
#include <sstream>
#include <utility>

namespace qm::cli {

namespace {

constexpr std::size_t kColumns = 80;
constexpr std::size_t kTextColumn = 24;  // where the texts of a list begin

// `text` from `column` on, where the line has reached already, broken at blanks.
std::string Wrapped(const std::string& text, std::size_t column) {
    std::istringstream words(text);
    std::string out;
    std::size_t at = column;
    for (std::string word; words >> word;) {
        if (at > column && at + 1 + word.size() > kColumns) {
            out += '\n' + std::string(column, ' ');
            at = column;
        }
        if (at > column) out += ' ';
        out += word;
        at += word.size() + (at > column ? 1 : 0);
    }
    return out + '\n';
}

// "  NAME       text", the text below a name that is too long.
std::string Row(const std::string& name, const std::string& text) {
    std::string row = "  " + name;
    if (row.size() + 2 > kTextColumn)
        row += '\n' + std::string(kTextColumn, ' ');
    else
        row.resize(kTextColumn, ' ');
    return row + Wrapped(text, kTextColumn);
}

std::string NameOf(const Option& option) {
    const std::string letter =
        option.letter == 0 ? "    " : std::string("-") + option.letter + ", ";
    return letter + "--" + option.name + (option.value.empty() ? "" : " " + option.value);
}

std::string HelpOfOptions(const Command& command) {
    std::string out;
    for (const OptionGroup& group : command.groups) {
        out += '\n' + group.heading + ":\n";
        for (const Option& option : group.options) {
            if (!option.hidden) out += Row(NameOf(option), option.text);
        }
    }
    return out;
}

}  // namespace

std::vector<Option> ProgramOptions() {
    Option folder = {"manuals",
                     0,
                     "DIR",
                     "Write the manual pages, and completions for bash, zsh and fish, below this "
                     "folder; ~/.local/share is where man and the shells find them",
                     {}};
    folder.isFile = true;
    return {{"help", 'h', "", "Print this and exit; behind a command, what it takes", {}},
            {"version", 0, "", "Print the version and exit", {}},
            std::move(folder)};
}

std::string HelpOfAll(const std::vector<Command>& commands) {
    std::string out = Wrapped(kAbout, 0) + "\nUsage: qmplot COMMAND [OPTIONS] ...\n\nCommands:\n";
    for (const Command& command : commands) out += Row(command.name, command.summary);
    out += "\nOptions:\n";
    for (const Option& option : ProgramOptions()) out += Row(NameOf(option), option.text);
    return out + '\n' + Wrapped(kAboutFiles, 0);
}

std::string HelpOf(const Command& command) {
    std::string out = Wrapped(command.summary, 0) + '\n';
    const char* lead = "Usage: ";
    for (const std::string& usage : command.usages) {
        out += lead + ("qmplot " + command.name + ' ') + usage + '\n';
        lead = "       ";
    }
    out += '\n';
    for (const Operand& operand : command.operands) out += Row(operand.name, operand.text);
    out += HelpOfOptions(command);
    for (const std::string& note : command.notes) out += '\n' + Wrapped(note, 0);
    if (!command.examples.empty()) out += "\nExamples:\n";
    for (const HelpRow& example : command.examples) {
        out += "  qmplot " + command.name + ' ' + example.name + '\n' + std::string(6, ' ') +
               Wrapped(example.text, 6);
    }
    if (!command.statuses.empty()) out += "\nExit status:\n";
    for (const HelpRow& status : command.statuses)
        out += "  " + status.name + "  " + Wrapped(status.text, 2 + status.name.size() + 2);
    return out;
}

}  // namespace qm::cli
