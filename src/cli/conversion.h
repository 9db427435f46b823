// Conversion: one plot file to one file, or to one file a page.
#pragma once

#include <functional>
#include <string>

#include "cli/output_format.h"
#include "interpreter/reading.h"

namespace qm::cli {

struct ConversionOptions {
    int page = 0;  // 0: all pages, else the only one, from 1
    WriteOptions write;
    Reading reading;  // what the components of the calling thread are registered with
};

// What a conversion says besides failing; called on the converting thread.
struct ConversionReports {
    std::function<void(int percent)> progress;  // of reading, then of drawing each page
    std::function<void(const std::string& message)> note;
    // A file is about to be written. Throws when another conversion of this run writes it: page 1
    // of "plan" meets "plan-1". May be empty.
    std::function<void(const std::string& output)> claim;
};

// Reads `input` and writes `output`, all of its files or none. The components of the calling thread
// must be registered. Throws ToolError.
void Convert(const std::string& input, const std::string& output, const ConversionOptions& options,
             const ConversionReports& reports);

}  // namespace qm::cli
