// The command line: which subcommand it names, its options and operands.
//
// Options stand anywhere behind the subcommand: --name VALUE, --name=VALUE, -n VALUE, -nVALUE;
// flags of one letter may be joined; behind "--" there are operands only. Test:
// tests/cli/qmplot_test.cpp.
#pragma once

#include <string>
#include <vector>

#include "cli/command.h"
#include "common/tool_error.h"

namespace qm::cli {

// A command line that cannot be followed; the message names the help that tells more.
class UsageError : public ToolError {
  public:
    // `command` is empty where none was named.
    UsageError(const std::string& message, const std::string& command)
        : ToolError(message + (message.back() == '?' ? " See" : "; see") + " qmplot " +
                    (command.empty() ? "" : command + ' ') + "--help") {}
};

// The command of that name. Throws UsageError, which names the one that may have been meant.
const Command& FindCommand(const std::vector<Command>& commands, const std::string& name);

// Whether help is asked for: -h or --help before any "--".
bool AsksForHelp(const std::vector<std::string>& words);

// Reads the words behind the subcommand and sets its options. Throws UsageError.
ParsedLine ParseWords(const Command& command, const std::vector<std::string>& words);

// Of `names` the one that `given` may be a slip of the pen for: its beginning, or few letters
// apart; empty: none is near.
std::string NearestName(const std::vector<std::string>& names, const std::string& given);

}  // namespace qm::cli
