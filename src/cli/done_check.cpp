// See done_check.h.
#include "cli/done_check.h"

#include <algorithm>

#include "cli/conversion.h"
#include "cli/files.h"

namespace qm::cli {

namespace {

// "a.svg" of "a-12.svg"; empty when the name has no such number.
std::string WithoutNumber(const std::string& output) {
    const std::size_t dot = EndingAt(output);
    const std::size_t minus = output.find_last_not_of("0123456789", dot == 0 ? 0 : dot - 1);
    if (minus == std::string::npos || output[minus] != '-' || minus + 1 == dot) return {};
    return output.substr(0, minus) + output.substr(dot);
}

// Whether `output` is there and was written after the last change of the plot.
bool IsCurrent(const std::string& output, const std::string& input) {
    const auto plot = StatusOf(input);
    const auto status = StatusOf(output);
    return plot && plot->regular && status && status->regular &&
           status->written > std::max(plot->written, plot->changed);
}

}  // namespace

DoneCheck::DoneCheck(const std::vector<Job>& jobs) {
    for (const Job& job : jobs) {
        Owner& owner = owners_[job.output];
        owner.alone = owner.first == nullptr;
        if (owner.alone) owner.first = &job;
    }
}

bool DoneCheck::IsDone(const Job& job) const {
    if (IsOwn(job.output) && IsCurrent(job.output, job.input)) return true;
    const std::string firstPage = NumberedName(job.output, 1);
    return owners_.count(firstPage) == 0 && IsCurrent(firstPage, job.input);
}

bool DoneCheck::IsOwn(const std::string& output) const {
    const auto owner = owners_.find(output);
    if (owner != owners_.end() && !owner->second.alone) return false;
    const auto unnumbered = owners_.find(WithoutNumber(output));
    return unnumbered == owners_.end() ||
           (unnumbered->second.alone &&
            IsCurrent(unnumbered->first, unnumbered->second.first->input));
}

}  // namespace qm::cli
