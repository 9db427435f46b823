// Two loads and conversions at a time in one process, and qmplot -j: what comes out is what one
// after the other gives. Under the preset tsan every access that is not ordered fails the test.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "fuzz/components.h"
#include "render/page_writers.h"
#include "tests/render/memory_sink.h"

namespace qm {
namespace {

namespace fs = std::filesystem;

std::string ReadAll(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> Examples() {
    std::vector<std::string> plots;
    for (const auto& entry : fs::directory_iterator(QM_EXAMPLES)) {
        if (entry.path().extension() == ".plt") plots.push_back(ReadAll(entry.path()));
    }
    return plots;
}

// The plot's pages in three formats, the picture drawn by two threads of its own.
std::string Converted(const std::string& bytes) {
    const OpenedPlot plot = fuzz::Components::Open(bytes);
    MemorySink sink;
    PageOptions options;
    options.dpi = 20;
    options.threads = 2;
    std::vector<PageSource> pages;
    for (const PlotPage& page : plot.pages) pages.push_back(SourceOf(page));
    for (const PageSource& page : pages) {
        WriteSvg(page, options, sink);
        WritePng(page, options, sink);
    }
    WritePdf(pages, options, sink);
    return sink.text;
}

std::vector<std::string> ConvertAll(const std::vector<std::string>& plots) {
    const fuzz::Components components;
    std::vector<std::string> converted;
    for (const std::string& plot : plots) converted.push_back(Converted(plot));
    return converted;
}

TEST(Threads, TwoLoadsInOneProcess) {
    const std::vector<std::string> plots = Examples();
    const std::vector<std::string> backwards(plots.rbegin(), plots.rend());
    const std::vector<std::string> expected = ConvertAll(plots);
    ASSERT_GT(expected.size(), 5U);
    std::vector<std::string> first;
    std::vector<std::string> second;
    std::thread forward([&] { first = ConvertAll(plots); });
    std::thread backward([&] { second = ConvertAll(backwards); });
    forward.join();
    backward.join();
    EXPECT_TRUE(first == expected);
    EXPECT_TRUE(std::equal(second.rbegin(), second.rend(), expected.begin(), expected.end()));
}

TEST(Threads, ConversionsOfManyFiles) {
    std::string folder = (fs::temp_directory_path() / "qmplot-threads-XXXXXX").string();
    ASSERT_NE(mkdtemp(folder.data()), nullptr);
    std::map<std::string, std::string> outcome[2];
    for (const int jobs : {1, 4}) {
        const fs::path out = fs::path(folder) / std::to_string(jobs);
        for (const std::string format : {"svg", "png", "pdf", "plt", "html"}) {
            const std::string command = std::string(QM_QMPLOT " convert -o ") + out.string() + "/" +
                                        format + " --to " + format + " -j " + std::to_string(jobs) +
                                        (format == "png" ? " --dpi 20 " : " ") +
                                        QM_EXAMPLES "/*.plt 2>/dev/null";
            EXPECT_EQ(std::system(command.c_str()), 0) << command;
        }
        for (const auto& entry : fs::recursive_directory_iterator(out)) {
            if (!entry.is_regular_file()) continue;
            outcome[jobs == 1 ? 0 : 1][entry.path().lexically_relative(out).string()] =
                ReadAll(entry.path());
        }
    }
    EXPECT_GT(outcome[0].size(), 25U);
    EXPECT_TRUE(outcome[0] == outcome[1]);
    fs::remove_all(folder);
}

}  // namespace
}  // namespace qm
