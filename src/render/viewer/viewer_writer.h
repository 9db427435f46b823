// WriteViewer: all pages of a plot as one HTML file that shows them in a browser.
//
// The file holds a program (src/viewer/, embedded at build time), its style sheet and the plot as
// data in elements that browsers do not execute. What comes from the plot stands in that data only,
// coded in Base64, but for the title. A content security policy allows the program and the style by
// their SHA-256 and forbids everything else. Test: tests/render/viewer_test.cpp, tests/viewer/.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "render/page_writers.h"

namespace qm {

struct ViewerDocument {
    std::string fileName;  // UTF-8, without its folder
    std::string format;    // "HPGL/2" or "Nemetschek Allplan"
    std::uint64_t fileBytes = 0;
    std::vector<PageSource> pages;
};

// Tells options.progress how far it is. Throws what the sink throws, ToolError and std::bad_alloc.
void WriteViewer(const ViewerDocument& document, const PageOptions& options, OutputSink& sink);

}  // namespace qm
