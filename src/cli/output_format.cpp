#include "cli/output_format.h"

#include <algorithm>

#include "common/tool_error.h"
#include "render/viewer/viewer_writer.h"

namespace qm::cli {

namespace {

using Pages = std::vector<PlotPage>;

void WriteAllAsPdf(const Pages& pages, const WriteOptions& options, OutputSink& sink) {
    std::vector<PageSource> sources;
    for (const PlotPage& page : pages) sources.push_back(SourceOf(page));
    WritePdf(sources, options.page, sink);
}

void WriteAllAsViewer(const Pages& pages, const WriteOptions& options, OutputSink& sink) {
    const PlotFacts& facts = options.facts;
    ViewerDocument document{facts.fileName, facts.format, facts.fileBytes, {}};
    for (const PlotPage& page : pages) document.pages.push_back(SourceOf(page));
    WriteViewer(document, options.page, sink);
}

constexpr OutputFormat kFormats[] = {
    {"svg", false, true,
     [](const Pages& pages, const WriteOptions& options, OutputSink& sink) {
         WriteSvg(SourceOf(pages.front()), options.page, sink);
     }},
    {"pdf", true, true, WriteAllAsPdf},
    {"png", false, true,
     [](const Pages& pages, const WriteOptions& options, OutputSink& sink) {
         WritePng(SourceOf(pages.front()), options.page, sink);
     }},
    {"html", true, true, WriteAllAsViewer},
    {"plt", true, false,
     [](const Pages& pages, const WriteOptions& options, OutputSink& sink) {
         WritePlot(pages, options.page, options.plot, sink);
     }},
};

char LowerCase(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

}  // namespace

const OutputFormat& FormatFor(const std::string& path) {
    const std::size_t dot = path.find_last_of("./");
    std::string ending;
    if (dot != std::string::npos && path[dot] == '.') ending = path.substr(dot + 1);
    std::transform(ending.begin(), ending.end(), ending.begin(), LowerCase);
    for (const OutputFormat& format : kFormats) {
        if (format.ending == ending) return format;
    }
    throw ToolError(path + ": no format has this ending; use one of " + WritableEndings());
}

std::string WritableEndings() {
    std::string endings;
    for (const OutputFormat& format : kFormats) {
        endings += endings.empty() ? "." : " .";
        endings += format.ending;
    }
    return endings;
}

}  // namespace qm::cli
