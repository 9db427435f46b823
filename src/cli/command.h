// Command: what a subcommand of qmplot is called, takes and does, as data.
//
// Each subcommand makes one (commands.h); command_line.h reads command lines by it and help.h
// prints it, so that what help tells and what is accepted cannot differ. Test:
// tests/cli/qmplot_test.cpp.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace qm::cli {

struct Option {
    std::string name;   // "jobs" for --jobs
    char letter = 0;    // 'j' for -j; 0: none
    std::string value;  // what help calls its value, "N"; empty: it takes none
    std::string text;   // for help, no closing dot
    // Told the value, "" when it takes none. Throws ToolError, whose message names the value, when
    // it does not fit.
    std::function<void(const std::string& value)> set;
    std::string needs = {};  // the name of an option that must be given too
    std::string bars = {};   // the name of one that must not be given besides
    bool repeats = false;    // may be given several times
    bool hidden = false;     // not in help
    // Names of the formats (output_format.h) that convert takes it for, with blanks between; empty:
    // for all.
    std::string formats = {};
    // For the completions of shells: what the value may be, or that it names a file or folder.
    std::vector<std::string> words = {};
    bool isFile = false;
};

struct OptionGroup {
    std::string heading;
    std::vector<Option> options;
};

struct Operand {
    std::string name;  // "FILE"
    std::string text;
    bool many = false;      // one or more of them
    bool optional = false;  // or none
};

// A command line that was read; `given` points into the command.
struct ParsedLine {
    std::vector<std::string> operands;
    struct Given {
        const Option* option;
        std::string value;
    };
    std::vector<Given> given;
};

// A line of help with a text beside it.
struct HelpRow {
    std::string name;
    std::string text;
};

struct Command {
    std::string name;
    std::string summary;              // a line in the list of commands
    std::vector<std::string> usages;  // what stands behind "qmplot NAME"
    std::vector<Operand> operands;
    std::vector<OptionGroup> groups;
    std::vector<std::string> notes;  // paragraphs behind the options
    std::vector<HelpRow> examples;   // the words behind "qmplot NAME", and what they do
    std::vector<HelpRow> statuses;   // exit statuses
    // Returns the exit status or throws ToolError.
    std::function<int(const ParsedLine&)> run;
};

// ---------------------------------------------------------------- Options by kind
// Each writes what is given to `target`, which must outlive the option.

Option Flag(std::string name, char letter, std::string text, bool& target, bool given = true);
Option IntegerOption(std::string name, char letter, std::string value, std::string text,
                     int& target, int low, int high);
Option NumberOption(std::string name, std::string value, std::string text,
                    std::function<void(double)> set, double low, double high);
Option TextOption(std::string name, char letter, std::string value, std::string text,
                  std::string& target);
// The name of a file or folder.
Option FileOption(std::string name, char letter, std::string value, std::string text,
                  std::string& target);
// `choices` as help shows them: "hpgl|hprtl".
Option ChoiceOption(std::string name, std::string choices, std::string text,
                    std::function<void(const std::string&)> set);

}  // namespace qm::cli
