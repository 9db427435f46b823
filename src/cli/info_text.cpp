// InfoText (page_report.h): a plot for people.
#include <cstdio>
#include <iomanip>
#include <locale>
#include <sstream>

#include "cli/info_counts.h"
#include "cli/page_report.h"
#include "common/colour.h"
#include "common/units.h"
#include "platform/text.h"

namespace qm::cli {

namespace {

// "12.5": plotter units as millimetres.
std::string Millimetres(double units) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << std::fixed << std::setprecision(1) << units / kUnitsPerMillimetre;
    return text.str();
}

std::string Place(const Extent& extent) {
    return Millimetres(extent.minX) + ", " + Millimetres(extent.minY);
}

std::string SizeAndPlace(const Extent& extent) {
    return Millimetres(extent.Width()) + " x " + Millimetres(extent.Height()) +
           " mm, lower left at " + Place(extent);
}

// In quotes; characters that would move a terminal's cursor or worse as \xHH.
std::string Quoted(const std::string& utf8) {
    std::string out = "\"";
    for (const wchar_t c : Utf8ToWide(utf8)) {
        if (c < 32 || (c >= 127 && c < 160)) {
            char text[8];
            std::snprintf(text, sizeof text, "\\x%02X", static_cast<unsigned>(c));
            out += text;
            continue;
        }
        if (c == L'"' || c == L'\\') out += '\\';
        out += WideToUtf8({&c, 1});
    }
    return out + '"';
}

std::string LineOfCounts(const PageSummary& summary) {
    std::string line;
    for (const Count& count : kCounts) {
        const std::uint64_t value = summary.*count.value;
        if (value == 0) continue;
        line += (line.empty() ? "    " : ", ") + std::to_string(value) + ' ' + count.name;
    }
    return line + '\n';
}

std::string LineOf(const PenReport& pen) {
    std::ostringstream line;
    line.imbue(std::locale::classic());
    line << "    pen " << std::setw(3) << pen.number << ' ';
    for (const std::uint32_t colour : pen.colours) line << ' ' << HexOf(colour);
    if (pen.colours.size() == PenReport::kMostColours) line << " ...";
    if (pen.number >= 0 && pen.number < 256) line << std::setw(10) << pen.drawn << " drawn";
    line << "  layer \"" << pen.layer << "\"\n";
    return line.str();
}

std::string LineOf(const ContentReport& content) {
    if (content.isText) {
        return "    text " + Quoted(content.text) +
               (content.box.empty ? "" : " at " + Place(content.box)) + '\n';
    }
    std::string line = "    picture ";
    if (content.width != 0) {
        line += std::to_string(content.width) + " x " + std::to_string(content.height) + " dots, " +
                std::to_string(content.bits) + " bits a dot, ";
    }
    return line + SizeAndPlace(content.box) + '\n';
}

std::string TextOf(const PageReport& page) {
    std::ostringstream out;
    out.imbue(std::locale::classic());
    out << "  Page " << page.number;
    if (page.name != "Page " + std::to_string(page.number)) out << " (\"" << page.name << "\")";
    out << ": "
        << (page.summary.extent.empty ? "nothing visible" : SizeAndPlace(page.summary.extent));
    if (page.rotation != 0.0) out << ", to be turned by " << page.rotation << " degrees";
    out << '\n' << LineOfCounts(page.summary);
    if (page.summary.onlyWhite) out << "    " << NoteOfWhite(page.number, page.summary) << '\n';
    for (const PenReport& pen : page.pens) out << LineOf(pen);
    for (const ContentReport& content : page.contents) out << LineOf(content);
    return out.str();
}

}  // namespace

std::string InfoText(const PlotReport& report) {
    std::string out = report.file + ": " + report.format + ", " +
                      std::to_string(report.pages.size()) +
                      (report.pages.size() == 1 ? " page\n" : " pages\n");
    for (const PageReport& page : report.pages) out += TextOf(page);
    return out;
}

}  // namespace qm::cli
