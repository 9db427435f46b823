// See command_table.h. One page: every command of the language that has an effect or is read over
// on purpose.
#include "interpreter/command_table.h"

#include <array>

#include "interpreter/handlers.h"

namespace qm {

namespace {

namespace h = handlers;

// clang-format off
constexpr Command kCommands[] = {
    // Coordinates
    {"IP", Handle<h::InputP1P2>,                  "IP [p1x,p1y,p2x,p2y];"},
    {"IR", Handle<h::InputP1P2Relative>,          "IR x%,y%;"},
    {"IW", Handle<h::InputWindow>,                "IW [x0,y0,x1,y1];"},
    {"RO", Handle<h::RotateCoordinateSystem>,     "RO [angle];"},
    {"SC", Handle<h::Scale>,                      "SC [xmin,xmax,ymin,ymax[,type]];"},
    // Pages
    {"BP", Handle<h::BeginPlot>,                  "BP [kind,value...];"},
    {"DF", Handle<h::DefaultValues>,              "DF;"},
    {"FR", Handle<h::FrameAdvance>,               "FR distance;"},
    {"NR", Handle<h::NotReady>,                   "NR [timeout];"},
    {"PG", Handle<h::AdvanceFullPage>,            "PG [n];"},
    {"PS", Handle<h::PlotSize>,                   "PS length,width;"},
    // Vectors
    {"PA", Handle<h::PlotAbsolute>,               "PA [x,y...];"},
    {"PD", Handle<h::PenDown>,                    "PD [x,y...];"},
    {"PE", Handle<h::PolylineEncoded>,            "PE [flag[value]|x,y]...;"},
    {"PR", Handle<h::PlotRelative>,               "PR [dx,dy...];"},
    {"PU", Handle<h::PenUp>,                      "PU [x,y...];"},
    // Arcs and curves
    {"AA", Handle<h::ArcAbsolute>,                "AA x,y,sweep[,chord];"},
    {"AR", Handle<h::ArcRelative>,                "AR dx,dy,sweep[,chord];"},
    {"AT", Handle<h::ArcAbsoluteThreePoint>,      "AT x1,y1,x2,y2[,chord];"},
    {"BR", Handle<h::BezierRelative>,             "BR dx1,dy1,dx2,dy2,dx3,dy3...;"},
    {"BZ", Handle<h::BezierAbsolute>,             "BZ x1,y1,x2,y2,x3,y3...;"},
    {"CI", Handle<h::Circle>,                     "CI radius[,chord];"},
    {"CT", Handle<h::ChordTolerance>,             "CT [mode];"},
    {"RT", Handle<h::ArcRelativeThreePoint>,      "RT dx1,dy1,dx2,dy2[,chord];"},
    // Pens
    {"CR", Handle<h::ColorRange>,                 "CR br,wr,bg,wg,bb,wb;"},
    {"NP", Handle<h::SkipOne>,                    "NP [n];"},
    {"PC", Handle<h::PenColour>,                  "PC [pen[,red,green,blue]];"},
    {"PW", Handle<h::PenWidth>,                   "PW [width[,pen]];"},
    {"SP", Handle<h::SelectPen>,                  "SP [pen];"},
    {"TR", Handle<h::TransparencyMode>,           "TR [n];"},
    {"WU", Handle<h::PenWidthUnit>,               "WU [mode];"},
    // Lines
    {"LA", Handle<h::LineAttributes>,             "LA [kind,value...];"},
    {"LT", Handle<h::LineType>,                   "LT [type[,length[,mode]]];"},
    {"MC", Handle<h::MergeControl>,               "MC [mode[,opcode]];"},
    {"PP", Handle<h::SkipOne>,                    "PP [n];"},
    {"PT", Handle<h::PenThickness>,               "PT [width];"},
    {"UL", Handle<h::UserDefinedLineType>,        "UL [index[,gap...]];"},
    // Polygons and fills
    {"AC", Handle<h::AnchorCorner>,               "AC [x,y];"},
    {"EA", Handle<h::EdgeRectangleAbsolute>,      "EA x,y;"},
    {"EP", Handle<h::EdgePolygon>,                "EP;"},
    {"ER", Handle<h::EdgeRectangleRelative>,      "ER dx,dy;"},
    {"EW", Handle<h::EdgeWedge>,                  "EW radius,start,sweep[,chord];"},
    {"FP", Handle<h::FillPolygon>,                "FP [rule];"},
    {"FT", Handle<h::FillType>,                   "FT [type[,spacing[,angle]]];"},
    {"PM", Handle<h::PolygonMode>,                "PM [n];"},
    {"RA", Handle<h::FillRectangleAbsolute>,      "RA x,y;"},
    {"RF", Handle<h::RasterFillDefinition>,       "RF index,width,height,pixel...;"},
    {"RR", Handle<h::FillRectangleRelative>,      "RR dx,dy;"},
    {"WG", Handle<h::FillWedge>,                  "WG radius,start,sweep[,chord];"},
    // Labels
    {"AD", Handle<h::AlternateFontDefinition>,    "AD kind,value;"},
    {"CP", Handle<h::CharacterPlot>,              "CP [spaces,lines];"},
    {"DI", Handle<h::AbsoluteDirection>,          "DI run,rise;"},
    {"DR", Handle<h::RelativeDirection>,          "DR [run,rise];"},
    {"DT", Handle<h::DefineLabelTerminator>,      "DTc[,mode];"},
    {"DV", Handle<h::DirectionVertical>,          "DV [path];"},
    {"ES", Handle<h::ExtraSpace>,                 "ES [character[,line]];"},
    {"LB", Handle<h::Label>,                      "LBtext<terminator>"},
    {"LM", Handle<h::SkipOne>,                    "LM [n];"},
    {"LO", Handle<h::LabelOrigin>,                "LO [n];"},
    {"SA", Handle<h::SelectAlternateFont>,        "SA;"},
    {"SD", Handle<h::StandardFontDefinition>,     "SD kind,value...;"},
    {"SI", Handle<h::AbsoluteCharacterSize>,      "SI [width[,height]];"},
    {"SL", Handle<h::CharacterSlant>,             "SL [tangent];"},
    {"SM", Handle<h::SymbolMode>,                 "SMc"},
    {"SR", Handle<h::RelativeCharacterSize>,      "SR [width[,height]];"},
    {"SS", Handle<h::SelectStandardFont>,         "SS;"},
    {"TD", Handle<h::TransparentData>,            "TD [n];"},
    // Read over: they act on a real plotter, not on a drawing
    {"CF", Handle<h::Ignore>,                     "CF [mode[,pen]];"},
    {"CO", Handle<h::Comment>,                    "CO\"text\""},
    {"DC", Handle<h::Ignore>,                     "DC;"},
    {"DL", Handle<h::Ignore>,                     "DL ...;"},
    {"DP", Handle<h::Ignore>,                     "DP;"},
    {"EC", Handle<h::Ignore>,                     "EC [n];"},
    {"FI", Handle<h::Ignore>,                     "FI font;"},
    {"FN", Handle<h::Ignore>,                     "FN font;"},
    {"IN", Handle<h::Initialize>,                 "IN [n];"},
    {"MG", Handle<h::Ignore>,                     "MG ...;"},
    {"MT", Handle<h::Ignore>,                     "MT [n];"},
    {"OD", Handle<h::Ignore>,                     "OD;"},
    {"OE", Handle<h::Ignore>,                     "OE;"},
    {"OH", Handle<h::Ignore>,                     "OH;"},
    {"OI", Handle<h::Ignore>,                     "OI;"},
    {"OP", Handle<h::Ignore>,                     "OP;"},
    {"OS", Handle<h::Ignore>,                     "OS;"},
    {"QL", Handle<h::SkipOne>,                    "QL [n];"},
    {"RP", Handle<h::Ignore>,                     "RP [n];"},
    {"SB", Handle<h::Ignore>,                     "SB [n];"},
    {"ST", Handle<h::Ignore>,                     "ST [n];"},
    {"SV", Handle<h::SkipOne>,                    "SV [n];"},
    {"VS", Handle<h::SkipOne>,                    "VS [speed];"},
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

// A byte and a mark a slot instead of a pointer, so that the rows in use stay in the cache: the
// command's place in kCommands, and whether detection counts it.
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

Slot FindHandler(std::uint8_t first, std::uint8_t second) {
    const std::size_t slot = SlotOf(first, second);
    if (slot == kNoSlot || kIndex.command[slot] == kNoCommand) return nullptr;
    return kCommands[kIndex.command[slot]].handler;
}

bool CountsInDetection(std::uint8_t first, std::uint8_t second) {
    const std::size_t slot = SlotOf(first, second);
    return slot != kNoSlot && kIndex.detected[slot];
}

namespace handlers {

// Parameters stay in the input, where the main loop ignores what is no letter.
void Ignore() {}

// NP LM PP QL SV VS: one number is read and dropped.
void SkipOne(Parameters& in) { in.GetShortParam(); }

// CO "text". Quirk: a first byte that is no double quote is consumed, and nothing more.
void Comment(InputReader& input) {
    if (input.GetCooked() != '"') return;
    while (!input.Over() && input.GetCooked() != '"') {
    }
}

}  // namespace handlers
}  // namespace qm
