// qmplot detect FILE...: which of the files are plot files, a line each.
#include <algorithm>
#include <memory>
#include <vector>

#include "cli/commands.h"
#include "cli/console.h"
#include "cli/json.h"
#include "cli/messages.h"
#include "cli/plots.h"
#include "common/tool_error.h"

namespace qm::cli {

namespace {

std::string LineOf(const std::string& file, const std::string& format, bool json) {
    if (!json) return file + ": " + (format.empty() ? "not a plot file" : format) + '\n';
    return "{\"file\":" + JsonText(file) +
           ",\"format\":" + (format.empty() ? "null" : JsonText(format)) + "}\n";
}

// One unreadable file does not keep the others from being told.
int Detect(const std::vector<std::string>& files, bool json) {
    const Components components;
    StandardOutput output;
    Messages messages({});
    int result = kExitSuccess;
    for (const std::string& file : files) {
        try {
            const std::string format = FormatOf(InputFile(file));
            output.Write(LineOf(file, format, json));
            if (format.empty()) result = std::max(result, kExitNotAPlot);
        } catch (const ToolError& error) {
            output.Flush();
            messages.Error(error.what());
            if (json) output.Write(JsonOfError(file, error) + '\n');
            result = std::max(result, error.Status());
        }
    }
    output.Finish();
    return result;
}

}  // namespace

Command DetectCommand() {
    const auto json = std::make_shared<bool>(false);
    Command command;
    command.name = "detect";
    command.summary = "Tell which files are plot files: HPGL/2, Nemetschek Allplan or none";
    command.usages = {"[--json] FILE..."};
    command.operands = {{"FILE", "The files to look at; '-' is standard input", true}};
    command.groups = {{"Options", {JsonOption(*json)}}};
    command.examples = {{"*.plt", "Which of these are plots?"}};
    command.statuses = {{"0", "All files are plots"},
                        {"1", "One is not"},
                        {"2", "Wrong usage, or a file cannot be read"}};
    command.run = [json](const ParsedLine& line) { return Detect(line.operands, *json); };
    return command;
}

}  // namespace qm::cli
