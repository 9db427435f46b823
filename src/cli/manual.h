// The manual pages of qmplot, made from the texts that its help prints. Tests:
// tests/cli/manual_test.cpp.
#pragma once

#include <string>
#include <vector>

#include "cli/command.h"

namespace qm::cli {

// qmplot(1): what it is, its commands. Text for man.
std::string ManualOfAll(const std::vector<Command>& commands);
// qmplot-COMMAND(1). Hidden options are left out, as in help.
std::string ManualOf(const Command& command);

}  // namespace qm::cli
