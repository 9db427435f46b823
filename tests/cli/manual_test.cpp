// Manual pages and completions: what qmplot --manuals writes, as man and the shells take it.
#include <regex>
#include <vector>

#include "tests/cli/qmplot_folder.h"

namespace qm::testing_cli {
namespace {

std::vector<std::string> Matches(const std::string& text, const char* pattern) {
    const std::regex expression(pattern);
    std::vector<std::string> found;
    for (std::sregex_iterator at(text.begin(), text.end(), expression), end; at != end; ++at)
        found.push_back((*at)[1]);
    return found;
}

class Manuals : public QmplotTest {
  protected:
    void SetUp() override {
        QmplotTest::SetUp();
        ASSERT_EQ(Run("--manuals share").status, 0);
    }
    bool HasShell(const std::string& name) const {
        return RunShell("command -v " + name).status == 0;
    }
};

TEST_F(Manuals, AllTellTheOptionsOfHelp) {
    const auto commands = Matches(Run("--help").out, "\n  ([a-z]+) +[A-Z]");
    ASSERT_GE(commands.size(), 7U);
    const std::string fish = Get("share/fish/vendor_completions.d/qmplot.fish");
    const std::string bash = Get("share/bash-completion/completions/qmplot");
    const std::string zsh = Get("share/zsh/site-functions/_qmplot");
    for (const std::string& command : commands) {
        const std::string page = Get("share/man/man1/qmplot-" + command + ".1");
        EXPECT_NE(page.find(".SH SYNOPSIS\n\\fBqmplot " + command), std::string::npos) << page;
        // From a command's case to the next one's.
        const auto part = [&command](const std::string& script) {
            const std::size_t from = script.find("\n    " + command + ")");
            return script.substr(from,
                                 script.find(" ;;\n    ", script.find("--help", from)) - from);
        };
        for (const std::string& option :
             Matches(Run(command + " --help").out, "\n  (?:-.,|   ) --([-a-z]+)")) {
            const std::string escaped = std::regex_replace(option, std::regex("-"), "\\-");
            EXPECT_NE(page.find("\\fB\\-\\-" + escaped + "\\fR"), std::string::npos) << option;
            const std::regex word("[ '(]--" + option + "[ ')]");
            EXPECT_TRUE(std::regex_search(part(bash), word)) << command << option;
            EXPECT_NE(part(zsh).find("--" + option), std::string::npos) << command << option;
            const std::regex line("seen_subcommand_from " + command + "'[^\n]* -l " + option + ' ');
            EXPECT_TRUE(std::regex_search(fish, line)) << command << option;
        }
        EXPECT_EQ(page.find("\\-\\-child"), std::string::npos) << "hidden options stay hidden";
    }
}

TEST_F(Manuals, PagesHaveNoControlLinesByChance) {
    for (const std::string page : {"qmplot", "qmplot-convert", "qmplot-replay"}) {
        const std::string text = Get("share/man/man1/" + page + ".1");
        for (const std::string& request : Matches(text, "\n[.']([^ \n]*)"))
            EXPECT_TRUE(std::regex_match(request, std::regex("TH|SH|SS|TP|PP|BR|br"))) << request;
        EXPECT_EQ(text.find("\n'"), std::string::npos) << page;
    }
}

struct Completion {
    const char* words;    // the last one is being typed
    const char* offered;  // with blanks between; "files": the shell's own names
};

void PrintTo(const Completion& row, std::ostream* stream) { *stream << row.words; }

const Completion kCompletions[] = {
    {"qmplot in", "info"},
    {"qmplot --ver", "--version"},
    {"qmplot convert --force-", "--force-overwrite"},
    {"qmplot convert --to p", "pdf plt png"},
    {"qmplot convert --bits ''", "1 24 8"},
    {"qmplot trace --abort-at ''", ""},
    {"qmplot ops --text", ""},
    {"qmplot info --re", "--reading"},
    {"qmplot info let", "files"},
    {"qmplot convert -o let", "files"},
};

class Completions : public Manuals, public testing::WithParamInterface<Completion> {};

// -o default: names of files where nothing is offered.
TEST_P(Completions, OfBash) {
    const std::string script =
        "bash -c '. share/bash-completion/completions/qmplot; option=; "
        "compopt() { [ \"$*\" = \"+o default\" ] && option=nofiles; }; "
        "COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1)); _qmplot; "
        "[ -n \"$option\" ] && printf \"%s\\n\" \"${COMPREPLY[@]}\" | sort | paste -sd \" \" || "
        "echo files' "
        "bash ";
    EXPECT_EQ(RunShell(script + GetParam().words).out, GetParam().offered + std::string("\n"));
}

TEST_P(Completions, OfFish) {
    if (!HasShell("fish")) GTEST_SKIP() << "there is no fish";
    const std::string line = std::regex_replace(GetParam().words, std::regex("''"), "");
    const std::string script =
        "HOME=$PWD XDG_CONFIG_HOME=$PWD fish -c 'source "
        "share/fish/vendor_completions.d/qmplot.fish; "
        "complete -C \"" +
        line + "\"' | cut -f 1 | sort | paste -sd ' ' | sed s/letter.txt/files/";
    EXPECT_EQ(RunShell(script).out, GetParam().offered + std::string("\n"));
}

INSTANTIATE_TEST_SUITE_P(Qmplot, Completions, testing::ValuesIn(kCompletions));

TEST_F(Manuals, ScriptsAreWellFormed) {
    const std::pair<const char*, const char*> rows[] = {
        {"bash", "bash-completion/completions/qmplot"},
        {"zsh", "zsh/site-functions/_qmplot"},
        {"fish", "fish/vendor_completions.d/qmplot.fish"}};
    for (const auto& [shell, file] : rows) {
        if (!HasShell(shell)) continue;
        const Result result = RunShell(std::string(shell) + " -n share/" + file);
        EXPECT_EQ(result.status, 0) << shell << result.err;
    }
}

TEST_F(Manuals, FolderIsMade) {
    EXPECT_EQ(Run("--manuals").status, 2);
    EXPECT_EQ(Run("--manuals letter.txt").status, 2);
    EXPECT_EQ(Run("--manuals deep/er").status, 0);
}

}  // namespace
}  // namespace qm::testing_cli
