// DoneCheck: which files of a run are converted already, for --skip-done. Test:
// tests/cli/transcripts_test.cpp.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "cli/batch.h"

namespace qm::cli {

class DoneCheck {
  public:
    // `jobs` must outlive it.
    explicit DoneCheck(const std::vector<Job>& jobs);

    // Whether the output of `job`, or of several pages the first one's, which gets its name last
    // (Convert), was written after the last change of its plot. False where the file that stands
    // there could be another job's: a.svg that of a.plt or a.hpgl, a-1.svg that of a-1.plt or, as
    // long as there is no a.svg, of the first page of a.plt.
    bool IsDone(const Job& job) const;

  private:
    struct Owner {
        const Job* first = nullptr;
        bool alone = true;
    };
    bool IsOwn(const std::string& output) const;

    std::unordered_map<std::string, Owner> owners_;  // by output
};

}  // namespace qm::cli
