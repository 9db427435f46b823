// qmplot: opens plot files through the filter components, without the host engine.
//
// RunProgram (program.h), which the system's entry point calls, reads the command line, runs the
// one subcommand it names and turns every failure into a message and an exit status. Tests:
// tests/cli/qmplot_test.cpp.
#include <iostream>
#include <new>

#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/console.h"
#include "cli/help.h"
#include "cli/manual.h"
#include "cli/program.h"
#include "cli/version.h"
#include "common/tool_error.h"

namespace {

using qm::cli::Command;

int Run(const std::vector<std::string>& words) {
    const std::vector<Command> commands = {qm::cli::DetectCommand(),  qm::cli::InfoCommand(),
                                           qm::cli::ConvertCommand(), qm::cli::ViewCommand(),
                                           qm::cli::OpsCommand(),     qm::cli::TraceCommand(),
                                           qm::cli::ReplayCommand()};
    if (words.empty()) throw qm::cli::UsageError("a subcommand is required", "");
    const std::string& first = words.front();
    if (first == "--version") {
        std::cout << "qmplot " << qm::cli::kVersion << '\n';
        return qm::kExitSuccess;
    }
    if (first == "--help" || first == "-h") {
        std::cout << qm::cli::HelpOfAll(commands);
        return qm::kExitSuccess;
    }
    if (first == "--manuals") {
        if (words.size() != 2) throw qm::cli::UsageError("--manuals takes a folder", "");
        qm::cli::WriteManualFiles(commands, words[1]);
        return qm::kExitSuccess;
    }
    const Command& command = qm::cli::FindCommand(commands, first);
    const std::vector<std::string> rest(words.begin() + 1, words.end());
    if (qm::cli::AsksForHelp(rest)) {
        std::cout << qm::cli::HelpOf(command);
        return qm::kExitSuccess;
    }
    return command.run(qm::cli::ParseWords(command, rest));
}

}  // namespace

int qm::cli::RunProgram(const std::vector<std::string>& words) {
    PrepareStandardStreams();
    int status = kExitUsage;
    try {
        status = Run(words);
        if (!std::cout.flush()) {
            std::cerr << "qmplot: standard output cannot be written\n";
            status = kExitUsage;
        }
    } catch (const ToolError& error) {
        if (*error.what() != '\0') std::cerr << "qmplot: " << error.what() << '\n';
        status = error.Status();
    } catch (const std::bad_alloc&) {
        std::cerr << "qmplot: out of memory\n";
    }
    if (Interrupted()) EndByInterruption();
    return status;
}
