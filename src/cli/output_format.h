// The file formats that qmplot convert writes, by the ending of the output's name.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "cli/command.h"
#include "cli/plot_writer.h"
#include "render/page_look.h"
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
    PageLook look;
    PlotOptions plot;
    PlotFacts facts;
};

struct OutputFormat {
    std::string_view name;         // in Option::formats
    std::string_view description;  // for messages
    std::string_view endings;      // lower case, without dots, with blanks between
    bool manyPages;                // one file holds all pages
    bool holdsPictures;            // else they are left out
    bool isPlot;                   // a file that could be somebody's only copy
    // Writes `pages` (exactly one unless manyPages). Throws ToolError.
    void (*write)(const std::vector<PlotPage>& pages, const WriteOptions& options,
                  OutputSink& sink);
};

// Where the ending of `path` begins, at its dot; the end of `path` when its file name has none.
std::size_t EndingAt(const std::string& path);
// By the ending of `path`, ignoring the case of A to Z; where it says HP-GL/2 what `plot` makes of
// it. Null for an ending nobody writes.
const OutputFormat* FindFormat(const std::string& path, const PlotOptions& plot = {});
// The same; throws ToolError instead.
const OutputFormat& FormatFor(const std::string& path, const PlotOptions& plot = {});
// ".svg .pdf .png ...", for messages.
std::string WritableEndings();

// Throws UsageError for an option that means nothing for `format`.
void RefuseOptionsOfOthers(const Command& command, const ParsedLine& line,
                           const OutputFormat& format);

}  // namespace qm::cli
