// Mutate: see tokens.h.
#include <algorithm>
#include <cctype>

#include "fuzz/tokens.h"

namespace qm::fuzz {

namespace {

std::size_t Below(Random& random, std::size_t bound) { return bound == 0 ? 0 : random() % bound; }

bool IsNumeric(char c) { return (c >= '0' && c <= '9') || c == '-' || c == '.'; }

std::ptrdiff_t At(std::size_t index) { return static_cast<std::ptrdiff_t>(index); }

// One of the token's numbers becomes one of a made token.
void ChangeNumber(Token& token, Language language, Random& random) {
    const auto numbers = [](const std::string& text) {
        std::vector<std::pair<std::size_t, std::size_t>> found;  // from, count
        for (std::size_t i = 0; i < text.size();) {
            const std::size_t from = i;
            while (i < text.size() && IsNumeric(text[i])) ++i;
            if (i > from) found.emplace_back(from, i - from);
            if (i == from) ++i;
        }
        return found;
    };
    const auto own = numbers(token.text);
    const std::string made = MakeToken(language, random).text;
    const auto others = numbers(made);
    if (own.empty() || others.empty()) return;
    const auto target = own[Below(random, own.size())];
    const auto source = others[Below(random, others.size())];
    token.text.replace(target.first, target.second, made, source.first, source.second);
}

void ChangeByte(std::string& text, Random& random) {
    if (text.empty()) return;
    char& byte = text[Below(random, text.size())];
    byte = static_cast<char>(static_cast<unsigned char>(random() % 256));
}

// The count in front of an escape's letter says again how much data there are.
void Recount(Token& token) {
    std::size_t from = token.text.size() - 1;
    while (from > 0 && IsNumeric(token.text[from - 1])) --from;
    token.text.replace(from, token.text.size() - 1 - from, std::to_string(token.data.size()));
}

void ChangeData(Token& token, Random& random) {
    std::string& data = token.data;
    const std::size_t from = Below(random, data.size());
    const std::size_t count = Below(random, data.size() - from);
    if (random() % 2 == 0) {
        data.insert(from, data.substr(from, count));
    } else {
        data.erase(from, count);
    }
    if (random() % 8 != 0) Recount(token);
}

void ChangeToken(Token& token, Language language, Random& random) {
    switch (random() % 4) {
        case 0:
            return ChangeByte(token.counted ? token.data : token.text, random);
        case 1:
            if (token.counted) return ChangeData(token, random);
            [[fallthrough]];
        default:
            return ChangeNumber(token, language, random);
    }
}

// A run of at most 16 tokens.
Tokens Run(const Tokens& tokens, Random& random) {
    const std::size_t from = Below(random, tokens.size());
    const std::size_t count = std::min<std::size_t>(1 + random() % 16, tokens.size() - from);
    return {tokens.begin() + At(from), tokens.begin() + At(from + count)};
}

void Edit(Tokens& tokens, const Tokens& other, Language language, Random& random) {
    const std::size_t place = Below(random, tokens.size() + 1);
    const auto insert = [&](const Tokens& run) {
        tokens.insert(tokens.begin() + At(place), run.begin(), run.end());
    };
    if (tokens.empty() || random() % 4 == 0) return insert({MakeToken(language, random)});
    switch (random() % 6) {
        case 0: {
            const std::size_t from = Below(random, tokens.size());
            const std::size_t count = std::min<std::size_t>(1 + random() % 4, tokens.size() - from);
            tokens.erase(tokens.begin() + At(from), tokens.begin() + At(from + count));
            return;
        }
        case 1:
            return insert(Run(tokens, random));
        case 2:
            return std::swap(tokens[Below(random, tokens.size())],
                             tokens[Below(random, tokens.size())]);
        case 3:
            if (!other.empty()) return insert(Run(other, random));
            [[fallthrough]];
        default:
            return ChangeToken(tokens[Below(random, tokens.size())], language, random);
    }
}

}  // namespace

std::string Mutate(Language language, std::string_view input, std::string_view other,
                   std::size_t maxBytes, Random& random) {
    const auto split = language == Language::kScript ? SplitScript : SplitPlot;
    Tokens tokens = split(input);
    const Tokens lent = split(other);
    for (std::size_t edits = 1 + random() % 4; edits > 0; --edits) {
        Edit(tokens, lent, language, random);
    }
    std::string mutated = Join(tokens);
    if (mutated.size() > maxBytes) mutated.resize(maxBytes);
    return mutated;
}

}  // namespace qm::fuzz
