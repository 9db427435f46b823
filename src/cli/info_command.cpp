// qmplot info FILE...: what plots hold.
#include <algorithm>
#include <memory>

#include "cli/commands.h"
#include "cli/console.h"
#include "cli/json.h"
#include "cli/messages.h"
#include "cli/page_report.h"
#include "cli/plots.h"
#include "common/tool_error.h"
#include "platform/text.h"

namespace qm::cli {

namespace {

struct InfoOptions {
    bool texts = false;
    bool json = false;
    OpenOptions open;
    MessageOptions messages;
};

PlotReport Read(const std::string& path, const Components& components, const InfoOptions& options,
                Messages& messages) {
    const InputFile file(path);
    const LoadedPlot loaded = LoadPlot(components, file, options.open.force, [&](int percent) {
        messages.Progress("reading ", file.Name(), percent);
    });
    for (const std::string& note : loaded.notes) messages.Note(file.Name() + ": " + note);
    PlotReport report{file.Name(), WideToUtf8(loaded.plot.format), loaded.notes, {}};
    for (const PlotPage& page : loaded.plot.pages) {
        report.pages.push_back(ReportOf(page, report.pages.size() + 1, options.texts));
    }
    return report;
}

// One file that cannot be read does not keep the others from being told.
int PrintInfo(const std::vector<std::string>& files, const InfoOptions& options) {
    const Components components(options.open.reading);
    StandardOutput output;
    Messages messages(options.messages);
    int status = kExitSuccess;
    for (const std::string& file : files) {
        try {
            const PlotReport report = Read(file, components, options, messages);
            messages.HideProgress();
            output.Write(options.json ? InfoJson(report) + '\n' : InfoText(report));
        } catch (const ToolError& error) {
            output.Flush();
            messages.Error(error.what());
            if (options.json) output.Write(JsonOfError(file, error) + '\n');
            status = std::max(status, error.Status());
        }
        if (output.Failed()) break;
    }
    output.Finish();
    return status;
}

}  // namespace

Command InfoCommand() {
    const auto options = std::make_shared<InfoOptions>();
    Command command;
    command.name = "info";
    command.summary = "Tell what plots hold: pages, sizes, pens, counts, pictures";
    command.usages = {"[OPTIONS] FILE..."};
    command.operands = {{"FILE", "Plot files; '-' is standard input", true}};
    command.groups = {
        {"Options",
         {Flag("texts", 0, "List the texts too", options->texts), JsonOption(options->json)}},
        OpenGroup(options->open),
        MessageGroup(options->messages)};
    command.notes = {"Pages are numbered as convert's --page counts them. Sizes are millimetres."};
    command.examples = {
        {"--texts plan.plt", "All that is written on it, too"},
        {"--json *.plt | jq -r 'select(.pages | length > 1).file'", "Plots of several pages"}};
    command.statuses = {{"0", "All files were told"},
                        {"1", "A file is no plot or cannot be unpacked"},
                        {"2", "Wrong usage, or a file cannot be read"}};
    command.run = [options](const ParsedLine& line) { return PrintInfo(line.operands, *options); };
    return command;
}

}  // namespace qm::cli
