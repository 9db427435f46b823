// The options of convert for many files: lists of files, what is done already, a report, limits.
// Test: tests/cli/transcripts_test.cpp.
#pragma once

#include <string>
#include <vector>

#include "cli/command.h"

namespace qm::cli {

struct BatchOptions {
    std::string folder;          // where the outputs go
    std::string ending = "svg";  // of their names, with or without dot
    int jobs = 1;                // files converted at once
    bool overwrite = false;      // plots may be replaced
    std::string list;            // a file with names of inputs; "-": standard input; empty: none
    bool zeroSeparated = false;  // names in it end with a zero byte, else with the line
    bool skipDone = false;
    std::string report;    // empty: none
    double timeout = 0.0;  // seconds a file; 0: any number
    int maxMemory = 0;     // megabytes a file; 0: any number
    bool isChild = false;  // converts one file for a parent, which reads its report

    bool HasLimits() const { return timeout > 0.0 || maxMemory > 0; }
    // The words of a child's command line that say how to convert.
    std::vector<std::string> childWords;
};

// `options` must outlive them.
OptionGroup ManyFilesGroup(BatchOptions& options);

// The names in options.list, in its order. Throws ToolError.
std::vector<std::string> NamesIn(const BatchOptions& options);

}  // namespace qm::cli
