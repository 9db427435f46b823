// See paper_sizes.h.
#include "cli/paper_sizes.h"

#include <locale>
#include <sstream>
#include <string_view>

namespace qm::cli {

namespace {

struct NamedPaper {
    std::string_view name;
    double width;  // millimetres
    double height;
};

// ISO 216 and ANSI/ASME Y14.1.
constexpr NamedPaper kPapers[] = {
    {"a0", 841.0, 1189.0},    {"a1", 594.0, 841.0},    {"a2", 420.0, 594.0},
    {"a3", 297.0, 420.0},     {"a4", 210.0, 297.0},    {"a5", 148.0, 210.0},
    {"letter", 215.9, 279.4}, {"legal", 215.9, 355.6}, {"tabloid", 279.4, 431.8}};

bool IsSide(double millimetres) { return millimetres >= 1.0 && millimetres <= 100000.0; }

}  // namespace

std::optional<Paper> PaperNamed(std::string name) {
    for (char& c : name) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
    for (const NamedPaper& paper : kPapers) {
        if (paper.name == name) return Paper{paper.width, paper.height, true, false};
    }
    std::istringstream text(name);
    text.imbue(std::locale::classic());
    Paper paper;
    char by = '\0';
    if (!(text >> paper.width >> by >> paper.height) || by != 'x' || !(text >> std::ws).eof()) {
        return std::nullopt;
    }
    if (!IsSide(paper.width) || !IsSide(paper.height)) return std::nullopt;
    return paper;
}

std::vector<std::string> PaperNames() {
    std::vector<std::string> names;
    for (const NamedPaper& paper : kPapers) names.emplace_back(paper.name);
    return names;
}

}  // namespace qm::cli
