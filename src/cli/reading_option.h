// --reading and --sheet: which reading of a plot a subcommand asks for. Test:
// tests/cli/qmplot_test.cpp.
#pragma once

#include <CLI/CLI.hpp>

#include "interpreter/reading.h"

namespace qm::cli {

// Adds both options to `command`; when the command line has been parsed `reading`, which must
// outlive it, is what they ask for.
void AddReadingOptions(CLI::App& command, Reading& reading);

}  // namespace qm::cli
