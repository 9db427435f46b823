// --reading and --sheet: which reading of a plot a subcommand asks for. Test:
// tests/cli/qmplot_test.cpp.
#pragma once

#include "cli/command.h"
#include "interpreter/reading.h"

namespace qm::cli {

// Both options; `reading`, which must outlive them, becomes what they ask for.
OptionGroup ReadingOptions(Reading& reading);

}  // namespace qm::cli
