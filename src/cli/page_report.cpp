// See page_report.h.
#include "cli/page_report.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <utility>

#include "common/colour.h"
#include "common/packed_bitmap.h"
#include "platform/text.h"

namespace qm::cli {

namespace {

Extent ExtentOf(const BoxI& box) {
    Extent extent;
    extent.Add(box.a.x, box.a.y);
    extent.Add(box.b.x, box.b.y);
    return extent;
}

// Lists pictures, colours by pen and, on demand, texts, in the pass that counts.
class Lister final : public Summariser {
  public:
    Lister(PageReport& report, bool texts) : report_(report), texts_(texts) {}

    void Lines(const DrawingStyle& style, PointSpan points) override {
        Summariser::Lines(style, points);
        Note(style, false);
    }
    bool Letter(const DrawingStyle& style, const LetterRecord& letter) override {
        Note(style, false);
        return Summariser::Letter(style, letter);
    }
    void Rectangle(const DrawingStyle& style, const BoxI& box, bool filled) override {
        Summariser::Rectangle(style, box, filled);
        Note(style, filled);
    }
    void Circle(const DrawingStyle& style, PointI centre, std::int32_t radius,
                bool filled) override {
        Summariser::Circle(style, centre, radius, filled);
        Note(style, filled);
    }
    void Arc(const DrawingStyle& style, const ArcShape& arc) override {
        Summariser::Arc(style, arc);
        Note(style, false);
    }
    void Polygon(const DrawingStyle& style, PointSpan points, bool filled) override {
        Summariser::Polygon(style, points, filled);
        Note(style, filled);
    }
    void PolyPolygon(const DrawingStyle& style, const Rings& rings, bool filled) override {
        Summariser::PolyPolygon(style, rings, filled);
        Note(style, filled);
    }
    void Text(const DrawingStyle& style, const BoxI& box, std::string_view text) override {
        Summariser::Text(style, box, text);
        if (!texts_) return;
        ContentReport content;
        content.isText = true;
        content.text = text;
        if (box.a.x <= box.b.x) content.box = ExtentOf(box);
        report_.contents.push_back(std::move(content));
    }
    void Picture(const DrawingStyle& style, const BoxI& box, std::int32_t operation,
                 ByteRun bytes) override {
        Summariser::Picture(style, box, operation, bytes);
        ContentReport content;
        content.box = ExtentOf(box);
        if (const auto bitmap = PackedBitmapView::Parse(bytes.data, bytes.size)) {
            content.width = bitmap->Width();
            content.height = bitmap->Height();
            content.bits = bitmap->Bits();
        }
        report_.contents.push_back(std::move(content));
    }
    // Of the pen, in the order of their first use; none when it drew nothing.
    const std::vector<std::uint32_t>& ColoursOf(std::int32_t pen) { return colours_[pen]; }

  private:
    void Note(const DrawingStyle& style, bool filled) {
        const std::uint32_t colour = filled ? style.fillColour : style.drawColour;
        if (last_ != nullptr && style.pen == lastPen_ && colour == lastColour_) return;
        if (last_ == nullptr || style.pen != lastPen_) last_ = &colours_[style.pen];
        lastPen_ = style.pen;
        lastColour_ = colour;
        if (last_->size() == PenReport::kMostColours) return;
        if (std::find(last_->begin(), last_->end(), colour) == last_->end()) {
            last_->push_back(colour);
        }
    }

    PageReport& report_;
    const bool texts_;
    std::map<std::int32_t, std::vector<std::uint32_t>> colours_;
    std::vector<std::uint32_t>* last_ = nullptr;
    std::int32_t lastPen_ = 0;
    std::uint32_t lastColour_ = 0;
};

}  // namespace

std::string NoteOfWhite(std::size_t number, const PageSummary& summary) {
    constexpr std::size_t kMostPens = 4;
    std::string note = "everything on page " + std::to_string(number) + " is white;";
    if (summary.layers.size() > kMostPens) return note + " --background grey shows it";
    for (const std::int32_t pen : summary.layers)
        note += " --pen " + std::to_string(pen) + "=black";
    return note + (summary.layers.size() == 1 ? " shows it" : " show it");
}

std::string HexOf(std::uint32_t colour) {
    const auto [red, green, blue] = Colour::FromBgr(colour);
    char text[8];
    std::snprintf(text, sizeof text, "#%02x%02x%02x", unsigned{red}, unsigned{green},
                  unsigned{blue});
    return text;
}

PageReport ReportOf(const PlotPage& page, std::size_t number, bool texts) {
    PageReport report;
    report.number = number;
    report.name = WideToUtf8(page.Name());
    report.rotation = page.Rotation();
    Lister lister(report, texts);
    Play(page.Drawing(), lister);
    report.summary = lister.Finish();
    for (const PageLayer& layer : page.Layers()) {
        PenReport pen;
        pen.number = layer.number;
        pen.colours = lister.ColoursOf(layer.number);
        if (pen.colours.empty()) pen.colours = {layer.colour};
        const auto index = static_cast<std::size_t>(layer.number);
        if (index < report.summary.byPen.size()) pen.drawn = report.summary.byPen[index];
        pen.layer = WideToUtf8(layer.name);
        report.pens.push_back(std::move(pen));
    }
    return report;
}

}  // namespace qm::cli
