// The tool as scripts meet it: exit statuses, what stands on which stream, which files exist
// afterwards. Each case runs the program in an empty folder of its own.
#include "tests/cli/qmplot_folder.h"

#include <csignal>

namespace qm::testing_cli {
namespace {

struct Case {
    const char* name;
    const char* arguments;
    int status;
    const char* out;      // standard output, whole; null: not looked at
    const char* message;  // part of standard error; null: nothing may stand there
};

void PrintTo(const Case& row, std::ostream* stream) { *stream << row.arguments; }

// clang-format off
const Case kCases[] = {
    {"Version", "--version", 0, "qmplot 1.0.0\n", nullptr},
    {"Help", "--help", 0, nullptr, nullptr},
    {"CommandHelp", "convert --help", 0, nullptr, nullptr},
    {"NoCommand", "", 2, "", "subcommand is required"},
    {"UnknownCommand", "draw a.plt", 2, "", "draw is not a command; see qmplot --help"},
    {"CommandMeant", "conver a.plt", 2, "", "conver is not a command; did you mean convert?"},
    {"UnknownOption", "ops --fast a.plt", 2, "", "--fast is no option of ops; see qmplot ops --help"},
    {"LettersSwapped", "convert --dip 9 a.plt a.png", 2, "", "did you mean --dpi?"},
    {"BeginningOfAnOption", "convert --no-anti a.plt a.png", 2, "", "did you mean --no-antialias?"},
    {"OptionWithoutItsValue", "convert a.plt a.png --dpi", 2, "", "--dpi wants a value"},
    {"FlagWithAValue", "convert a.plt a.plt --rtl=1", 2, "", "--rtl takes no value"},
    {"SizeTwice", "convert --size 9 --dpi 9 a.plt a.png", 2, "", "--size and --dpi cannot both be given"},
    {"FileWithADash", "detect -dash.plt", 2, "", "if -dash.plt is a file, write -- before it"},
    {"EndingAlone", "convert a.plt out/.svg", 2, "", "out/.svg is an ending without a name before it"},
    {"OptionTwice", "convert --dpi 9 --dpi=9 a.plt a.png", 2, "", "--dpi is given twice"},
    {"NumberWithMore", "convert --dpi 9mm a.plt a.png", 2, "", "'9mm' is no number from 1 to 10000"},
    {"ArgumentTooMany", "ops a.plt pages.plt", 2, "", "'pages.plt' is one argument too many"},
    {"OptionsEnd", "detect -- --help", 2, "", "--help: cannot be read"},
    {"MissingArgument", "trace", 2, "", "qmplot trace --help"},
    {"NumberOutOfRange", "convert -o out -j 0 a.plt", 2, "", "0"},

    {"DetectPlot", "detect a.plt", 0, "a.plt: HPGL/2\n", nullptr},
    {"DetectStandardInput", "detect - <a.plt", 0, "-: HPGL/2\n", nullptr},
    {"DetectPipe", "detect /dev/stdin <a.plt", 0, "/dev/stdin: HPGL/2\n", nullptr},
    {"DetectSeveral", "detect a.plt letter.txt pages.plt", 1,
     "a.plt: HPGL/2\nletter.txt: not a plot file\npages.plt: HPGL/2\n", nullptr},
    {"DetectGoesOn", "detect none.plt letter.txt a.plt", 2,
     "letter.txt: not a plot file\na.plt: HPGL/2\n", "none.plt: cannot be read: No such file"},

    {"DetectReadError", "detect /proc/self/mem", 2, "", "/proc/self/mem: cannot be read: Input/output"},

    {"OpsStandardInput", "ops - <letter.txt", 0, nullptr, nullptr},
    {"OpsMissingFile", "ops none.plt", 2, "", "none.plt: cannot be read: No such file"},
    {"OpsFolder", "ops .", 2, "", "Is a directory"},
    {"OpsDiskFull", "ops a.plt >/dev/full", 2, "", "standard output: cannot be written: No space left"},

    {"ReadingUnknown", "ops --reading printer a.plt", 2, "", "--reading"},
    {"SheetUnknown", "info --reading plotter --sheet 9x a.plt", 2, "", "9x is no sheet"},
    {"SheetOfTheEngine", "convert --sheet a3 a.plt a.svg", 2, "", "--reading"},

    {"TraceNoPlot", "trace letter.txt", 1, "result E_FAIL\n", nullptr},
    {"InfoNoPlot", "info letter.txt", 1, "", "letter.txt: not a plot file"},
    {"InfoNothingDrawn", "info empty.plt", 0, "empty.plt: HPGL/2, 0 pages\n", nullptr},
    {"InfoEmpty", "info /dev/null", 1, "", "/dev/null: not a plot file"},

    {"ConvertNoPlot", "convert letter.txt a.svg", 1, "", "letter.txt: not a plot file"},
    {"ConvertUnknownEnding", "convert a.plt a.bmp", 2, "", "use one of .svg"},
    {"ConvertEndingOfAFolder", "convert a.plt b.svg/c", 2, "", "use one of .svg"},
    {"ConvertPageOfNothing", "convert empty.plt a.svg --page 2", 1, "", "empty.plt: draws nothing"},
    {"ConvertOneName", "convert a.plt", 2, "", "FILE OUT"},
    {"ConvertMissingFolder", "convert a.plt no/a.svg", 2, "", "no/a.svg: cannot be written: No such file"},
    {"ConvertMissingPage", "convert pages.plt a.svg --page 4", 2, "", "pages.plt: has no page 4"},
    {"ConvertDiskFull", "convert a.plt full.svg", 2, "", "No space left"},
    {"ConvertOddDepth", "convert a.plt b.plt --rtl --bits 4", 2, "", "--bits"},
    {"ConvertDepthOfVectors", "convert a.plt b.plt --bits 8", 2, "", "--rtl"},
    {"ConvertPlotDiskFull", "convert a.plt full.plt", 2, "", "No space left"},
    {"ConvertToWithoutFolder", "convert --to png a.plt a.svg", 2, "", "--to"},
};
// clang-format on

class QmplotCases : public QmplotTest, public testing::WithParamInterface<Case> {};

TEST_P(QmplotCases, EndsAsTold) {
    const Case& row = GetParam();
    const std::set<std::string> full = {"full.svg", "full.plt"};
    for (const std::string& name : full) fs::create_symlink("/dev/full", folder_ / name);
    const Result result = Run(row.arguments);
    EXPECT_EQ(result.status, row.status) << result.err;
    if (row.out != nullptr) {
        EXPECT_EQ(result.out, row.out);
    }
    if (row.message == nullptr) {
        EXPECT_EQ(result.err, "");
    } else {
        EXPECT_NE(result.err.find(row.message), std::string::npos) << result.err;
    }
    EXPECT_EQ(NewNames(), full);
}

INSTANTIATE_TEST_SUITE_P(Qmplot, QmplotCases, testing::ValuesIn(kCases),
                         [](const auto& test) { return std::string(test.param.name); });

struct Conversion {
    const char* name;
    const char* arguments;
    std::set<std::string> files;
};

void PrintTo(const Conversion& row, std::ostream* stream) { *stream << row.arguments; }

// clang-format off
const Conversion kConversions[] = {
    {"OnePage", "convert a.plt a.svg", {"a.svg"}},
    {"FromStandardInput", "convert - a.svg <a.plt", {"a.svg"}},
    {"PageEach", "convert pages.plt a.SVG", {"a-1.SVG", "a-2.SVG", "a-3.SVG"}},
    {"PageEachInADottedFolder", "convert -o v1.2 --to svg pages.plt",
     {"v1.2", "v1.2/pages-1.svg", "v1.2/pages-2.svg", "v1.2/pages-3.svg"}},
    {"OnlyOnePage", "convert pages.plt b.png --page 2 --dpi 50", {"b.png"}},
    {"PagesInOneFile", "convert pages.plt a.pdf", {"a.pdf"}},
    {"PagesForTheBrowser", "convert pages.plt a.html", {"a.html"}},
    {"Plot", "convert pages.plt b.plt", {"b.plt"}},
    {"RasterPlot", "convert pages.plt b.plt --rtl --dpi 50 --bits 8", {"b.plt"}},
    {"IntoFolder", "convert -o out -j 2 --to svg a.plt pages.plt",
     {"out", "out/a.svg", "out/pages-1.svg", "out/pages-2.svg", "out/pages-3.svg"}},
};
// clang-format on

class QmplotConversions : public QmplotTest, public testing::WithParamInterface<Conversion> {};

TEST_P(QmplotConversions, WriteTheseFiles) {
    const Result result = Run(GetParam().arguments);
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(NewNames(), GetParam().files);
    for (const std::string& name : GetParam().files) {
        if (fs::is_directory(folder_ / name)) continue;
        EXPECT_GT(Get(name).size(), 100U) << name;
    }
}

INSTANTIATE_TEST_SUITE_P(Qmplot, QmplotConversions, testing::ValuesIn(kConversions),
                         [](const auto& test) { return std::string(test.param.name); });

// What is drawn 300 dots an inch becomes a picture of that many, and its plot a plot again.
TEST_F(QmplotTest, SavedPlotsOpenAgain) {
    EXPECT_EQ(Run("convert a.plt v.plt").status, 0);
    EXPECT_EQ(Run("ops v.plt | grep -c ^Line").out, "4\n");
    EXPECT_EQ(Run("convert a.plt r.plt --rtl --bits 1").status, 0);
    const Result info = Run("info r.plt");
    EXPECT_NE(info.out.find("1 bits a dot"), std::string::npos) << info.out;
    const Result again = Run("convert r.plt w.plt");
    EXPECT_EQ(again.status, 1);
    EXPECT_NE(again.err.find("--rtl keeps them"), std::string::npos) << again.err;
}

// Pictures keep their dots; drawn anew they would grow.
TEST_F(QmplotTest, ExamplesSettleAsPlotsAndAsPictures) {
    int examples = 0;
    for (const auto& entry : fs::directory_iterator(QM_EXAMPLES)) {
        if (entry.path().extension() != ".plt") continue;
        ++examples;
        for (const std::string options :
             {" -q ", " -q --rtl --dpi 40 ", " -q --rtl --dpi 60 --bits 1 "}) {
            const std::string convert = QM_QMPLOT " convert --force-overwrite" + options;
            const Result result = RunShell(convert + entry.path().string() + " 1.plt && " +
                                           convert + "1.plt 2.plt && cmp 1.plt 2.plt");
            EXPECT_EQ(result.status, 0) << entry.path() << options << result.out << result.err;
        }
    }
    EXPECT_GT(examples, 5);
}

TEST_F(QmplotTest, OnePageIsThePageAskedFor) {
    EXPECT_EQ(Run("convert pages.plt a.svg").status, 0);
    EXPECT_EQ(Run("convert pages.plt b.svg --page 2").status, 0);
    EXPECT_EQ(Get("b.svg"), Get("a-2.svg"));
}

// Page 1 of "pages" and the only page of "pages-1" want the same name.
TEST_F(QmplotTest, PagesDoNotReplaceThoseOfAnotherFile) {
    Put("pages-1.plt", kPlot);
    const Result result = Run("convert -o out --to .svg pages.plt pages-1.plt");
    EXPECT_EQ(result.status, 2);
    EXPECT_NE(result.err.find("pages-1.plt: would be written to out/pages-1.svg, as pages.plt"),
              std::string::npos)
        << result.err;
}

TEST_F(QmplotTest, AFileStaysAsItWasWhenTheConversionFails) {
    Put("old.svg", "old");
    fs::create_symlink("old.svg", folder_ / "link.svg");
    EXPECT_EQ(Run("convert letter.txt old.svg").status, 1);
    EXPECT_EQ(Get("old.svg"), "old");
    EXPECT_EQ(Run("convert a.plt link.svg").status, 0);
    EXPECT_NE(Get("old.svg"), "old");
    EXPECT_TRUE(fs::is_symlink(folder_ / "link.svg"));
    EXPECT_EQ(NewNames(), (std::set<std::string>{"link.svg", "old.svg"}));
}

// A shell tells it so when the signal has ended the program. The pipe's writer stays open, so the
// program waits for input when the signal comes.
TEST_F(QmplotTest, InterruptionLeavesNothingBehind) {
    const Result result =
        RunShell("sleep 2 | " QM_QMPLOT " convert - a.svg & sleep 0.3; kill -INT $!; wait $!");
    EXPECT_EQ(result.status, 128 + SIGINT);
    EXPECT_NE(result.err.find("interrupted"), std::string::npos) << result.err;
    EXPECT_EQ(NewNames(), std::set<std::string>{});
}

TEST_F(QmplotTest, AReaderMayCloseItsPipe) {
    Put("long.plt", LongPlot());
    const Result result = Run("ops long.plt | head -n 1");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out, "SetLineWidth 0\n");
}

// 16 mm on A4, 40 mm on a sheet of 100 x 50 mm: every command passes the reading on.
TEST_F(QmplotTest, EveryCommandTakesTheReading) {
    Put("sc.plt", "IN;SP1;PW0;SC0,10000,0,7200;PU0,0;PD0,4000;PU;SP0;");
    const std::string reading = " --reading plotter ";
    const auto has = [](const std::string& text, const std::string& part) {
        return text.find(part) != std::string::npos;
    };
    EXPECT_TRUE(has(Run("ops sc.plt").out, "Line 0 0 0 4000"));
    EXPECT_TRUE(has(Run("ops" + reading + "sc.plt").out, "Line 603 521 603 4521"));
    EXPECT_TRUE(has(Run("trace" + reading + "sc.plt").out, "603 521 603 4521"));
    EXPECT_TRUE(has(Run("info" + reading + "sc.plt").out, "lower left at 15.1, 13.0"));
    EXPECT_TRUE(has(Run("info" + reading + "--sheet 50x72 sc.plt").out, "0.0 x 27.8 mm"));
    Run("convert" + reading + "sc.plt sc.svg");
    Run("convert sc.plt engine.svg");
    EXPECT_NE(Get("sc.svg"), Get("engine.svg"));
    Run("convert -o many --to plt" + reading + "sc.plt");
    EXPECT_TRUE(has(Get("many/sc.plt"), "603,521")) << Get("many/sc.plt");
}

TEST_F(QmplotTest, TraceTellsProgressAndObeysAbort) {
    Put("long.plt", LongPlot());
    const Result result =
        Run("trace --progress --abort-at 50 long.plt | grep -e progress -e result");
    EXPECT_EQ(result.out.find("progress 1\n"), 0U) << result.out;
    EXPECT_NE(result.out.find("progress 50\nresult E_ABORT\n"), std::string::npos) << result.out;
    EXPECT_EQ(Run("trace --abort-at 50 long.plt >/dev/null").status, 1);
    EXPECT_EQ(Run("trace --abort-at 101 long.plt >/dev/null").status, 0);
}

// Whole plots, as `qmplot ops`, `qmplot trace` and `qmplot info --texts` print them.
TEST_F(QmplotTest, PrintsGoldenLines) {
    const fs::path golden = QM_GOLDEN;
    for (const auto& file : fs::directory_iterator(golden)) {
        const std::string command = file.path().extension().string().substr(1);
        if (command == "plt") continue;
        const std::string plot = file.path().stem().string() + ".plt";
        fs::copy_file(golden / plot, folder_ / plot, fs::copy_options::skip_existing);
        const Result result = Run(command + (command == "info" ? " --texts " : " ") + plot);
        EXPECT_EQ(result.out, Get(file.path().string())) << file;
        EXPECT_EQ(result.status, 0);
    }
}

// What the examples and the golden plots become in the formats of plain numbers, as checksums, a
// line a file. When one changes on purpose: look at the file, then take the new line.
TEST_F(QmplotTest, WritesWholePlotsAsBefore) {
    RunShell("cp " QM_EXAMPLES "/*.plt " QM_GOLDEN "/*.plt .");
    for (const std::string options :
         {"svg --to svg", "plotter --to svg --reading plotter", "dxf --to dxf", "plt --to plt",
          "true --to rtl --dpi 45", "grey --to rtl --dpi 30 --bits 8 --no-antialias",
          "bits --to rtl --dpi 30 --bits 1"}) {
        Run("convert -q *.plt -o " + options);
    }
    Run("info --texts *.plt >info; " QM_QMPLOT " info --json *.plt >json");
    RunShell("for plot in *.plt; do " QM_QMPLOT " trace $plot; done >trace");
    // zlib packs pictures as it likes.
    const Result sums = RunShell("sed -i 's/base64,[^\"]*//' */*.svg; cksum */* info json trace");
    EXPECT_EQ(sums.out, Get(QM_GOLDEN "/../outputs.sums")) << sums.err;
}

}  // namespace
}  // namespace qm::testing_cli
