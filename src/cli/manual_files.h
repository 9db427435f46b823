// The files that man and the shells read about qmplot, written by qmplot itself, so that no list
// of its options is kept by hand. Tests: tests/cli/manual_test.cpp.
#pragma once

#include <string>
#include <vector>

#include "cli/command.h"

namespace qm::cli {

// Writes man/man1/qmplot.1, man/man1/qmplot-COMMAND.1, bash-completion/completions/qmplot,
// zsh/site-functions/_qmplot and fish/vendor_completions.d/qmplot.fish below `folder`, which is
// made. Throws ToolError.
void WriteManualFiles(const std::vector<Command>& commands, const std::string& folder);

}  // namespace qm::cli
