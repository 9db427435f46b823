// qmplot view FILE...: plots in the browser.
#include <zlib.h>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>

#include "cli/browser.h"
#include "cli/commands.h"
#include "cli/console.h"
#include "cli/conversion.h"
#include "cli/messages.h"
#include "cli/plots.h"
#include "common/tool_error.h"

namespace qm::cli {

namespace {

struct ViewOptions {
    bool open = true;
    ConversionOptions conversion;
    MessageOptions messages;
};

// Plots of one name in different folders have pages of their own, and a plot always the same one.
std::string PageFor(const std::string& input) {
    const std::filesystem::path plot =
        input == "-" ? "standard-input" : std::filesystem::absolute(std::filesystem::u8path(input));
    const std::string path = plot.u8string();
    const uLong check =
        crc32(0, reinterpret_cast<const Bytef*>(path.data()), static_cast<uInt>(path.size()));
    const std::string name = plot.stem().u8string() + '-' + std::to_string(check) + ".html";
    return (std::filesystem::u8path(CacheFolder()) / std::filesystem::u8path(name)).u8string();
}

void View(const std::string& input, const Components& components, const ViewOptions& options,
          Messages& messages) {
    const std::string page = PageFor(input);
    const ConversionReports reports{[&](int percent, bool writing) {
                                        messages.Progress(writing ? "writing " : "reading ", input,
                                                          percent);
                                    },
                                    [&](const std::string& note) { messages.Note(note); },
                                    {}};
    Convert(components, input, page, FormatFor(page), options.conversion, reports);
    messages.HideProgress();
    std::cout << page << std::endl;
    if (options.open && !OpenInBrowser(page)) {
        messages.Note("no browser could be started; open that file with one");
    }
}

// One file that cannot be shown does not keep the others from being shown.
int RunView(const std::vector<std::string>& files, const ViewOptions& options) {
    WatchForInterruption();
    const Components components(options.conversion.open.reading);
    Messages messages(options.messages);
    int status = kExitSuccess;
    for (const std::string& input : files) {
        try {
            View(input, components, options, messages);
        } catch (const ToolError& error) {
            messages.Error(error.what());
            status = std::max(status, error.Status());
        }
        if (Interrupted()) break;
    }
    return status;
}

}  // namespace

Command ViewCommand() {
    const auto options = std::make_shared<ViewOptions>();
    options->conversion.write.page.checkpoint = ThrowIfInterrupted;
    Command command;
    command.name = "view";
    command.summary = "Show plots in the browser; prints where the pages are that it opens";
    command.usages = {"[OPTIONS] FILE..."};
    command.operands = {{"FILE", "Plot files", true}};
    command.groups = {{"Options",
                       {Flag("no-open", 0, "Only write the pages, do not start the browser",
                             options->open, false)}},
                      OpenGroup(options->conversion.open),
                      MessageGroup(options->messages)};
    command.run = [options](const ParsedLine& line) { return RunView(line.operands, *options); };
    return command;
}

}  // namespace qm::cli
