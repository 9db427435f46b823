// The commands that README.md, CONTRIBUTING.md, docs/ and the help texts show are run, and print
// what stands below them. A command is a line of a code block in which qmplot or scripts/run is
// called; the comment behind two blanks or more is cut off. In a block ```console commands begin
// with "$ ", the other lines are what they print ("..." stands for anything, alone on a line for
// any lines). What else documents call (cmake, scripts/test) is not run. A block has a folder of
// its own with the plots of SetUp, and examples/.
#include <algorithm>
#include <cstdio>
#include <memory>
#include <ostream>
#include <regex>
#include <vector>

#include "tests/cli/qmplot_folder.h"

namespace qm::testing_cli {
namespace {

const fs::path kRoot = QM_SOURCE_DIR;

struct Step {
    std::string command;
    std::string printed;  // both streams; of a console block alone
};

struct Block {
    std::string place;  // "docs/cli.md:103"
    bool isConsole = false;
    std::vector<Step> steps;
};

void PrintTo(const Block& block, std::ostream* stream) { *stream << block.place; }

bool CallsQmplot(const std::string& line) {
    static const std::regex kCall(R"((^|[|;&(] *)(qmplot|scripts/run) )");
    return std::regex_search(line, kCall);
}

std::string WithoutComment(const std::string& line) { return line.substr(0, line.find("  ")); }

// Adds the line of a code block, if it is a command or belongs to one.
void AddLine(const std::string& line, Block& block) {
    if (!block.isConsole) {
        if (CallsQmplot(line)) block.steps.push_back({WithoutComment(line), {}});
    } else if (line.compare(0, 2, "$ ") == 0) {
        block.steps.push_back({WithoutComment(line.substr(2)), {}});
    } else if (!block.steps.empty()) {
        block.steps.back().printed += line + '\n';
    }
}

// Blocks are fenced or indented by four blanks.
std::vector<Block> BlocksOf(const fs::path& document) {
    std::vector<Block> blocks;
    const std::string name = document.lexically_relative(kRoot).generic_string();
    std::ifstream file(document);
    bool fenced = false;
    bool inside = false;
    int number = 0;
    for (std::string line; std::getline(file, line);) {
        ++number;
        const bool fence = line.compare(0, 3, "```") == 0;
        const bool indented = !fenced && line.compare(0, 4, "    ") == 0;
        if (fence) fenced = !fenced;
        if ((fence && fenced) || (indented && !inside)) {
            blocks.push_back({name + ':' + std::to_string(number), line == "```console", {}});
        }
        inside = indented || fenced;
        if (inside && !fence) AddLine(indented ? line.substr(4) : line, blocks.back());
    }
    return blocks;
}

constexpr const char* kCommands[] = {"detect", "info", "convert", "view", "ops", "trace", "replay"};

std::string HelpOf(const std::string& command) {
    const std::unique_ptr<FILE, int (*)(FILE*)> help(
        popen((QM_QMPLOT " " + command + " --help").c_str(), "r"), pclose);
    std::string text;
    char bytes[4096];
    while (const std::size_t count = fread(bytes, 1, sizeof bytes, help.get()))
        text.append(bytes, count);
    return text;
}

std::set<std::string> FirstGroups(const std::string& text, const std::regex& pattern) {
    std::set<std::string> found;
    for (std::sregex_iterator at(text.begin(), text.end(), pattern), end; at != end; ++at)
        found.insert((*at)[1]);
    return found;
}

// They begin with two blanks.
Block ExamplesOf(const std::string& command) {
    Block block = {"qmplot " + command + " --help", false, {}};
    static const std::regex kExample(R"((?:^|\n)  (qmplot [^\n]*))");
    for (const std::string& example : FirstGroups(HelpOf(command), kExample))
        block.steps.push_back({example, {}});
    return block;
}

std::vector<Block> AllBlocks() {
    std::vector<fs::path> documents = {kRoot / "README.md", kRoot / "CONTRIBUTING.md"};
    for (const auto& entry : fs::directory_iterator(kRoot / "docs")) {
        if (entry.path().extension() == ".md") documents.push_back(entry.path());
    }
    std::sort(documents.begin(), documents.end());
    std::vector<Block> blocks;
    for (const fs::path& document : documents) {
        for (Block& block : BlocksOf(document)) {
            if (!block.steps.empty()) blocks.push_back(std::move(block));
        }
    }
    for (const char* command : kCommands) {
        Block block = ExamplesOf(command);
        if (!block.steps.empty()) blocks.push_back(std::move(block));
    }
    return blocks;
}

// Whether `printed` is what `shown` says.
bool IsShown(const std::string& printed, const std::string& shown) {
    static const std::regex kSpecial(R"([.*+?^${}()|\[\]\\])");
    static const std::regex kAnyLines(R"((^|\n)\\\.\\\.\\\.\n)");
    static const std::regex kAnything(R"(\\\.\\\.\\\.)");
    std::string pattern = std::regex_replace(shown, kSpecial, R"(\$&)");
    pattern = std::regex_replace(pattern, kAnyLines, "$1(?:[^\\n]*\\n)*");
    pattern = std::regex_replace(pattern, kAnything, "[^\\n]*");
    return std::regex_match(printed, std::regex(pattern));
}

class DocumentedCommands : public QmplotTest, public testing::WithParamInterface<Block> {
  protected:
    void SetUp() override {
        QmplotTest::SetUp();
        const std::string rtl = "\033*r8s8T\033*t75R\033*r1A\033*b1W\252\033*b1W\125\033*rC";
        for (const char* name : {"plan.plt", "a0.plt", "b.plt", "compressed.plt", "scope.hpgl",
                                 "plot.plt", "plots/plan.plt"}) {
            fs::create_directories((folder_ / name).parent_path());
            Put(name, kThreePages);
        }
        Put("picture.pcl", rtl);
        Put("page.txt", ScriptOf(kRoot / "docs/replay.md"));
        fs::remove(folder_ / "empty.plt");  // *.plt are whole plots
        fs::create_directories(folder_ / "scripts");
        fs::create_symlink(QM_QMPLOT, folder_ / "scripts/run");
        fs::copy(kRoot / "examples", folder_ / "examples");
    }

  private:
    // Its first fenced block.
    static std::string ScriptOf(const fs::path& document) {
        std::ifstream file(document);
        const std::string text{std::istreambuf_iterator<char>(file), {}};
        const std::size_t start = text.find("\n```\n") + 5;
        return text.substr(start, text.find("```", start) - start);
    }
};

TEST_P(DocumentedCommands, Run) {
    const std::string prelude =
        "bash -c 'set -o pipefail; PATH=$(dirname " QM_QMPLOT
        "):$PATH; unset DISPLAY WAYLAND_DISPLAY; "
        "export XDG_CACHE_HOME=$PWD/cache; curl() { cat plan.plt; }; eval \"$0\" 2>&1' ";
    for (const Step& step : GetParam().steps) {
        if (step.command.find("jq ") != std::string::npos &&
            RunShell("command -v jq").status != 0) {
            continue;
        }
        Put(".command", step.command);
        const Result result = RunShell(prelude + "\"$(cat .command)\"");
        if (!GetParam().isConsole) {
            EXPECT_LT(result.status, 2)  // 1: some file is no plot
                << step.command << '\n'
                << result.out << "the files that commands of documents name stand in SetUp";
        } else {
            EXPECT_TRUE(IsShown(result.out, step.printed)) << step.command << "\nprints\n"
                                                           << result.out << "and is shown with\n"
                                                           << step.printed;
        }
    }
}

// What of `names` does not stand in `document` as an option.
std::set<std::string> Missing(const std::set<std::string>& names, const std::string& document) {
    std::set<std::string> missing;
    for (const std::string& name : names) {
        if (!std::regex_search(document, std::regex("[`\\s(,]" + name + "\\b")))
            missing.insert(name);
    }
    return missing;
}

TEST(DocumentedOptions, AreThoseOfTheHelp) {
    static const std::regex kShort(R"(\n +(-\w), --)");
    static const std::regex kLong(R"(\n {2,}(--[a-z-]+))");
    static const std::regex kMention(R"([`\s(,](--[a-z-]+))");
    std::ifstream file(kRoot / "docs/cli.md");
    const std::string document{std::istreambuf_iterator<char>(file), {}};
    std::string help = HelpOf({});
    for (const char* command : kCommands) help += HelpOf(command);
    using Names = std::set<std::string>;
    EXPECT_EQ(Missing(FirstGroups(help, kShort), document), Names()) << "docs/cli.md lacks them";
    EXPECT_EQ(Missing(FirstGroups(help, kLong), document), Names()) << "docs/cli.md lacks them";
    EXPECT_EQ(Missing(FirstGroups(document, kMention), help), Names()) << "the help lacks them";
}

std::string NameOf(const testing::TestParamInfo<Block>& test) {
    return std::regex_replace(test.param.place, std::regex("[^A-Za-z0-9]+"), "_");
}

INSTANTIATE_TEST_SUITE_P(Documents, DocumentedCommands, testing::ValuesIn(AllBlocks()), NameOf);

}  // namespace
}  // namespace qm::testing_cli
