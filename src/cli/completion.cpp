// See completion.h.
#include "cli/completion.h"

#include "cli/help.h"

namespace qm::cli {

namespace {

// What an option's value is to a shell.
enum class Value { kNone, kWords, kFile, kOther };

Value KindOf(const Option& option) {
    if (option.value.empty()) return Value::kNone;
    if (!option.words.empty()) return Value::kWords;
    return option.isFile ? Value::kFile : Value::kOther;
}

std::string Joined(const std::vector<std::string>& words, const std::string& between = " ") {
    std::string out;
    for (const std::string& word : words) out += (out.empty() ? "" : between) + word;
    return out;
}

// "-o" and "--output".
std::vector<std::string> NamesOf(const Option& option) {
    std::vector<std::string> names;
    if (option.letter != 0) names.push_back(std::string("-") + option.letter);
    names.push_back("--" + option.name);
    return names;
}

// The visible options of a command, and --help, which all of them have.
std::vector<Option> OptionsOf(const Command& command) {
    std::vector<Option> options;
    for (const OptionGroup& group : command.groups)
        for (const Option& option : group.options)
            if (!option.hidden) options.push_back(option);
    options.push_back({"help", 'h', "", "Print what the command takes", {}});
    return options;
}

// `text` with `escape` in front of each of `marks`.
std::string Escaped(const std::string& text, const std::string& marks, const std::string& escape) {
    std::string out;
    for (const char c : text) {
        if (marks.find(c) != std::string::npos) out += escape;
        out += c;
    }
    return out;
}

// ---------------------------------------------------------------- bash

std::string BashCase(const Command& command) {
    std::vector<std::string> all;
    std::vector<std::string> files;
    std::vector<std::string> others;
    std::string out = "    " + command.name + ")\n        case $before in\n";
    for (const Option& option : OptionsOf(command)) {
        const auto names = NamesOf(option);
        all.insert(all.end(), names.begin(), names.end());
        const Value kind = KindOf(option);
        if (kind == Value::kWords) {
            out +=
                "        " + Joined(names, " | ") + ") offered='" + Joined(option.words) + "' ;;\n";
        }
        if (kind == Value::kFile) files.insert(files.end(), names.begin(), names.end());
        if (kind == Value::kOther) others.insert(others.end(), names.begin(), names.end());
    }
    // No words: bash itself offers names of files.
    if (!files.empty()) out += "        " + Joined(files, " | ") + ") return ;;\n";
    if (!others.empty()) out += "        " + Joined(others, " | ") + ") ;;\n";
    return out + "        *)\n            [[ $word == -* ]] || return\n            offered='" +
           Joined(all) + "' ;;\n        esac ;;\n";
}

// ---------------------------------------------------------------- zsh

std::string ZshQuoted(const std::string& text) {
    std::string out = "'";
    for (const char c : text) out += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return out + '\'';
}

std::string ZshOption(const Option& option) {
    const Value kind = KindOf(option);
    std::string told = '[' + Escaped(option.text, "[]\\", "\\") + ']';
    if (kind != Value::kNone) {
        told += ':' + Escaped(option.value, ":\\", "\\") + ':';
        if (kind == Value::kFile) told += "_files";
        if (kind == Value::kWords) told += '(' + Joined(option.words) + ')';
    }
    std::string names = "--" + option.name + (kind == Value::kNone ? "" : "=");
    if (option.letter != 0) {
        names = std::string("{-") + option.letter + (kind == Value::kNone ? "" : "+") + ',' +
                names + '}';
    }
    const std::string excluded = option.repeats       ? "*"
                                 : option.letter == 0 ? ""
                                                      : '(' + Joined(NamesOf(option)) + ')';
    return (excluded.empty() ? "" : ZshQuoted(excluded)) + names + ZshQuoted(told);
}

std::string ZshCase(const Command& command) {
    std::string out = "    " + command.name + ")\n        _arguments -s -S";
    for (const Option& option : OptionsOf(command)) out += " \\\n            " + ZshOption(option);
    for (const Operand& operand : command.operands) {
        out +=
            " \\\n            " + ZshQuoted((operand.many ? "*:" : ":") + operand.name + ":_files");
    }
    return out + " ;;\n";
}

// ---------------------------------------------------------------- fish

std::string FishQuoted(const std::string& text) { return '\'' + Escaped(text, "'\\", "\\") + '\''; }

std::string FishOption(const std::string& condition, const Option& option) {
    std::string out = "complete -c qmplot -n " + condition;
    if (option.letter != 0) out += std::string(" -s ") + option.letter;
    out += " -l " + option.name;
    const Value kind = KindOf(option);
    if (kind == Value::kFile) out += " -r -F";
    if (kind == Value::kOther) out += " -x";
    if (kind == Value::kWords) out += " -x -a " + FishQuoted(Joined(option.words));
    return out + " -d " + FishQuoted(option.text) + '\n';
}

}  // namespace

std::string BashCompletion(const std::vector<Command>& commands) {
    std::vector<std::string> first;
    first.reserve(commands.size());
    for (const Command& command : commands) first.push_back(command.name);
    for (const Option& option : ProgramOptions()) {
        for (std::string& name : NamesOf(option)) first.push_back(std::move(name));
    }
    std::string out =
        "# bash completion for qmplot\n"
        "_qmplot() {\n"
        "    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} offered=\n"
        "    COMPREPLY=()\n"
        "    # bash takes --to=svg for three words.\n"
        "    [ \"$before\" != = ] || before=${COMP_WORDS[COMP_CWORD - 2]}\n"
        "    [ \"$word\" != = ] || word=\n"
        "    if [ \"$COMP_CWORD\" -eq 1 ]; then\n"
        "        offered='" +
        Joined(first) +
        "'\n"
        "    else\n"
        "    case ${COMP_WORDS[1]} in\n";
    for (const Command& command : commands) out += BashCase(command);
    return out +
           "    esac\n"
           "    fi\n"
           "    mapfile -t COMPREPLY < <(compgen -W \"$offered\" -- \"$word\")\n"
           "    compopt +o default 2>/dev/null\n"
           "} &&\n"
           "    complete -o default -F _qmplot qmplot\n";
}

std::string ZshCompletion(const std::vector<Command>& commands) {
    std::string out =
        "#compdef qmplot\n"
        "local -a commands\n"
        "commands=(\n";
    for (const Command& command : commands) {
        out +=
            "    " + ZshQuoted(command.name + ':' + Escaped(command.summary, ":\\", "\\")) + '\n';
    }
    out +=
        ")\n"
        "if (( CURRENT == 2 )); then\n"
        "    _describe command commands\n"
        "    _arguments -s -S";
    for (const Option& option : ProgramOptions()) out += " \\\n        " + ZshOption(option);
    out +=
        "\n    return\n"
        "fi\n"
        "shift words\n"
        "(( CURRENT-- ))\n"
        "case $words[1] in\n";
    for (const Command& command : commands) out += ZshCase(command);
    return out + "esac\n";
}

std::string FishCompletion(const std::vector<Command>& commands) {
    std::string out =
        "# fish completion for qmplot\n"
        "complete -c qmplot -n __fish_use_subcommand -f\n";
    for (const Command& command : commands) {
        out += "complete -c qmplot -n __fish_use_subcommand -a " + command.name + " -d " +
               FishQuoted(command.summary) + '\n';
    }
    for (const Option& option : ProgramOptions())
        out += FishOption("__fish_use_subcommand", option);
    for (const Command& command : commands) {
        const std::string condition = FishQuoted("__fish_seen_subcommand_from " + command.name);
        for (const Option& option : OptionsOf(command)) out += FishOption(condition, option);
    }
    return out;
}

}  // namespace qm::cli
