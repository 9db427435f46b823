// Conversion: one plot file to one file, or to one file a page.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "cli/output_format.h"
#include "cli/page_selection.h"
#include "cli/plots.h"

namespace qm::cli {

struct ConversionOptions {
    PageSelection pages;
    OpenOptions open;
    WriteOptions write;
    bool tellUnusedPens = false;  // in a batch they would be told of each file
};

// What a conversion says besides failing; called on the converting thread.
struct ConversionReports {
    // How far it is: reading is the first half, writing the second.
    std::function<void(int percent, bool writing)> progress;
    std::function<void(const std::string& message)> note;
    // A file is about to be written; throws when it must not be. May be empty.
    std::function<void(const std::string& output)> claim;
};

struct ConversionResult {
    std::size_t pages = 0;             // written
    std::vector<std::string> outputs;  // in the order of the pages
    std::uint64_t bytes = 0;           // of all outputs
};

// "plan.svg" becomes "plan-2.svg", "plan" becomes "plan-2".
std::string NumberedName(const std::string& path, std::size_t number);

// "a.plt: 3 pages, 1234 bytes, a-1.svg a-2.svg a-3.svg".
std::string Describe(const std::string& input, const ConversionResult& result);

// Reads `input` and writes `output` in `format`, all of its files or none; "-" is standard output.
// The thread's components must read by options.open.reading. Throws ToolError, also when there is
// nothing to write.
ConversionResult Convert(const Components& components, const std::string& input,
                         const std::string& output, const OutputFormat& format,
                         const ConversionOptions& options, const ConversionReports& reports);

}  // namespace qm::cli
