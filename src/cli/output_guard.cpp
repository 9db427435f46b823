// See output_guard.h.
#include "cli/output_guard.h"

#include "common/tool_error.h"

namespace qm::cli {

// Looked up only when something stands where a file is to be written: a run can have a million
// inputs.
bool OutputGuard::IsInput(const FileStatus& file) {
    if (!inputsKnown_) {
        inputsKnown_ = true;
        for (const std::string& input : inputs_) {
            const auto status = StatusOf(input);
            if (status && status->regular) inputNumbers_.emplace(status->device, status->number);
        }
    }
    return inputNumbers_.count({file.device, file.number}) != 0;
}

void OutputGuard::Claim(const std::string& output, const std::string& input,
                        const OutputFormat& format) {
    if (output == "-") return;
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto [other, isNew] = inputOf_.emplace(output, input);
    if (!isNew) {
        throw ToolError(std::string(input)
                            .append(": would be written to ")
                            .append(output)
                            .append(", as ")
                            .append(other->second)
                            .append("; convert one of them to another folder"));
    }
    const auto status = StatusOf(output);
    if (!status || !status->regular) return;
    if (IsInput(*status)) {
        throw ToolError(output + ": is not written, because it is one of the files to convert");
    }
    if (format.isPlot && status->size > 0 && !overwrite_) {
        throw ToolError(output + ": is not written, because it exists and could be a plot of " +
                        "yours; -o DIR writes elsewhere, --force-overwrite replaces it");
    }
}

}  // namespace qm::cli
