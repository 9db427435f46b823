// Every input of fuzz/corpus/TARGET/ through its target, and the tokens that inputs are mutated by.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "fuzz/targets.h"
#include "fuzz/tokens.h"

namespace qm::fuzz {
namespace {

namespace fs = std::filesystem;

std::string ReadAll(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class Corpus : public testing::TestWithParam<Target> {};

// A crash or a sanitizer's report is the failure.
TEST_P(Corpus, IsRead) {
    const fs::path folder = fs::path(QM_CORPUS) / GetParam().name;
    GetParam().run({});
    if (!fs::exists(folder)) return;
    for (const auto& entry : fs::directory_iterator(folder)) {
        SCOPED_TRACE(entry.path().filename().string());
        GetParam().run(ReadAll(entry.path()));
    }
}

INSTANTIATE_TEST_SUITE_P(Fuzz, Corpus, testing::ValuesIn(kTargets),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(FuzzCorpus, FoldersAreNamedForTargets) {
    for (const auto& entry : fs::directory_iterator(QM_CORPUS)) {
        const std::string name = entry.path().filename().string();
        EXPECT_EQ(FindTarget(name).name, name);
    }
}

TEST(FuzzTokens, JoinedTheyAreTheInput) {
    std::size_t counted = 0;
    for (const auto& entry : fs::directory_iterator(QM_EXAMPLES)) {
        if (!entry.is_regular_file()) continue;
        const std::string bytes = ReadAll(entry.path());
        EXPECT_EQ(Join(SplitScript(bytes)), bytes);
        const Tokens tokens = SplitPlot(bytes);
        EXPECT_EQ(Join(tokens), bytes) << entry.path();
        for (const Token& token : tokens) counted += token.data.empty() ? 0U : 1U;
    }
    EXPECT_GT(counted, 100U);
}

TEST(FuzzTokens, WhereAPlotIsCut) {
    std::string cut;
    for (const Token& token :
         SplitPlot("IN;sp1PD1,-2 ;LBa;b\3PE7?;\x1b%0A\x1b*b2m3WA;\x1bX\x1b*r1A\x1b")) {
        cut += token.text + (token.counted ? "=" + token.data : "") + '|';
    }
    EXPECT_EQ(cut, "IN;|sp1|PD1,-2 ;|LBa;b\3|PE7?;|\x1b%0A|\x1b*b2m3W=A;\x1b|X|\x1b*r1A|\x1b|");
}

TEST(FuzzTokens, AMutationIsOfItsSeedAndFits) {
    std::string input;
    for (unsigned seed = 1; seed < 2000; ++seed) {
        const Language language = seed % 2 == 0 ? Language::kPlot : Language::kScript;
        Random first(seed);
        Random second(seed);
        const std::string mutated = Mutate(language, input, "PD1,1;SP2;", 300, first);
        EXPECT_EQ(mutated, Mutate(language, input, "PD1,1;SP2;", 300, second));
        ASSERT_LE(mutated.size(), 300U);
        input = mutated;
    }
    EXPECT_NE(input, "");
}

}  // namespace
}  // namespace qm::fuzz
