// Completions for shells, made from the options that the commands take. Tests:
// tests/cli/manual_test.cpp.
#pragma once

#include <string>
#include <vector>

#include "cli/command.h"

namespace qm::cli {

// Scripts as the shells load them: bash's for bash-completion's folder, zsh's a file _qmplot in its
// fpath, fish's for a completions folder. Commands, options, the words that values have and names
// of files are offered; hidden options are not.
std::string BashCompletion(const std::vector<Command>& commands);
std::string ZshCompletion(const std::vector<Command>& commands);
std::string FishCompletion(const std::vector<Command>& commands);

}  // namespace qm::cli
