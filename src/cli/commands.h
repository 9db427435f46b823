// The subcommands of qmplot, one file each (NAME_command.cpp). Tests: tests/cli/.
#pragma once

#include "cli/command.h"

namespace qm::cli {

Command ConvertCommand();
Command DetectCommand();
Command InfoCommand();
Command OpsCommand();
Command ReplayCommand();
Command TraceCommand();
Command ViewCommand();

}  // namespace qm::cli
