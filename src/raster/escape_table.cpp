// See escape_table.h. One page: every raster escape with a value that has an effect, carries data,
// or is read over on purpose. PCL 5 and HP-RTL publish them; groups are sorted by what they do, the
// busiest first because lookup goes down the list.
#include "raster/escape_table.h"

namespace qm {

namespace {

namespace e = escapes;

// clang-format off
constexpr Escape kEscapes[] = {
    // Transfer
    {"*b", 'W', HandleEscape<e::TransferRow>,        "ESC*b#W[data]  a row"},
    {"*b", 'V', HandleEscape<e::TransferPlane>,      "ESC*b#V[data]  a plane of a row"},
    {"*b", 'M', HandleEscape<e::CompressionMethod>,  "ESC*b#M        0-5, 10"},
    {"*b", 'Y', HandleEscape<e::MoveDownRows>,       "ESC*b[+-]#Y    dots"},
    // Picture
    {"*r", 'S', HandleEscape<e::SourceWidth>,        "ESC*r#S        pixels"},
    {"*r", 'T', HandleEscape<e::SourceHeight>,       "ESC*r#T        rows"},
    {"*r", 'U', HandleEscape<e::SimpleColour>,       "ESC*r#U        -3, -4: planes"},
    {"*r", 'A', HandleEscape<e::Ignore>,             "ESC*r#A        start"},
    {"*r", 'B', HandleEscape<e::EndPicture>,         "ESC*rB         end"},
    {"*r", 'C', HandleEscape<e::EndPicture>,         "ESC*rC         end"},
    {"*t", 'R', HandleEscape<e::Resolution>,         "ESC*t#R        dots per inch"},
    {"*t", 'H', HandleEscape<e::DestinationWidth>,   "ESC*t#H        decipoints"},
    {"*t", 'V', HandleEscape<e::DestinationHeight>,  "ESC*t#V        decipoints"},
    {"*l", 'O', HandleEscape<e::MergeMode>,          "ESC*l#O        raster operation 0-255"},
    // Colours
    {"*v", 'W', HandleEscape<e::ConfigureImageData>, "ESC*v#W[data]  space, encoding, bits per index..."},
    {"*v", 'A', HandleEscape<e::ColourRed>,          "ESC*v#A        first component"},
    {"*v", 'B', HandleEscape<e::ColourGreen>,        "ESC*v#B        second component"},
    {"*v", 'C', HandleEscape<e::ColourBlue>,         "ESC*v#C        third component"},
    {"*v", 'I', HandleEscape<e::AssignColour>,       "ESC*v#I        to index"},
    {"*v", 'S', HandleEscape<e::ForegroundColour>,   "ESC*v#S        index"},
    {"*p", 'P', HandleEscape<e::PushPopPalette>,     "ESC*p#P        0 push, 1 pop the palette"},
    // Position
    {"*p", 'X', HandleEscape<e::CursorX>,            "ESC*p[+-]#X    dots or units"},
    {"*p", 'Y', HandleEscape<e::CursorY>,            "ESC*p[+-]#Y    dots or units"},
    {"&a", 'H', HandleEscape<e::CursorXDecipoints>,  "ESC&a[+-]#H    decipoints"},
    {"&a", 'V', HandleEscape<e::CursorYDecipoints>,  "ESC&a[+-]#V    decipoints"},
    {"&u", 'D', HandleEscape<e::PositionUnits>,      "ESC&u#D        units per inch"},
    // Data that is no part of the picture
    {"*c", 'W', HandleEscape<e::SkipData>,           "ESC*c#W[data]  user-defined pattern"},
    {"*o", 'W', HandleEscape<e::SkipData>,           "ESC*o#W[data]  driver configuration"},
    {"&b", 'W', HandleEscape<e::SkipData>,           "ESC&b#W[data]"},
    {"&l", 'W', HandleEscape<e::SkipData>,           "ESC&l#W[data]"},
    {"&n", 'W', HandleEscape<e::SkipData>,           "ESC&n#W[data]  alphanumeric identification"},
    {"&p", 'X', HandleEscape<e::SkipData>,           "ESC&p#X[data]  transparent print data"},
    {"(f", 'W', HandleEscape<e::SkipData>,           "ESC(f#W[data]  symbol set"},
    {"(s", 'W', HandleEscape<e::SkipData>,           "ESC(s#W[data]  character"},
    {")f", 'W', HandleEscape<e::SkipData>,           "ESC)f#W[data]"},
    {")s", 'W', HandleEscape<e::SkipData>,           "ESC)s#W[data]  font"},
    // Text commands whose W carries no data; naming one letter names the group
    {"&d", 'W', HandleEscape<e::Ignore>,             "ESC&d...       underline"},
    {"&f", 'W', HandleEscape<e::Ignore>,             "ESC&f...       macros"},
    {"&k", 'W', HandleEscape<e::Ignore>,             "ESC&k...       text modes"},
    {"&s", 'W', HandleEscape<e::Ignore>,             "ESC&s...       line wrap"},
    {"&t", 'W', HandleEscape<e::Ignore>,             "ESC&t...       text parsing"},
};
// clang-format on

}  // namespace

EscapeList AllEscapes() { return {kEscapes, sizeof(kEscapes) / sizeof(kEscapes[0])}; }

EscapeSlot FindEscapeHandler(std::uint8_t intro, std::uint8_t group, std::uint8_t letter) {
    bool named = false;
    for (const Escape& escape : kEscapes) {
        const auto first = static_cast<std::uint8_t>(escape.group[0]);
        const auto second = static_cast<std::uint8_t>(escape.group[1]);
        if (first != intro || second != group) continue;
        named = true;
        if (static_cast<std::uint8_t>(escape.letter) == letter) return escape.handler;
    }
    return !named && letter == 'W' ? HandleEscape<e::SkipData> : HandleEscape<e::Ignore>;
}

namespace escapes {

void Ignore() {}

}  // namespace escapes
}  // namespace qm
