// See command_table.h. One page: every command of the language that has an effect or is read over
// on purpose.
#include "interpreter/command_table.h"

#include <array>

namespace qm {

namespace {

namespace h = handlers;

// clang-format off
constexpr Command kCommands[] = {
    // Coordinates
    {"IP", h::InputP1P2,               "IP [p1x,p1y,p2x,p2y];"},
    {"IR", h::InputP1P2Relative,       "IR x%,y%;"},
    {"IW", h::InputWindow,             "IW [x0,y0,x1,y1];"},
    {"RO", h::RotateCoordinateSystem,  "RO [angle];"},
    {"SC", h::Scale,                   "SC [xmin,xmax,ymin,ymax[,type]];"},
    // Pages
    {"BP", h::BeginPlot,               "BP [kind,value...];"},
    {"DF", h::DefaultValues,           "DF;"},
    {"FR", h::FrameAdvance,            "FR distance;"},
    {"NR", h::NotReady,                "NR [timeout];"},
    {"PG", h::AdvanceFullPage,         "PG [n];"},
    {"PS", h::PlotSize,                "PS length,width;"},
    // Vectors
    {"PA", h::PlotAbsolute,            "PA [x,y...];"},
    {"PD", h::PenDown,                 "PD [x,y...];"},
    {"PE", h::PolylineEncoded,         "PE [flag[value]|x,y]...;"},
    {"PR", h::PlotRelative,            "PR [dx,dy...];"},
    {"PU", h::PenUp,                   "PU [x,y...];"},
    // Arcs and curves
    {"AA", h::ArcAbsolute,             "AA x,y,sweep[,chord];"},
    {"AR", h::ArcRelative,             "AR dx,dy,sweep[,chord];"},
    {"AT", h::ArcAbsoluteThreePoint,   "AT x1,y1,x2,y2[,chord];"},
    {"BR", h::BezierRelative,          "BR dx1,dy1,dx2,dy2,dx3,dy3...;"},
    {"BZ", h::BezierAbsolute,          "BZ x1,y1,x2,y2,x3,y3...;"},
    {"CI", h::Circle,                  "CI radius[,chord];"},
    {"RT", h::ArcRelativeThreePoint,   "RT dx1,dy1,dx2,dy2[,chord];"},
    // Pens
    {"CR", h::ColorRange,              "CR br,wr,bg,wg,bb,wb;"},
    {"NP", h::NumberOfPens,            "NP [n];"},
    {"PC", h::PenColor,                "PC [pen[,red,green,blue]];"},
    {"PW", h::PenWidth,                "PW [width[,pen]];"},
    {"SP", h::SelectPen,               "SP [pen];"},
    {"TR", h::TransparencyMode,        "TR [n];"},
    {"WU", h::PenWidthUnit,            "WU [mode];"},
    // Lines
    {"LA", h::LineAttributes,          "LA [kind,value...];"},
    {"LT", h::LineType,                "LT [type[,length[,mode]]];"},
    {"MC", h::MergeControl,            "MC [mode[,opcode]];"},
    {"PP", h::PixelPlacement,          "PP [n];"},
    {"PT", h::PenThickness,            "PT [width];"},
    {"UL", h::UserDefinedLineType,     "UL [index[,gap...]];"},
    // Polygons and fills
    {"AC", h::AnchorCorner,            "AC [x,y];"},
    {"EA", h::EdgeRectangleAbsolute,   "EA x,y;"},
    {"EP", h::EdgePolygon,             "EP;"},
    {"ER", h::EdgeRectangleRelative,   "ER dx,dy;"},
    {"FP", h::FillPolygon,             "FP [rule];"},
    {"FT", h::FillType,                "FT [type[,spacing[,angle]]];"},
    {"PM", h::PolygonMode,             "PM [n];"},
    {"RA", h::FillRectangleAbsolute,   "RA x,y;"},
    {"RF", h::RasterFillDefinition,    "RF index,width,height,pixel...;"},
    {"RR", h::FillRectangleRelative,   "RR dx,dy;"},
    {"WG", h::FillWedge,               "WG radius,start,sweep[,chord];"},
    // Labels
    {"AD", h::AlternateFontDefinition, "AD kind,value;"},
    {"CP", h::CharacterPlot,           "CP [spaces,lines];"},
    {"DI", h::AbsoluteDirection,       "DI run,rise;"},
    {"DR", h::RelativeDirection,       "DR [run,rise];"},
    {"DT", h::DefineLabelTerminator,   "DTc[,mode];"},
    {"DV", h::DirectionVertical,       "DV [path];"},
    {"ES", h::ExtraSpace,              "ES [character[,line]];"},
    {"LB", h::Label,                   "LBtext<terminator>"},
    {"LM", h::LabelMode,               "LM [n];"},
    {"LO", h::LabelOrigin,             "LO [n];"},
    {"SA", h::SelectAlternateFont,     "SA;"},
    {"SD", h::StandardFontDefinition,  "SD kind,value...;"},
    {"SI", h::AbsoluteCharacterSize,   "SI [width[,height]];"},
    {"SL", h::CharacterSlant,          "SL [tangent];"},
    {"SM", h::SymbolMode,              "SMc"},
    {"SR", h::RelativeCharacterSize,   "SR [width[,height]];"},
    {"SS", h::SelectStandardFont,      "SS;"},
    {"TD", h::TransparentData,         "TD [n];"},
    // Read over: they act on a real plotter, not on a drawing
    {"CF", h::Ignore,                  "CF [mode[,pen]];"},
    {"CO", h::Comment,                 "CO\"text\""},
    {"CT", h::Ignore,                  "CT [n];"},
    {"DC", h::Ignore,                  "DC;"},
    {"DL", h::Ignore,                  "DL ...;"},
    {"DP", h::Ignore,                  "DP;"},
    {"EC", h::Ignore,                  "EC [n];"},
    {"FI", h::Ignore,                  "FI font;"},
    {"FN", h::Ignore,                  "FN font;"},
    {"IN", h::Ignore,                  "IN [n];"},
    {"MG", h::Ignore,                  "MG ...;"},
    {"MT", h::Ignore,                  "MT [n];"},
    {"OD", h::Ignore,                  "OD;"},
    {"OE", h::Ignore,                  "OE;"},
    {"OH", h::Ignore,                  "OH;"},
    {"OI", h::Ignore,                  "OI;"},
    {"OP", h::Ignore,                  "OP;"},
    {"OS", h::Ignore,                  "OS;"},
    {"QL", h::SkipOne,                 "QL [n];"},
    {"RP", h::Ignore,                  "RP [n];"},
    {"SB", h::Ignore,                  "SB [n];"},
    {"ST", h::Ignore,                  "ST [n];"},
    {"SV", h::SkipOne,                 "SV [n];"},
    {"VS", h::SkipOne,                 "VS [speed];"},
};

constexpr char kDetected[][3] = {
    "AA", "AC", "AD", "AR", "AS", "AT", "BP", "CA", "CF", "CI", "CP", "CR", "CT", "DC", "DF",
    "DI", "DL", "DP", "DR", "DT", "DV", "EA", "EC", "EP", "ER", "ES", "EW", "FI", "FN", "FP",
    "FR", "FS", "FT", "GM", "IN", "IP", "IR", "IW", "LA", "LB", "LO", "LT", "MC", "MG", "MT",
    "NP", "NR", "OD", "OE", "OH", "OI", "OP", "OS", "PA", "PC", "PD", "PE", "PG", "PM", "PR",
    "PS", "PU", "PW", "PT", "RA", "RF", "RO", "RP", "RR", "RT", "SA", "SB", "SC", "SD", "SI",
    "SL", "SM", "SP", "SR", "SS", "ST", "SV", "TD", "TR", "UL", "VS", "WG", "WU",
};
// clang-format on
static_assert(std::size(kDetected) == 88);

// Slots for second letters up to 'Y' at full width and 'Z' up to first letter 'Y': "ZZ" has none.
constexpr std::size_t kSlots = 6425;
constexpr std::size_t kNoSlot = kSlots;

// A second byte below 'A' wraps around and has no slot.
constexpr std::size_t SlotOf(std::uint8_t first, std::uint8_t second) {
    const unsigned index = (first - 0x41U + (second - 0x41U) * 256U) & 0xFFFFU;
    return index < kSlots ? index : kNoSlot;
}

constexpr std::size_t SlotOf(const char* mnemonic) {
    return SlotOf(static_cast<std::uint8_t>(mnemonic[0]), static_cast<std::uint8_t>(mnemonic[1]));
}

constexpr std::uint8_t kNoCommand = 0xFF;

// Two 32 x 26 maps instead of 6425 pointers stay in the cache: the command's place in kCommands,
// and the detection mark.
struct CommandIndex {
    std::array<std::uint8_t, kSlots> command{};
    std::array<bool, kSlots> detected{};
    bool doubled = false;

    constexpr CommandIndex() {
        for (std::uint8_t& slot : command) slot = kNoCommand;
        for (std::size_t i = 0; i < std::size(kCommands); ++i) {
            std::uint8_t& slot = command[SlotOf(kCommands[i].mnemonic)];
            doubled = doubled || slot != kNoCommand;
            slot = static_cast<std::uint8_t>(i);
        }
        for (const auto& mnemonic : kDetected) detected[SlotOf(mnemonic)] = true;
    }
};
constexpr CommandIndex kIndex;
static_assert(!kIndex.doubled, "a mnemonic stands twice in kCommands");
static_assert(std::size(kCommands) < kNoCommand);

}  // namespace

CommandList AllCommands() { return {kCommands, std::size(kCommands)}; }

handlers::Handler FindHandler(std::uint8_t first, std::uint8_t second) {
    const std::size_t slot = SlotOf(first, second);
    if (slot == kNoSlot || kIndex.command[slot] == kNoCommand) return nullptr;
    return kCommands[kIndex.command[slot]].handler;
}

bool CountsInDetection(std::uint8_t first, std::uint8_t second) {
    const std::size_t slot = SlotOf(first, second);
    return slot != kNoSlot && kIndex.detected[slot];
}

}  // namespace qm
