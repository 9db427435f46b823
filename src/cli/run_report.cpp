// See run_report.h.
#include "cli/run_report.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iomanip>
#include <locale>
#include <sstream>

#include "cli/files.h"
#include "cli/json.h"
#include "common/tool_error.h"

namespace qm::cli {

namespace {

constexpr std::array<std::string_view, 3> kOutcomes = {"converted", "failed", "skipped"};
constexpr std::string_view kStart = "{\"outcome\":\"";
constexpr std::string_view kStatus = "\",\"status\":";

// Of `--report *.plt` the shell makes a report named as the first plot.
bool HoldsSomethingElse(const std::string& path) {
    const auto status = StatusOf(path);
    if (!status || !status->regular) return false;
    std::ifstream file(std::filesystem::u8path(path), std::ios::binary);
    const int first = file.get();
    return first != std::ifstream::traits_type::eof() && first != '{';
}

}  // namespace

std::string JsonOf(const FileReport& report) {
    std::ostringstream line;
    line.imbue(std::locale::classic());
    line << kStart << kOutcomes[static_cast<std::size_t>(report.outcome)] << kStatus
         << report.status << ",\"input\":" << JsonText(report.input) << ",\"outputs\":[";
    const char* comma = "";
    for (const std::string& output : report.result.outputs) {
        line << comma << JsonText(output);
        comma = ",";
    }
    line << "],\"pages\":" << report.result.pages << ",\"bytes\":" << report.result.bytes
         << ",\"seconds\":" << std::fixed << std::setprecision(3) << report.seconds
         << ",\"message\":" << JsonText(report.message) << '}';
    return line.str();
}

bool ReadOutcome(std::string_view line, Outcome& outcome, int& status) {
    if (line.empty() || line.back() != '}' || line.compare(0, kStart.size(), kStart) != 0) {
        return false;
    }
    line.remove_prefix(kStart.size());
    for (std::size_t i = 0; i < kOutcomes.size(); ++i) {
        const std::string start = std::string(kOutcomes[i]).append(kStatus);
        if (line.compare(0, start.size(), start) != 0) continue;
        outcome = static_cast<Outcome>(i);
        status = std::atoi(std::string(line.substr(start.size(), 1)).c_str());
        return true;
    }
    return false;
}

RunReport::RunReport(const std::string& path) : path_(path) {
    if (path.empty()) return;
    if (path == "-") throw ToolError("--report wants a file; '-' is none");
    if (HoldsSomethingElse(path)) {
        throw ToolError(path +
                        ": is not added to, because it is no report; --report names the "
                        "file for the lines about the others");
    }
    file_.open(std::filesystem::u8path(path), std::ios::binary | std::ios::app);
    if (!file_) throw SystemError(path, "written");
}

void RunReport::Add(const std::string& line) {
    if (path_.empty()) return;
    const std::lock_guard<std::mutex> lock(mutex_);
    file_ << line + '\n' << std::flush;
    if (!file_) throw SystemError(path_, "written");
}

}  // namespace qm::cli
