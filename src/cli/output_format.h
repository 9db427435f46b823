// The file formats that qmplot convert writes, by the ending of the output's name.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "cli/plot_writer.h"
#include "render/page_writers.h"

namespace qm::cli {

// What the viewer page tells of the plot's file.
struct PlotFacts {
    std::string fileName;  // without its folder
    std::string format;
    std::uint64_t fileBytes = 0;
};

struct WriteOptions {
    PageOptions page;
    PlotOptions plot;
    PlotFacts facts;
};

struct OutputFormat {
    std::string_view ending;  // lower case, without dot
    bool manyPages;           // one file holds all pages
    bool holdsPictures;       // else only when pages are written as pictures (PlotOptions::rtl)
    // Writes `pages` (exactly one unless manyPages). Throws ToolError.
    void (*write)(const std::vector<PlotPage>& pages, const WriteOptions& options,
                  OutputSink& sink);
};

// By the ending of `path`, ignoring the case of A to Z. Throws ToolError for an ending nobody
// writes.
const OutputFormat& FormatFor(const std::string& path);
// ".svg .pdf .png .plt", for messages.
std::string WritableEndings();

}  // namespace qm::cli
