// qmplot trace FILE: every call that the import filter makes on host objects, a line each.
#include <climits>
#include <memory>

#include "cli/commands.h"
#include "cli/console.h"
#include "cli/plots.h"
#include "common/tool_error.h"
#include "trace/host_trace.h"

namespace qm::cli {

namespace {

struct TraceCommandOptions {
    std::string file;
    OpenOptions open;
    bool progress = false;
    int abortAt = INT_MAX;  // no percentage reaches it
};

int PrintTrace(const TraceCommandOptions& options) {
    const InputFile file(options.file);
    StandardOutput output;
    TraceOptions trace;
    trace.reading = options.open.reading;
    trace.progress = options.progress;
    trace.abortAt = options.abortAt;
    const PlotSource source(file, options.open.force);
    // The host answers well even with nobody left to read: what it says cannot end an import.
    const HRESULT status = TraceImport(source.Object(), trace, [&](std::string_view line) {
        output.Write(line);
        output.Write("\n");
        return S_OK;
    });
    output.Finish();
    source.ThrowFailure();
    return status == S_OK ? kExitSuccess : kExitNotAPlot;
}

}  // namespace

Command TraceCommand() {
    const auto options = std::make_shared<TraceCommandOptions>();
    Command command;
    command.name = "trace";
    command.summary = "Print every call of the import filter on its host, a line each";
    command.usages = {"[OPTIONS] FILE"};
    command.operands = {{"FILE", "The plot file"}};
    command.groups = {
        {"Options",
         {Flag("progress", 0, "Print the Progress events too", options->progress),
          IntegerOption("abort-at", 0, "N",
                        "Ask to stop at the first Progress event of at least N percent",
                        options->abortAt, INT_MIN, INT_MAX)}},
        OpenGroup(options->open)};
    command.run = [options](const ParsedLine& line) {
        options->file = line.operands.front();
        return PrintTrace(*options);
    };
    return command;
}

}  // namespace qm::cli
