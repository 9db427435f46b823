// See manual.h.
#include "cli/manual.h"

#include <algorithm>
#include <filesystem>

#include "cli/completion.h"
#include "cli/files.h"
#include "cli/help.h"
#include "cli/version.h"

namespace qm::cli {

namespace {

// Text as roff shows it: a hyphen that can be copied, no control line, no escape by chance.
std::string Roff(const std::string& text) {
    std::string out;
    bool lineStarts = true;
    for (const char c : text) {
        if (lineStarts && (c == '.' || c == '\'')) out += "\\&";
        if (c == '\\')
            out += "\\e";
        else if (c == '-')
            out += "\\-";
        else if (c == '\'')
            out += "\\(aq";
        else
            out += c;
        lineStarts = c == '\n';
    }
    return out;
}

std::string Bold(const std::string& text) { return "\\fB" + Roff(text) + "\\fR"; }
std::string Italic(const std::string& text) { return "\\fI" + Roff(text) + "\\fR"; }

// `term` is roff already.
std::string Item(const std::string& term, const std::string& text) {
    return ".TP\n" + term + '\n' + Roff(text) + '\n';
}

std::string UpperCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char c) {
        return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    });
    return text;
}

// Title and NAME; "Convert plots" becomes "convert plots", as these lines are written.
std::string Head(const std::string& name, std::string summary) {
    summary[0] = static_cast<char>(summary[0] | ('a' - 'A'));
    return ".TH \"" + Roff(UpperCase(name)) + "\" 1 \"\" \"qmplot " + kVersion +
           "\" \"User Commands\"\n.SH NAME\n" + Roff(name) + " \\- " + Roff(summary) + '\n';
}

std::string TermOf(const Option& option) {
    std::string term;
    if (option.letter != 0) term = Bold(std::string("-") + option.letter) + ", ";
    term += Bold("--" + option.name);
    return option.value.empty() ? term : term + ' ' + Italic(option.value);
}

std::string Examples(const Command& command) {
    if (command.examples.empty()) return {};
    std::string out = ".SH EXAMPLES\n";
    for (const HelpRow& example : command.examples) {
        out += Item(Bold("qmplot " + command.name + ' ' + example.name), example.text);
    }
    return out;
}

void WriteText(const std::string& folder, const std::string& name, const std::string& text) {
    const auto path = std::filesystem::u8path(folder) / name;
    std::error_code failure;
    std::filesystem::create_directories(path.parent_path(), failure);
    if (failure) throw SystemError(path.parent_path().u8string(), "made", failure.value());
    OutputFile file(path.u8string());
    file.Write(text);
    file.Finish();
    file.Commit();
}

}  // namespace

std::string ManualOfAll(const std::vector<Command>& commands) {
    std::string out = Head("qmplot", "Open, convert and show plot files") + ".SH SYNOPSIS\n" +
                      Bold("qmplot") + ' ' + Italic("COMMAND") + " [" + Italic("OPTIONS") +
                      "] ...\n.SH DESCRIPTION\n" + Roff(kAbout) + '\n' + Roff(kAboutFiles) +
                      "\n.SH COMMANDS\n";
    std::string pages;
    for (const Command& command : commands) {
        out += Item(Bold(command.name), command.summary);
        pages += (pages.empty() ? ".BR qmplot\\-" : " ,\n.BR qmplot\\-") + command.name + " (1)";
    }
    out += ".SH OPTIONS\n";
    for (const Option& option : ProgramOptions()) out += Item(TermOf(option), option.text);
    return out + ".SH SEE ALSO\n" + pages + '\n';
}

std::string ManualOf(const Command& command) {
    std::string out = Head("qmplot-" + command.name, command.summary) + ".SH SYNOPSIS\n";
    const char* between = "";
    for (const std::string& usage : command.usages) {
        out += between + Bold("qmplot " + command.name) + ' ' + Roff(usage) + '\n';
        between = ".br\n";
    }
    out += ".SH DESCRIPTION\n" + Roff(command.summary) + ".\n";
    for (const Operand& operand : command.operands) out += Item(Italic(operand.name), operand.text);
    if (!command.groups.empty()) out += ".SH OPTIONS\n";
    for (const OptionGroup& group : command.groups) {
        if (group.heading != "Options") out += ".SS " + Roff(group.heading) + '\n';
        for (const Option& option : group.options)
            if (!option.hidden) out += Item(TermOf(option), option.text);
    }
    if (!command.notes.empty()) out += ".SH NOTES\n";
    const char* lead = "";
    for (const std::string& note : command.notes) {
        out += lead + Roff(note) + '\n';
        lead = ".PP\n";
    }
    out += Examples(command);
    if (!command.statuses.empty()) out += ".SH EXIT STATUS\n";
    for (const HelpRow& status : command.statuses) out += Item(Bold(status.name), status.text);
    return out + ".SH SEE ALSO\n.BR qmplot (1)\n";
}

void WriteManualFiles(const std::vector<Command>& commands, const std::string& folder) {
    WriteText(folder, "man/man1/qmplot.1", ManualOfAll(commands));
    for (const Command& command : commands) {
        WriteText(folder, "man/man1/qmplot-" + command.name + ".1", ManualOf(command));
    }
    WriteText(folder, "bash-completion/completions/qmplot", BashCompletion(commands));
    WriteText(folder, "zsh/site-functions/_qmplot", ZshCompletion(commands));
    WriteText(folder, "fish/vendor_completions.d/qmplot.fish", FishCompletion(commands));
}

}  // namespace qm::cli
