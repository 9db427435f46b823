// qmplot view FILE...: plots in the browser.
#include <zlib.h>

#include <filesystem>
#include <iostream>
#include <memory>

#include "cli/browser.h"
#include "cli/commands.h"
#include "cli/console.h"
#include "cli/conversion.h"
#include "cli/plots.h"
#include "cli/progress_bar.h"
#include "cli/reading_option.h"
#include "common/tool_error.h"

namespace qm::cli {

namespace {

struct ViewOptions {
    std::vector<std::string> files;
    bool open = true;
    ConversionOptions conversion;
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

int RunView(const ViewOptions& options) {
    WatchForInterruption();
    const Components components(options.conversion.reading);
    for (const std::string& input : options.files) {
        const std::string page = PageFor(input);
        bool written = false;
        {
            ProgressBar bar(input);
            const ConversionReports reports{
                [&](int percent) { bar.Show(percent); },
                [](const std::string& note) { std::cerr << "qmplot: " << note << '\n'; },
                [&](const std::string&) { written = true; }};
            Convert(input, page, options.conversion, reports);
        }
        if (!written) continue;  // it draws nothing
        std::cout << page << '\n';
        if (options.open && !OpenInBrowser(page)) {
            std::cerr << "qmplot: no browser could be started; open that file with one\n";
        }
    }
    return kExitSuccess;
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
                      ReadingOptions(options->conversion.reading)};
    command.run = [options](const ParsedLine& line) {
        options->files = line.operands;
        return RunView(*options);
    };
    return command;
}

}  // namespace qm::cli
