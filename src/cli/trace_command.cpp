// qmplot trace FILE: every call that the import filter makes on host objects, a line each.
#include <memory>
#include <optional>

#include "cli/commands.h"
#include "cli/console.h"
#include "cli/plots.h"
#include "cli/progress_bar.h"
#include "cli/reading_option.h"
#include "common/tool_error.h"
#include "trace/host_trace.h"

namespace qm::cli {

namespace {

struct TraceCommandOptions {
    std::string file;
    Reading reading;
    bool progress = false;
    std::optional<int> abortAt;
};

int PrintTrace(const TraceCommandOptions& options) {
    const InputFile file(options.file);
    StandardOutput output;
    TraceOptions trace;
    trace.reading = options.reading;
    trace.progress = options.progress;
    trace.abortAt = options.abortAt;
    const auto source = OpenSource(file);
    // The host answers well even with nobody left to read: what it says cannot end an import.
    const HRESULT status = TraceImport(*source, trace, [&](std::string_view line) {
        output.Write(line);
        output.Write("\n");
        return S_OK;
    });
    output.Finish();
    return status == S_OK ? kExitSuccess : kExitNotAPlot;
}

}  // namespace

void AddTraceCommand(CLI::App& app, Action& action) {
    CLI::App* command = app.add_subcommand(
        "trace", "Print every call of the import filter on its host, a line each");
    const auto options = std::make_shared<TraceCommandOptions>();
    command->add_option("FILE", options->file, "The plot file")->required()->type_name("");
    AddReadingOptions(*command, options->reading);
    command->add_flag("--progress", options->progress, "Print the Progress events too");
    command
        ->add_option("--abort-at", options->abortAt,
                     "Ask to stop at the first Progress event of at least N percent")
        ->type_name("N");
    command->callback([=, &action] { action = [=] { return PrintTrace(*options); }; });
}

}  // namespace qm::cli
