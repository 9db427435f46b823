// See raster_mode.h. Reads over raster data for the time being: escape groups are parsed, counted
// data is skipped.
#include "raster/raster_mode.h"

#include "interpreter/hpgl_read.h"

namespace qm {

namespace {

// A group's value-letter pairs up to the upper-case letter; a W is followed by counted data.
// Returns the letter that ended the group.
std::uint8_t ReadGroup(InputReader& input) {
    std::uint8_t letter = 0;
    do {
        std::int32_t value = 0;
        bool hadSign = false;
        letter = GetSignedNumber(input, value, hadSign);
        const std::uint8_t upper = FoldToUpper(letter);
        if ((upper == 'W' || upper == 'V') && value > 0) {
            input.SkipRaw(static_cast<std::size_t>(value));
        }
    } while (letter >= 'a' && letter <= 'z' && !input.Over());
    return letter;
}

}  // namespace

void RunRasterMode(HPGLRead& reader, bool /*keepPen*/) {
    InputReader& input = reader.input;
    while (!input.Over()) {
        if (input.GetRaw() != 27) continue;
        const std::uint8_t first = input.GetRaw();
        if (first == '%') {
            const std::uint8_t end = FoldToUpper(ReadGroup(input));
            if (end == 'B' || end == 'X') return;
        } else if (first == '*' || first == '&' || first == '(' || first == ')') {
            input.GetRaw();
            ReadGroup(input);
        }
    }
}

}  // namespace qm
