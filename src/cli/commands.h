// The subcommands of qmplot, one file each (NAME_command.cpp).
//
// AddNAMECommand declares the options of one subcommand; parsing the command line then sets
// `action` to what it asks for. An action returns the exit status or throws ToolError. Tests:
// tests/cli/.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>

namespace qm::cli {

using Action = std::function<int()>;

void AddConvertCommand(CLI::App& app, Action& action);
void AddDetectCommand(CLI::App& app, Action& action);
void AddInfoCommand(CLI::App& app, Action& action);
void AddOpsCommand(CLI::App& app, Action& action);
void AddReplayCommand(CLI::App& app, Action& action);
void AddTraceCommand(CLI::App& app, Action& action);
void AddViewCommand(CLI::App& app, Action& action);

}  // namespace qm::cli
