// Help: what qmplot and its subcommands take, as text of 80 columns. Test:
// tests/cli/qmplot_test.cpp.
#pragma once

#include <string>
#include <vector>

#include "cli/command.h"

namespace qm::cli {

// qmplot --help.
std::string HelpOfAll(const std::vector<Command>& commands);
// qmplot COMMAND --help.
std::string HelpOf(const Command& command);

}  // namespace qm::cli
