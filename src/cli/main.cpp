// qmplot: opens plot files through the filter components, without the host engine.
//
// Parses the command line, runs the one subcommand it names and turns every failure into a message
// and an exit status. Tests: tests/cli/qmplot_test.cpp.
#include <iostream>
#include <new>

#include "cli/commands.h"
#include "cli/console.h"
#include "cli/version.h"
#include "common/tool_error.h"

namespace {

constexpr const char* kDescription =
    "Opens plot files (HP-GL, HP-GL/2, HP-RTL): tells what they are, converts them, lists what "
    "they draw";

// 0 for --help and --version, which arrive as exceptions too.
int ReportParseError(const CLI::App& app, const CLI::ParseError& error, const char* first) {
    if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
        return app.exit(error);
    }
    const auto used = app.get_subcommands();
    const std::string name = used.empty() ? "" : used.front()->get_name() + " ";
    std::cerr << "qmplot: ";
    if (used.empty() && first != nullptr && *first != '-') {
        std::cerr << first << " is not a command";
    } else {
        std::cerr << error.what();
    }
    std::cerr << "; see qmplot " << name << "--help\n";
    return qm::kExitUsage;
}

int Run(int argc, char** argv) {
    CLI::App app(kDescription, "qmplot");
    app.allow_windows_style_options(false);  // "/plots/a.plt" is a path on every system
    app.set_version_flag("--version", std::string("qmplot ") + qm::cli::kVersion);
    app.require_subcommand(1);
    app.footer("'-' as FILE reads standard input. qmplot COMMAND --help tells more of a command.");
    qm::cli::Action action;
    for (const auto add :
         {qm::cli::AddDetectCommand, qm::cli::AddInfoCommand, qm::cli::AddConvertCommand,
          qm::cli::AddViewCommand, qm::cli::AddOpsCommand, qm::cli::AddTraceCommand,
          qm::cli::AddReplayCommand}) {
        add(app, action);
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return ReportParseError(app, error, argc > 1 ? argv[1] : nullptr);
    }
    return action();
}

}  // namespace

int main(int argc, char** argv) {
    qm::cli::PrepareStandardStreams();
    try {
        const int status = Run(argc, argv);
        if (std::cout.flush()) return status;
        std::cerr << "qmplot: standard output cannot be written\n";
    } catch (const qm::ToolError& error) {
        std::cerr << "qmplot: " << error.what() << '\n';
        return error.Status();
    } catch (const std::bad_alloc&) {
        std::cerr << "qmplot: out of memory\n";
    }
    return qm::kExitUsage;
}
