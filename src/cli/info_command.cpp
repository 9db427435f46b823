// qmplot info FILE: what a plot holds, for people.
#include <iomanip>
#include <memory>
#include <sstream>

#include "cli/commands.h"
#include "cli/console.h"
#include "cli/plots.h"
#include "cli/progress_bar.h"
#include "cli/reading_option.h"
#include "common/colour.h"
#include "common/packed_bitmap.h"
#include "common/tool_error.h"
#include "common/units.h"
#include "host/display_list_player.h"
#include "host/page_summary.h"
#include "platform/text.h"
#include "trace/text_format.h"

namespace qm::cli {

namespace {

struct InfoOptions {
    std::string file;
    bool texts = false;
    Reading reading;
};

// "12.5": plotter units as millimetres.
std::string Millimetres(double units) {
    std::ostringstream text;
    text << std::fixed << std::setprecision(1) << units / kUnitsPerMillimetre;
    return text.str();
}

std::string SizeAndPlace(const Extent& extent) {
    return Millimetres(extent.Width()) + " x " + Millimetres(extent.Height()) +
           " mm, lower left at " + Millimetres(extent.minX) + ", " + Millimetres(extent.minY);
}

Extent ExtentOf(const BoxI& box) {
    Extent extent;
    extent.Add(box.a.x, box.a.y);
    extent.Add(box.b.x, box.b.y);
    return extent;
}

// Lists pictures and, on demand, texts.
class ContentLister final : public DisplayListVisitor {
  public:
    ContentLister(StandardOutput& output, bool texts) : output_(output), texts_(texts) {}

    void Text(const DrawingStyle&, const BoxI& box, std::string_view text) override {
        if (!texts_) return;
        std::string line = "    text ";
        AppendQuoted(line, text);
        // A text without strokes has no place.
        if (box.a.x <= box.b.x) line += " at " + Millimetres(box.a.x) + ", " + Millimetres(box.a.y);
        output_.Write(line + '\n');
    }
    void Picture(const DrawingStyle&, const BoxI& box, std::int32_t, ByteRun bytes) override {
        std::string line = "    picture";
        if (const auto bitmap = PackedBitmapView::Parse(bytes.data, bytes.size)) {
            line += ' ' + std::to_string(bitmap->Width()) + " x " +
                    std::to_string(bitmap->Height()) + " dots, " + std::to_string(bitmap->Bits()) +
                    " bits a dot,";
        }
        output_.Write(line + ' ' + SizeAndPlace(ExtentOf(box)) + '\n');
    }

  private:
    StandardOutput& output_;
    bool texts_;
};

void PrintCounts(const PageSummary& summary, StandardOutput& output) {
    struct Count {
        const char* name;
        std::uint64_t value;
    };
    const Count counts[] = {{"lines", summary.lines},
                            {"polylines", summary.polylines},
                            {"filled areas", summary.polygons},
                            {"rectangles", summary.rectangles},
                            {"circles", summary.circles},
                            {"arcs", summary.arcs},
                            {"texts", summary.texts},
                            {"pictures", summary.pictures},
                            {"fill patterns", summary.fillPatterns}};
    std::string line;
    for (const Count& count : counts) {
        if (count.value == 0) continue;
        line += line.empty() ? "    " : ", ";
        line += std::to_string(count.value) + ' ' + count.name;
    }
    output.Write(line + '\n');
}

void PrintPens(const PlotPage& page, const PageSummary& summary, StandardOutput& output) {
    for (const PageLayer& layer : page.Layers()) {
        const auto [red, green, blue] = Colour::FromBgr(layer.colour);
        std::ostringstream line;
        line << "    pen " << std::setw(3) << layer.number << "  #" << std::hex << std::setfill('0')
             << std::setw(2) << int{red} << std::setw(2) << int{green} << std::setw(2) << int{blue}
             << std::dec << std::setfill(' ');
        if (layer.number >= 0 && layer.number < static_cast<std::int32_t>(summary.byPen.size())) {
            line << std::setw(10) << summary.byPen[static_cast<std::size_t>(layer.number)]
                 << " drawn";
        }
        line << "  layer \"" << WideToUtf8(layer.name) << "\"\n";
        output.Write(line.str());
    }
}

void PrintPage(const PlotPage& page, bool texts, StandardOutput& output) {
    const PageSummary summary = Summarise(page.Drawing());
    output.Write("  " + WideToUtf8(page.Name()) + ": ");
    output.Write(summary.extent.empty ? "nothing visible" : SizeAndPlace(summary.extent));
    std::ostringstream turn;
    if (page.Rotation() != 0.0) turn << ", to be turned by " << page.Rotation() << " degrees";
    output.Write(turn.str() + '\n');
    PrintCounts(summary, output);
    PrintPens(page, summary, output);
    ContentLister lister(output, texts);
    Play(page.Drawing(), lister);
}

int PrintInfo(const InfoOptions& options) {
    const Components components(options.reading);
    const InputFile file(options.file);
    ProgressBar bar(file.Name());
    const OpenedPlot plot = LoadPlot(file, [&](int percent) {
        bar.Show(percent);
        return true;
    });
    StandardOutput output;
    const std::size_t pages = plot.pages.size();
    output.Write(file.Name() + ": " + WideToUtf8(plot.format) + ", " + std::to_string(pages) +
                 (pages == 1 ? " page\n" : " pages\n"));
    for (const PlotPage& page : plot.pages) PrintPage(page, options.texts, output);
    output.Finish();
    return kExitSuccess;
}

}  // namespace

Command InfoCommand() {
    const auto options = std::make_shared<InfoOptions>();
    Command command;
    command.name = "info";
    command.summary = "Tell what a plot holds: pages, sizes, pens, counts, pictures";
    command.usages = {"[OPTIONS] FILE"};
    command.operands = {{"FILE", "The plot file"}};
    command.groups = {{"Options", {Flag("texts", 0, "List the texts too", options->texts)}},
                      ReadingOptions(options->reading)};
    command.run = [options](const ParsedLine& line) {
        options->file = line.operands.front();
        return PrintInfo(*options);
    };
    return command;
}

}  // namespace qm::cli
