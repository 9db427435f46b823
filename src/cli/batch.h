// A batch: many files and folders converted into a folder. Test: tests/cli/transcripts_test.cpp.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "cli/batch_options.h"
#include "cli/conversion.h"
#include "cli/messages.h"

namespace qm::cli {

struct Job {
    std::string input;
    std::string output;
    bool walked = false;       // found in a folder: what is no plot there is skipped
    bool inSubfolder = false;  // the output's folder has to be made
    std::string problem;       // why it cannot be done; empty: it can
    std::string ending;        // --to, when the output's name does not tell the format
};

struct BatchPlan {
    std::vector<Job> jobs;
    std::size_t skipped = 0;  // hidden files and folders
};

// DIR/NAME.svg for each file, DIR/SUBFOLDER/NAME.svg for each file below a folder and for each of
// `listed`. Links to folders are not followed, and `options.folder` itself is left out.
BatchPlan PlanBatch(const std::vector<std::string>& inputs, const std::vector<std::string>& listed,
                    const BatchOptions& options);

// Does all jobs, whatever happens to one of them, and says at the end how many were done, unless
// there was one file named. With limits each is done in a child process. Returns the worst exit
// status.
int RunBatch(const BatchPlan& plan, const BatchOptions& options,
             const ConversionOptions& conversion, Messages& messages);

}  // namespace qm::cli
