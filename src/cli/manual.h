// The manual pages of qmplot, made from the texts that its help prints, and the files in which man
// and the shells read about it, so that no list of its options is kept by hand. Tests:
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

// Writes man/man1/qmplot.1, man/man1/qmplot-COMMAND.1, bash-completion/completions/qmplot,
// zsh/site-functions/_qmplot and fish/vendor_completions.d/qmplot.fish below `folder`, which is
// made. Throws ToolError.
void WriteManualFiles(const std::vector<Command>& commands, const std::string& folder);

}  // namespace qm::cli
