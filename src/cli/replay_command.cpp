// qmplot replay SCRIPT OUT: an export filter driven by a text script.
#include <iostream>
#include <memory>

#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/files.h"
#include "cli/sink_stream.h"
#include "common/tool_error.h"
#include "replay/replay.h"

namespace qm::cli {

namespace {

struct ReplayOptions {
    std::string script;
    std::string output;
    std::string format = "hpgl";
};

std::string ReadAll(InputFile& file) {
    std::string text(file.Size(), '\0');
    std::size_t done = 0;
    while (done < text.size()) {
        const std::size_t count = file.Read(&text[done], text.size() - done);
        if (count == 0) break;
        done += count;
    }
    text.resize(done);
    return text;
}

int Replay(const ReplayOptions& options) {
    InputFile file(options.script);
    const std::string script = ReadAll(file);
    const auto target = StatusOf(options.output);
    const auto source = StatusOf(options.script);
    if (target && source && target->regular && target->device == source->device &&
        target->number == source->number) {
        throw ToolError(options.output + ": is not written, because it is the script");
    }
    OutputFile output(options.output);
    const auto stream = MakeObject<SinkStream>(output);
    if (!stream) throw std::bad_alloc();
    const auto format = options.format == "hprtl" ? ReplayFormat::kHprtl : ReplayFormat::kHpgl;
    const int status = ReplayScript(script, file.Name(), format, stream.Get(), std::cerr);
    stream->ThrowFailure();
    output.Finish();
    output.Commit();
    return status;
}

}  // namespace

Command ReplayCommand() {
    const auto options = std::make_shared<ReplayOptions>();
    Command command;
    command.name = "replay";
    command.summary = "Drive an export filter from a script and write its plot";
    command.usages = {"[--format FORMAT] SCRIPT OUT"};
    command.operands = {{"SCRIPT", "The script"}, {"OUT", "The plot file to write"}};
    command.groups = {
        {"Options",
         {ChoiceOption("format", "hpgl|hprtl", "HP-GL/2 (if not given) or HP-RTL",
                       [options](const std::string& name) { options->format = name; })}}};
    command.run = [options](const ParsedLine& line) {
        options->script = line.operands[0];
        options->output = line.operands[1];
        if (options->output.empty()) throw UsageError("OUT is empty", "replay");
        return Replay(*options);
    };
    return command;
}

}  // namespace qm::cli
