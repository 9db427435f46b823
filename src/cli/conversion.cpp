#include "cli/conversion.h"

#include <memory>
#include <utility>

#include "cli/console.h"
#include "cli/files.h"
#include "cli/plots.h"
#include "common/tool_error.h"
#include "host/page_summary.h"
#include "platform/text.h"

namespace qm::cli {

namespace {

// "plan.svg" becomes "plan-2.svg".
std::string NumberedName(const std::string& path, std::size_t number) {
    return std::string(path).insert(path.rfind('.'), "-" + std::to_string(number));
}

PlotFacts FactsOf(const InputFile& file, const OpenedPlot& plot) {
    const std::string& name = file.Name();
    return {name.substr(name.find_last_of("/\\") + 1), WideToUtf8(plot.format), file.Size()};
}

struct NumberedPage {
    std::size_t number;  // from 1, empty pages counted
    PlotPage page;
};

std::vector<NumberedPage> PagesToWrite(const OpenedPlot& plot, const std::string& input,
                                       const ConversionOptions& options, bool picturesStay,
                                       const ConversionReports& reports) {
    const std::size_t count = plot.pages.size();
    const auto only = static_cast<std::size_t>(options.page);
    if (only > count && count > 0) {
        throw ToolError(input + ": has no page " + std::to_string(only) + ", its last one is " +
                        std::to_string(count));
    }
    std::vector<NumberedPage> pages;
    for (std::size_t number = 1; number <= count; ++number) {
        if (only != 0 && number != only) continue;
        const PlotPage& page = plot.pages[number - 1];
        const PageSummary summary = Summarise(page.Drawing());
        const std::string name = input + ": page " + std::to_string(number);
        if (summary.extent.empty) {
            reports.note(name + " shows nothing and is not written");
            continue;
        }
        if (summary.pictures > 0 && !picturesStay) {
            reports.note(name + " has pictures, which HP-GL/2 does not hold; --rtl keeps them");
        }
        pages.push_back({number, page});
    }
    if (count == 0) reports.note(input + ": draws nothing, nothing is written");
    return pages;
}

}  // namespace

void Convert(const std::string& input, const std::string& output, const ConversionOptions& options,
             const ConversionReports& reports) {
    const OutputFormat& format = FormatFor(output);
    const InputFile file(input);
    const OpenedPlot plot = LoadPlot(file, [&](int percent) {
        reports.progress(percent);
        return true;
    });
    const bool picturesStay = format.holdsPictures || options.write.plot.rtl;
    const auto pages = PagesToWrite(plot, file.Name(), options, picturesStay, reports);
    if (pages.empty()) return;

    WriteOptions writeOptions = options.write;
    writeOptions.page.progress = reports.progress;
    writeOptions.facts = FactsOf(file, plot);
    // No file gets its name before the last one is complete.
    std::vector<std::unique_ptr<OutputFile>> files;
    const auto write = [&](const std::string& path, const std::vector<PlotPage>& content) {
        ThrowIfInterrupted();
        if (reports.claim) reports.claim(path);
        files.push_back(std::make_unique<OutputFile>(path));
        try {
            format.write(content, writeOptions, *files.back());
        } catch (const PageError& error) {
            throw ToolError(file.Name() + ": " + error.what(), error.Status());
        }
        files.back()->Finish();
    };
    if (format.manyPages) {
        std::vector<PlotPage> all;
        all.reserve(pages.size());
        for (const NumberedPage& page : pages) all.push_back(page.page);
        write(output, all);
    } else {
        const bool one = options.page != 0 || plot.pages.size() == 1;
        for (const NumberedPage& page : pages) {
            write(one ? output : NumberedName(output, page.number), {page.page});
        }
    }
    for (const auto& written : files) written->Commit();
}

}  // namespace qm::cli
