#include "cli/output_format.h"

#include <algorithm>
#include <sstream>

#include "cli/command_line.h"
#include "common/tool_error.h"
#include "render/compact/compact_plot.h"
#include "render/viewer/viewer_writer.h"

namespace qm::cli {

namespace {

using Pages = std::vector<PlotPage>;

std::vector<PageSource> SourcesOf(const Pages& pages) {
    std::vector<PageSource> sources;
    for (const PlotPage& page : pages) sources.push_back(SourceOf(page));
    return sources;
}

void WriteAllAsViewer(const Pages& pages, const WriteOptions& options, OutputSink& sink) {
    const PlotFacts& facts = options.facts;
    const ViewerDocument document{facts.fileName, facts.format, facts.fileBytes, SourcesOf(pages)};
    WriteViewer(document, options.page, sink);
}

constexpr OutputFormat kFormats[] = {
    {"svg", "svg", "svg", false, true, false,
     [](const Pages& pages, const WriteOptions& options, OutputSink& sink) {
         WriteSvg(SourceOf(pages.front()), options.page, sink);
     }},
    {"pdf", "pdf", "pdf", true, true, false,
     [](const Pages& pages, const WriteOptions& options, OutputSink& sink) {
         WritePdf(SourcesOf(pages), options.page, sink);
     }},
    {"png", "png", "png", false, true, false,
     [](const Pages& pages, const WriteOptions& options, OutputSink& sink) {
         WritePng(SourceOf(pages.front()), options.page, sink);
     }},
    {"html", "html", "html", true, true, false, WriteAllAsViewer},
    {"dxf", "DXF", "dxf", false, false, false,
     [](const Pages& pages, const WriteOptions& options, OutputSink& sink) {
         WriteDxf(SourceOf(pages.front()), options.page, sink);
     }},
    {"plt", "HP-GL/2", "plt hpgl hpg hp", true, false, true,
     [](const Pages& pages, const WriteOptions& options, OutputSink& sink) {
         WritePlot(pages, options.page, options.plot, sink);
     }},
    {"compact", "HP-GL/2 (.plt with --compact)", "", true, false, true,
     [](const Pages& pages, const WriteOptions& options, OutputSink& sink) {
         WriteCompactPlot(SourcesOf(pages), options.page, sink);
     }},
    {"rtl", "HP-RTL (.rtl, or .plt with --rtl)", "rtl", true, true, true,
     [](const Pages& pages, const WriteOptions& options, OutputSink& sink) {
         PlotOptions plot = options.plot;
         plot.rtl = true;
         WritePlot(pages, options.page, plot, sink);
     }},
};

// Whether `words`, with blanks between, hold `word`.
bool Holds(std::string_view words, std::string_view word) {
    while (!words.empty()) {
        const std::size_t end = std::min(words.find(' '), words.size());
        if (words.substr(0, end) == word) return true;
        words.remove_prefix(std::min(end + 1, words.size()));
    }
    return false;
}

const OutputFormat& FormatNamed(std::string_view name) {
    return *std::find_if(std::begin(kFormats), std::end(kFormats),
                         [name](const OutputFormat& format) { return format.name == name; });
}

char LowerCase(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

}  // namespace

std::size_t EndingAt(const std::string& path) {
    const std::size_t dot = path.find_last_of("./\\");
    return dot == std::string::npos || path[dot] != '.' ? path.size() : dot;
}

const OutputFormat* FindFormat(const std::string& path, const PlotOptions& plot) {
    const std::size_t dot = EndingAt(path);
    if (dot == path.size()) return nullptr;
    std::string ending = path.substr(dot + 1);
    std::transform(ending.begin(), ending.end(), ending.begin(), LowerCase);
    for (const OutputFormat& format : kFormats) {
        if (!Holds(format.endings, ending)) continue;
        if (format.name != "plt") return &format;
        return &FormatNamed(plot.rtl ? "rtl" : plot.compact ? "compact" : "plt");
    }
    return nullptr;
}

const OutputFormat& FormatFor(const std::string& path, const PlotOptions& plot) {
    if (const OutputFormat* format = FindFormat(path, plot)) return *format;
    throw ToolError(path + ": no format has this ending; use one of " + WritableEndings());
}

std::string WritableEndings() {
    std::string endings;
    for (const OutputFormat& format : kFormats) {
        std::istringstream list{std::string(format.endings)};
        for (std::string ending; list >> ending;)
            endings += (endings.empty() ? "." : " .") + ending;
    }
    return endings;
}

void RefuseOptionsOfOthers(const Command& command, const ParsedLine& line,
                           const OutputFormat& format) {
    for (const auto& [option, value] : line.given) {
        if (option->formats.empty() || Holds(option->formats, format.name)) continue;
        std::string others;
        std::istringstream list(option->formats);
        for (std::string name; list >> name;) {
            others += (others.empty() ? "" : ", ") + std::string(FormatNamed(name).description);
        }
        throw UsageError("--" + option->name + " means nothing for " +
                             std::string(format.description) + ", only for " + others,
                         command.name);
    }
}

}  // namespace qm::cli
