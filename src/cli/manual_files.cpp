// See manual_files.h.
#include "cli/manual_files.h"

#include <filesystem>

#include "cli/completion.h"
#include "cli/files.h"
#include "cli/manual.h"

namespace qm::cli {

namespace {

void WriteText(const std::string& folder, const std::string& name, const std::string& text) {
    const auto path = std::filesystem::u8path(folder) / name;
    std::error_code failure;
    std::filesystem::create_directories(path.parent_path(), failure);
    if (failure) throw SystemError(path.parent_path().u8string(), "made", failure.value());
    OutputFile file(path.u8string());
    file.Write(text);
    file.Finish();
    file.Commit();
}

}  // namespace

void WriteManualFiles(const std::vector<Command>& commands, const std::string& folder) {
    WriteText(folder, "man/man1/qmplot.1", ManualOfAll(commands));
    for (const Command& command : commands) {
        WriteText(folder, "man/man1/qmplot-" + command.name + ".1", ManualOf(command));
    }
    WriteText(folder, "bash-completion/completions/qmplot", BashCompletion(commands));
    WriteText(folder, "zsh/site-functions/_qmplot", ZshCompletion(commands));
    WriteText(folder, "fish/vendor_completions.d/qmplot.fish", FishCompletion(commands));
}

}  // namespace qm::cli
