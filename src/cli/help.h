// Help: what qmplot and its subcommands take, as text of 80 columns. Test:
// tests/cli/qmplot_test.cpp.
#pragma once

#include <string>
#include <vector>

#include "cli/command.h"

namespace qm::cli {

// What qmplot is; what holds for the files of all commands.
inline constexpr const char* kAbout =
    "qmplot opens plot files (HP-GL, HP-GL/2, HP-RTL): tells what they are, converts them, lists "
    "what they draw.";
inline constexpr const char* kAboutFiles =
    "'-' as FILE reads standard input. qmplot COMMAND --help tells more of a command.";

// The options that stand in the place of a command. Their `set` is empty.
std::vector<Option> ProgramOptions();

// qmplot --help.
std::string HelpOfAll(const std::vector<Command>& commands);
// qmplot COMMAND --help.
std::string HelpOf(const Command& command);

}  // namespace qm::cli
