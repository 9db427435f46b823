// See colour_names.h.
#include "cli/colour_names.h"

#include <algorithm>
#include <string_view>

#include "common/colour.h"

namespace qm::cli {

namespace {

struct NamedColour {
    std::string_view name;
    Colour colour;
};

// CSS Color Module Level 4, "Named Colors".
// clang-format off
constexpr NamedColour kColours[] = {
    {"black", {0, 0, 0}},       {"blue", {0, 0, 255}},     {"brown", {165, 42, 42}},
    {"cyan", {0, 255, 255}},    {"gray", {128, 128, 128}}, {"green", {0, 128, 0}},
    {"grey", {128, 128, 128}},  {"lime", {0, 255, 0}},     {"magenta", {255, 0, 255}},
    {"maroon", {128, 0, 0}},    {"navy", {0, 0, 128}},     {"olive", {128, 128, 0}},
    {"orange", {255, 165, 0}},  {"pink", {255, 192, 203}}, {"purple", {128, 0, 128}},
    {"red", {255, 0, 0}},       {"silver", {192, 192, 192}}, {"teal", {0, 128, 128}},
    {"white", {255, 255, 255}}, {"yellow", {255, 255, 0}}};
// clang-format on

int DigitOf(char c) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    return static_cast<int>(kDigits.find(c));
}

}  // namespace

std::optional<std::uint32_t> ColourNamed(std::string name) {
    for (char& c : name) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
    for (const NamedColour& known : kColours) {
        if (known.name == name) return known.colour.ToBgr();
    }
    if ((name.size() != 4 && name.size() != 7) || name[0] != '#') return std::nullopt;
    if (name.find_first_not_of("0123456789abcdef", 1) != std::string::npos) return std::nullopt;
    const std::size_t digits = (name.size() - 1) / 3;
    std::uint8_t parts[3] = {};
    for (std::size_t i = 0; i < 3; ++i) {
        const int high = DigitOf(name[1 + i * digits]);
        const int low = DigitOf(name[i * digits + digits]);
        parts[i] = static_cast<std::uint8_t>(high * 16 + low);
    }
    return Colour{parts[0], parts[1], parts[2]}.ToBgr();
}

std::vector<std::string> ColourNames() {
    std::vector<std::string> names;
    for (const NamedColour& known : kColours) names.emplace_back(known.name);
    return names;
}

}  // namespace qm::cli
