// See batch_options.h.
#include "cli/batch_options.h"

#include <utility>

#include "cli/files.h"

namespace qm::cli {

OptionGroup ManyFilesGroup(BatchOptions& options) {
    constexpr double kMaxSeconds = 1e6;
    constexpr int kMaxMegabytes = 1 << 20;
    Option zero = Flag("null", '0', "Names in LIST end with a zero byte, as of find -print0",
                       options.zeroSeparated);
    zero.needs = "files-from";
    return {"Many files",
            {FileOption("files-from", 0, "LIST",
                        "With -o: also the files whose names stand in LIST, a line each; '-' is "
                        "standard input. Their folders are kept below DIR",
                        options.list),
             std::move(zero),
             Flag("skip-done", 0, "Skip files whose output is there and newer than they are",
                  options.skipDone),
             FileOption("report", 0, "FILE", "Add a line of JSON for each file to FILE",
                        options.report),
             NumberOption(
                 "timeout", "S", "Give up on a file after S seconds",
                 [&options](double seconds) { options.timeout = seconds; }, 0.001, kMaxSeconds),
             IntegerOption("max-memory", 0, "MB", "Give up on a file that wants more memory",
                           options.maxMemory, 16, kMaxMegabytes)}};
}

std::vector<std::string> NamesIn(const BatchOptions& options) {
    std::vector<std::string> names;
    if (options.list.empty()) return names;
    InputFile file(options.list);
    std::vector<char> block(std::size_t{1} << 16);
    const char end = options.zeroSeparated ? '\0' : '\n';
    std::string name;
    const auto finish = [&] {
        if (!options.zeroSeparated && !name.empty() && name.back() == '\r') name.pop_back();
        if (!name.empty()) names.push_back(std::move(name));
        name.clear();
    };
    while (const std::size_t count = file.Read(block.data(), block.size())) {
        for (std::size_t i = 0; i < count; ++i) {
            if (block[i] == end)
                finish();
            else
                name += block[i];
        }
    }
    finish();
    return names;
}

}  // namespace qm::cli
