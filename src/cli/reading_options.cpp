#include "cli/reading_options.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <utility>

#include "cli/paper_sizes.h"
#include "common/tool_error.h"
#include "common/units.h"

namespace qm::cli {

namespace {

// Whole sheets have P1 and P2 in their corners; on A4, A3 and their American likes a 7475A keeps
// its margins (7475A programming, "Default P1 and P2").
// A name, or WxH in millimetres.
std::optional<Sheet> SheetNamed(std::string name) {
    for (char& c : name) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
    if (name == "a4") return SheetBetween({603.0, 521.0}, {10603.0, 7721.0});
    if (name == "a3") return SheetBetween({170.0, 602.0}, {15370.0, 10602.0});
    if (name == "letter") return SheetBetween({250.0, 596.0}, {10250.0, 7796.0});
    if (name == "tabloid") return SheetBetween({522.0, 259.0}, {15722.0, 10259.0});
    const auto paper = PaperNamed(name);
    if (!paper) return {};
    return paper->turns ? SheetOf(paper->height, paper->width)
                        : SheetOf(paper->width, paper->height);
}

}  // namespace

OptionGroup ReadingOptions(Reading& reading) {
    Option choice = ChoiceOption(
        "reading", "engine|plotter",
        "engine (if not given): what the document engine makes of the plot, oddities included; "
        "plotter: what a plotter would draw",
        [&reading](const std::string& name) {
            if (name == "plotter") reading = Reading::Plotter(reading.sheet);
        });
    Option sheet = {
        "sheet", 0, "SHEET",
        "With --reading plotter: the sheet when the plot gives no size; a4 if not given, a0 to a3, "
        "letter, tabloid, or millimetres as 297x210",
        [&reading](const std::string& name) {
            const auto found = SheetNamed(name);
            if (!found) {
                throw ToolError(name + " is no sheet; a0 to a4, letter, tabloid or 297x210 are");
            }
            reading.sheet = *found;
        }};
    sheet.needs = "reading";
    return {"Reading", {std::move(choice), std::move(sheet)}};
}

}  // namespace qm::cli
