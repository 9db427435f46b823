// The file formats that qmplot convert writes, by the ending of the output's name.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "render/page_writers.h"

namespace qm::cli {

struct OutputFormat {
    std::string_view ending;  // lower case, without dot
    bool manyPages;           // one file holds all pages
    // Writes `pages` (exactly one unless manyPages). Throws ToolError.
    void (*write)(const std::vector<PageSource>& pages, const PageOptions& options,
                  OutputSink& sink);
};

// By the ending of `path`, ignoring the case of A to Z. Throws ToolError for an ending nobody
// writes.
const OutputFormat& FormatFor(const std::string& path);
// ".svg .pdf .png", for messages.
std::string WritableEndings();

}  // namespace qm::cli
