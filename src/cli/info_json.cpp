// InfoJson (page_report.h): a plot as one JSON object.
#include <iomanip>
#include <locale>
#include <sstream>

#include "cli/info_counts.h"
#include "cli/json.h"
#include "cli/page_report.h"
#include "common/units.h"

namespace qm::cli {

namespace {

// Millimetres with three decimals.
std::string Number(double units) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << std::fixed << std::setprecision(3) << units / kUnitsPerMillimetre;
    return text.str();
}

std::string JsonOf(const Extent& extent) {
    if (extent.empty) return "null";
    return "{\"x\":" + Number(extent.minX) + ",\"y\":" + Number(extent.minY) +
           ",\"width\":" + Number(extent.Width()) + ",\"height\":" + Number(extent.Height()) + '}';
}

std::string JsonOf(const std::string& text) { return JsonText(text); }

std::string JsonOf(const PenReport& pen) {
    std::string colours;
    for (const std::uint32_t colour : pen.colours) {
        colours += (colours.empty() ? "" : ",") + JsonText(HexOf(colour));
    }
    return "{\"number\":" + std::to_string(pen.number) + ",\"colours\":[" + colours +
           "],\"drawn\":" + std::to_string(pen.drawn) + ",\"layer\":" + JsonText(pen.layer) + '}';
}

std::string JsonOf(const ContentReport& content) {
    if (content.isText) {
        return "{\"text\":" + JsonText(content.text) + ",\"extent\":" + JsonOf(content.box) + '}';
    }
    return "{\"width\":" + std::to_string(content.width) +
           ",\"height\":" + std::to_string(content.height) +
           ",\"bits\":" + std::to_string(content.bits) + ",\"extent\":" + JsonOf(content.box) + '}';
}

std::string JsonOf(const PageReport& page);

template <typename Items, typename Chosen>
std::string ListOf(const Items& items, Chosen&& chosen) {
    std::string out;
    for (const auto& item : items) {
        if (chosen(item)) out += (out.empty() ? "" : ",") + JsonOf(item);
    }
    return '[' + out + ']';
}

std::string JsonOf(const PageReport& page) {
    const auto all = [](const auto&) { return true; };
    std::ostringstream rotation;
    rotation.imbue(std::locale::classic());
    rotation << page.rotation;
    std::string counts;
    for (const Count& count : kCounts) {
        counts += (counts.empty() ? "\"" : ",\"") + std::string(count.key) +
                  "\":" + std::to_string(page.summary.*count.value);
    }
    return "{\"number\":" + std::to_string(page.number) + ",\"name\":" + JsonText(page.name) +
           ",\"extent\":" + JsonOf(page.summary.extent) + ",\"rotation\":" + rotation.str() +
           ",\"onlyWhite\":" + (page.summary.onlyWhite ? "true" : "false") + ",\"counts\":{" +
           counts + "},\"pens\":" + ListOf(page.pens, all) + ",\"pictures\":" +
           ListOf(page.contents, [](const ContentReport& c) { return !c.isText; }) +
           ",\"texts\":" + ListOf(page.contents, [](const ContentReport& c) { return c.isText; }) +
           '}';
}

}  // namespace

std::string InfoJson(const PlotReport& report) {
    const auto all = [](const auto&) { return true; };
    return "{\"file\":" + JsonText(report.file) + ",\"format\":" + JsonText(report.format) +
           ",\"pages\":" + ListOf(report.pages, all) + ",\"notes\":" + ListOf(report.notes, all) +
           '}';
}

}  // namespace qm::cli
