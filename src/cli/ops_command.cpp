// qmplot ops FILE: the drawing operations of the interpreter alone, one line each.
#include <memory>

#include "cli/commands.h"
#include "cli/console.h"
#include "cli/files.h"
#include "cli/messages.h"
#include "cli/reading_options.h"
#include "common/tool_error.h"
#include "trace/operation_recorder.h"

namespace qm::cli {

namespace {

struct OpsOptions {
    std::string file;
    Reading reading;
};

int PrintOperations(const OpsOptions& options) {
    InputFile file(options.file);
    ProgressBar progress;
    StandardOutput output;
    std::uint64_t done = 0;
    // With nobody left to read the lines, the plot ends at once.
    const auto read = [&](void* buffer, std::size_t size) -> std::size_t {
        if (output.Failed()) return 0;
        const std::size_t count = file.Read(buffer, size);
        done += count;
        if (file.Size() > 0) {
            progress.Show("reading ", file.Name(), static_cast<int>(done * 100 / file.Size()));
        }
        return count;
    };
    OperationRecorder recorder(read, static_cast<std::uint32_t>(file.Size()),
                               [&](std::string_view line) { output.Write(line); });
    recorder.SetReading(options.reading);
    recorder.Record();
    output.Finish();
    return kExitSuccess;
}

}  // namespace

Command OpsCommand() {
    const auto options = std::make_shared<OpsOptions>();
    Command command;
    command.name = "ops";
    command.summary = "Print every drawing operation of the interpreter, a line each";
    command.usages = {"[OPTIONS] FILE"};
    command.operands = {{"FILE", "The plot file"}};
    command.groups = {ReadingOptions(options->reading)};
    command.run = [options](const ParsedLine& line) {
        options->file = line.operands.front();
        return PrintOperations(*options);
    };
    return command;
}

}  // namespace qm::cli
