// Inputs as tokens, and how tokens are mutated: the structure that libFuzzer's own mutations of
// bytes break more often than they use.
//
// A plot is commands with their numbers, labels, runs of an encoded polyline, escapes with their
// counted data and, between them, other bytes; a replay script is lines. Tokens joined again are
// the input, byte by byte. Test: tests/fuzz/corpus_test.cpp.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/targets.h"

namespace qm::fuzz {

// Small and the same everywhere: a find is repeated from its seed.
using Random = std::linear_congruential_engine<std::uint32_t, 48271, 0, 2147483647>;

struct Token {
    std::string text;  // of an escape with counted data, up to its letter, with the count before it
    std::string data;  // the counted data
    bool counted = false;
};
using Tokens = std::vector<Token>;

Tokens SplitPlot(std::string_view plot);
Tokens SplitScript(std::string_view script);
std::string Join(const Tokens& tokens);

// A token as its language knows it: any command, escape or call, with values that mean something
// and values that do not.
Token MakeToken(Language language, Random& random);

// `input` with one to four tokens changed, copied, moved, left out or put in; not longer than
// `maxBytes`. `other` lends runs of tokens; it may be empty.
std::string Mutate(Language language, std::string_view input, std::string_view other,
                   std::size_t maxBytes, Random& random);

// Words that stand in no table: job control, framing, the start of a raster picture.
struct Phrases {
    const std::string_view* first;
    std::size_t count;
    const std::string_view* begin() const { return first; }
    const std::string_view* end() const { return first + count; }
};
Phrases PhrasesOf(Language language);

}  // namespace qm::fuzz
