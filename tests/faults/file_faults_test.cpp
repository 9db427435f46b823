// qmplot on a system that refuses: every call on a file fails in turn (fuzz/interpose.cpp), with a
// full disk, an interruption, a short count. The output is whole or what it was before, nothing is
// left beside it, the exit status tells which.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <zip.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

namespace {

namespace fs = std::filesystem;

using Files = std::map<std::string, std::string>;  // bytes by name

constexpr const char* kPlot =
    "IN;SP1;PU0,0;PD1000,0,1000,500;PU;PA0,0;LBa\3PG;PD300,300;PU;SP0;PG;";

struct Row {
    const char* name;
    const char* arguments;
    Files before;  // besides a.plt and plan.zip
};
void PrintTo(const Row& row, std::ostream* out) { *out << row.arguments; }

const Row kRows[] = {
    {"Svg", "convert a.plt b.svg", {{"b-1.svg", "old"}}},
    {"PngOverOldFile", "convert --page 1 --dpi 20 a.plt b.png", {{"b.png", "old"}}},
    {"Pdf", "convert a.plt b.pdf", {{"b.pdf", "old"}}},
    {"Html", "convert a.plt b.html", {{"b.html", "old"}}},
    {"Plot", "convert --force-overwrite a.plt b.plt", {{"b.plt", "old"}}},
    {"Rtl", "convert --force-overwrite --rtl --dpi 20 --page 1 a.plt b.plt", {{"b.plt", "old"}}},
    {"StandardInput", "convert --page 1 - b.svg <a.plt", {{"b.svg", "old"}}},
    {"StandardOutput", "ops a.plt >ops.txt", {}},
    {"Archive", "convert --page 1 plan.zip b.svg", {{"b.svg", "old"}}},
    {"Many", "convert -o out --to svg --page 1 a.plt plan.zip", {}},
};

class FileFaults : public testing::TestWithParam<Row> {
  protected:
    void SetUp() override {
        std::string name = (fs::temp_directory_path() / "qmplot-faults-XXXXXX").string();
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        folder_ = name;
        zip_t* zip = zip_open((folder_ / "plan.zip").c_str(), ZIP_CREATE, nullptr);
        const std::size_t size = std::char_traits<char>::length(kPlot);
        zip_file_add(zip, "plan.prn", zip_source_buffer(zip, kPlot, size, 0), 0);
        ASSERT_EQ(zip_close(zip), 0);
    }
    void TearDown() override { fs::remove_all(folder_); }

    // An empty folder with the inputs, and one for temporary files.
    void Prepare() const {
        for (const char* name : {"work", "tmp"}) {
            fs::remove_all(folder_ / name);
            fs::create_directory(folder_ / name);
        }
        fs::copy_file(folder_ / "plan.zip", folder_ / "work/plan.zip");
        Files files = GetParam().before;
        files["a.plt"] = kPlot;
        for (const auto& [name, bytes] : files) std::ofstream(folder_ / "work" / name) << bytes;
    }
    int Run(const std::string& fault) const {
        const std::string place = folder_.string();
        const std::string command =
            "cd " + place +
            "/work && LD_PRELOAD=" QM_INTERPOSE " ASAN_OPTIONS=verify_asan_link_order=0 TMPDIR=" +
            place + "/tmp QM_FAULT_LOG=" + place + "/log QM_FAULT='" + fault + "' " QM_QMPLOT " " +
            GetParam().arguments + " 2>" + place + "/err";
        const int status = std::system(command.c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128;
    }
    std::string Read(const fs::path& path) const {
        std::ifstream file(folder_ / path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    Files Outcome() const {
        Files files;
        for (const auto& entry : fs::recursive_directory_iterator(folder_ / "work")) {
            if (entry.is_directory()) continue;
            files[entry.path().lexically_relative(folder_ / "work").string()] = Read(entry.path());
        }
        return files;
    }
    // Checks what a run with one fault leaves.
    void Check(int status, const Files& before, const Files& whole) const {
        ASSERT_LE(status, 2) << "no status of the tool's own";
        const Files files = Outcome();
        if (status == 0) {
            EXPECT_TRUE(files == whole) << "a success without the whole output";
        } else {
            EXPECT_NE(Read("err"), "");
        }
        for (const auto& [name, bytes] : files) {
            ASSERT_TRUE(whole.count(name) != 0) << name << " is left";
            const bool old = before.count(name) != 0 && before.at(name) == bytes;
            // What the shell opened is not the tool's to keep.
            EXPECT_TRUE(old || bytes == whole.at(name) || name == "ops.txt")
                << name << " is broken";
        }
        for (const auto& [name, bytes] : before) EXPECT_EQ(files.count(name), 1U) << name;
    }

    fs::path folder_;
};

TEST_P(FileFaults, EveryCallInTurn) {
    Prepare();
    const Files before = Outcome();
    ASSERT_EQ(Run("none 0 0"), 0) << Read("err");
    const Files whole = Outcome();
    ASSERT_TRUE(whole != before);
    std::ifstream log(folder_ / "log");
    std::map<std::string, int> calls;
    for (std::string name; log >> name;) log >> calls[name];
    ASSERT_GT(calls["open"], 0);
    ASSERT_GT(calls["read"], 0);
    ASSERT_GT(calls["write"], 0);
    int failed = 0;
    int faults = 0;
    for (const auto& [function, count] : calls) {
        for (int call = 0; call < count; ++call) {
            const bool transfers = function == "read" || function == "write";
            for (const int error : {ENOSPC, EINTR, 0}) {
                if (error != ENOSPC && !transfers) continue;
                const std::string fault =
                    function + ' ' + std::to_string(call) + ' ' + std::to_string(error);
                SCOPED_TRACE(fault);
                Prepare();
                const int status = Run(fault);
                Check(status, before, whole);
                // What the system does not let go stays.
                EXPECT_TRUE(function == "unlink" || fs::is_empty(folder_ / "tmp"))
                    << "a temporary file is left";
                // Interruptions and short counts are no failures.
                if (error != ENOSPC) {
                    EXPECT_EQ(status, 0);
                } else if (function == "write") {
                    EXPECT_NE(status, 0);
                }
                failed += status == 0 ? 0 : 1;
                ++faults;
            }
        }
    }
    RecordProperty("faults", faults);
    EXPECT_GT(failed, 2);
}

INSTANTIATE_TEST_SUITE_P(Faults, FileFaults, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
