// QmplotTest: the program in an empty folder of its own, with a few plots in it, run as a shell
// runs it.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

namespace qm::testing_cli {

namespace fs = std::filesystem;

// Detection wants several commands in a row.
inline constexpr const char* kPlot = "IN;SP1;PU0,0;PD1000,0,1000,500;PU;PA0,0;PD300,300;PU;SP0;";
inline constexpr const char* kThreePages = "IN;SP1;PD400,0;PG;PU;SP2;PD0,400;PG;SP3;PD800,800;";
inline constexpr const char* kText = "Dear reader, this is no plot.\n";

inline std::string LongPlot() {
    std::string plot = "IN;SP1;PU0,0;PD1000,0;PU;PA0,0;PD";
    for (int i = 0; i < 50000; ++i) plot += "10,20,30,40,";
    return plot + "0,0;PU;SP0;";
}

struct Result {
    int status;
    std::string out;
    std::string err;
};

class QmplotTest : public testing::Test {
  protected:
    void SetUp() override {
        std::string name = (fs::temp_directory_path() / "qmplot-test-XXXXXX").string();
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        folder_ = name;
        unsetenv("SOURCE_DATE_EPOCH");
        Put("a.plt", kPlot);
        Put("pages.plt", kThreePages);
        Put("letter.txt", kText);
        Put("empty.plt", "IN;SP1;PU;PU;PU;PU;");
    }
    void TearDown() override { fs::remove_all(folder_); }

    void Put(const std::string& name, const std::string& bytes) const {
        std::ofstream(folder_ / name, std::ios::binary) << bytes;
    }
    std::string Get(const std::string& name) const {
        std::ifstream file(folder_ / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    // Names in the folder beside those that SetUp and the streams of Run put there.
    std::set<std::string> NewNames() const {
        static const std::set<std::string> kOld = {"a.plt",     "pages.plt", "letter.txt",
                                                   "empty.plt", ".out",      ".err"};
        std::set<std::string> names;
        for (const auto& entry : fs::recursive_directory_iterator(folder_)) {
            const std::string name = entry.path().lexically_relative(folder_).string();
            if (kOld.count(name) == 0) names.insert(name);
        }
        return names;
    }
    // `arguments` as a shell reads them.
    Result Run(const std::string& arguments) const { return RunShell(QM_QMPLOT " " + arguments); }
    Result RunShell(const std::string& line) const {
        const std::string command =
            "cd '" + folder_.string() + "' && { " + line + "; } >.out 2>.err";
        const int status = std::system(command.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, Get(".out"), Get(".err")};
    }

    fs::path folder_;
};

}  // namespace qm::testing_cli
