// See pen_commands.h.
#include "render/compact/pen_commands.h"

#include <algorithm>
#include <cstddef>

#include "common/colour.h"
#include "common/numbers.h"
#include "common/units.h"
#include "render/fill_pattern.h"
#include "render/line_look.h"

namespace qm::compact {

namespace {

constexpr std::int32_t kMaskPen = 9;
// No line style has its number, so a reader that filters changes sees one.
constexpr const char* kUserType = "8";
constexpr std::int64_t kLongestPattern = 1 << 24;

std::string Text(std::int64_t number) { return std::to_string(number); }

// "0.35" without the zero in front of the point.
std::string Decimals(std::int64_t number, std::size_t decimals) {
    std::string text = Text(number);
    if (text.size() <= decimals) text.insert(0, decimals + 1 - text.size(), '0');
    text.insert(text.size() - decimals, ".");
    return text[0] == '0' ? text.substr(1) : text;
}

// Millimetres that a reader who cuts them to plotter units takes for `units`: hundredths, as the
// reader adds them up.
std::string WidthText(std::int32_t units) {
    if (units == 0) return "0";
    constexpr double kTenth = 1.0 / 10.0;
    constexpr double kHundredth = kTenth / 10.0;
    std::int64_t hundredths = std::int64_t{units} * 5 / 2;
    for (;; ++hundredths) {
        const std::int64_t millimetres = hundredths / 100;
        const double read = static_cast<double>(millimetres) +
                            static_cast<double>(hundredths / 10 % 10) * kTenth +
                            static_cast<double>(hundredths % 10) * kHundredth;
        if (TruncateToInt32(read * kUnitsPerMillimetre) >= units) break;
    }
    return Decimals(hundredths, 2);
}

// Lengths in plotter units; those who take them for shares get the pattern's length in millimetres,
// a little more than it is so that nothing is lost by cutting.
std::string UserLineType(const std::vector<std::int32_t>& dash) {
    std::string commands = std::string("UL") + kUserType;
    std::int64_t total = 0;
    bool hasLength = true;
    for (const std::int32_t length : dash) {
        commands += ',' + Text(length);
        total += length;
        hasLength = hasLength && length >= 0;
    }
    commands += std::string(";LT") + kUserType;
    if (hasLength && total > 0 && total < kLongestPattern) {
        commands += ',' + Decimals(total * 25 + 1, 3) + ",1";
    }
    return commands + ';';
}

std::string LineTypeOf(std::int32_t style) {
    constexpr const char* kTypes[] = {"LT;", "LT2;", "LT1;", "LT4;", "LT6;"};
    return style >= 0 && style < 5 ? kTypes[style] : kTypes[0];
}

std::string AttributesOf(std::int32_t bits) {
    const LineCap cap = CapOf(bits);
    const char* const end = cap == LineCap::kButt ? "1" : cap == LineCap::kSquare ? "2" : "4";
    return std::string("LA1,") + end + (JoinOf(bits) == LineJoin::kBevel ? ",2,5;" : ",2,4;");
}

}  // namespace

void PenCommands::SelectPen(const DrawingStyle& style, bool filled, std::string& commands) {
    const std::int32_t number = std::clamp(style.layer, 0, 255);
    const std::uint32_t colour = filled ? style.fillColour : style.drawColour;
    const std::int32_t width = std::clamp(style.lineWidth, 0, 10000);
    Pen& pen = pens_[static_cast<std::size_t>(number)];
    if (pen.colour != colour) {
        const auto [red, green, blue] = Colour::FromBgr(colour);
        commands +=
            "PC" + Text(number) + ',' + Text(red) + ',' + Text(green) + ',' + Text(blue) + ';';
        pen.colour = colour;
    }
    if (!filled && pen.width != width) {
        commands += "PW" + WidthText(width) + ',' + Text(number) + ';';
        pen.width = width;
    }
    if (sent_.pen != number) commands += "SP" + Text(number) + ';';
    sent_.pen = number;
}

void PenCommands::SelectLine(const DrawingStyle& style, std::string& commands) {
    if (CapOf(style.lineAttributes) != CapOf(sent_.attributes) ||
        JoinOf(style.lineAttributes) != JoinOf(sent_.attributes)) {
        commands += AttributesOf(style.lineAttributes);
        sent_.attributes = style.lineAttributes;
    }
    const std::vector<std::int32_t> dash(style.dash, style.dash + style.dashCount);
    if (dash != sent_.dash || style.lineStyle != sent_.lineStyle) {
        commands += dash.empty() ? LineTypeOf(style.lineStyle) : UserLineType(dash);
        sent_.dash = dash;
        sent_.lineStyle = style.lineStyle;
    }
}

std::string PenCommands::For(const DrawingStyle& style, bool filled) {
    std::string commands;
    const bool masks = style.drawMode == kMaskPen;
    if (masks != sent_.masks) commands += masks ? "MC1,168;" : "MC;";
    sent_.masks = masks;
    SelectPen(style, filled, commands);
    if (!filled) {
        SelectLine(style, commands);
        return commands;
    }
    const std::int32_t pattern = style.fillKind == kFillKindPattern ? style.fillIndex : -1;
    if (pattern != sent_.pattern) {
        commands += pattern < 0 ? "FT;" : "FT11," + Text(pattern) + ';';
    }
    sent_.pattern = pattern;
    return commands;
}

}  // namespace qm::compact
