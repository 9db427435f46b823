#include "cli/conversion.h"

#include <array>
#include <cstdint>
#include <memory>
#include <set>
#include <utility>

#include "cli/console.h"
#include "cli/files.h"
#include "cli/page_report.h"
#include "common/tool_error.h"
#include "host/page_summary.h"
#include "platform/text.h"
#include "render/page_frame.h"

namespace qm::cli {

namespace {

PlotFacts FactsOf(const InputFile& file, const OpenedPlot& plot) {
    const std::string& name = file.Name();
    return {name.substr(name.find_last_of("/\\") + 1), WideToUtf8(plot.format), file.Size()};
}

struct NumberedPage {
    std::size_t number;  // from 1, pages that show nothing counted
    PlotPage page;
};

// Of a page that is written.
void TellWhatSurprises(const std::string& input, const NumberedPage& page, const PageGist& gist,
                       const PageOptions& options, const OutputFormat& format,
                       const ConversionReports& reports) {
    if (gist.onlyWhite && options.background.kind != Background::Kind::kColour) {
        const std::string note = NoteOfWhite(page.number, Summarise(page.page.Drawing()));
        // As a plot it stays as it is.
        const bool keepsPens = format.name == "plt";
        reports.note(input + ": " + (keepsPens ? note.substr(0, note.find(';')) : note));
    }
    if (options.paper.width > 0.0 &&
        FrameOf(SourceOf(page.page), gist.extent, options).cutsDrawing) {
        reports.note(input + ": page " + std::to_string(page.number) +
                     " is larger than the paper, which cuts it; --fit scales it");
    }
}

// Pens that the look names one by one and that draw nothing, mostly a number mistaken.
void TellUnusedPens(const OpenedPlot& plot, const std::string& input,
                    const ConversionOptions& options, const ConversionReports& reports) {
    std::set<std::int32_t> named;
    for (const auto& [pen, look] : options.write.look.pens) named.insert(pen);
    for (const PenRange& range : options.write.look.only) {
        if (range.first == range.last) named.insert(range.first);
    }
    if (named.empty()) return;
    std::array<bool, 256> used{};
    for (std::size_t page = 0; page < plot.pages.size(); ++page) {
        if (!options.pages.Contains(page + 1)) continue;
        const auto byPen = Summarise(plot.pages[page].Drawing()).byPen;
        for (std::size_t pen = 0; pen < used.size(); ++pen) used[pen] |= byPen[pen] != 0;
    }
    for (const std::int32_t pen : named) {
        const auto number = static_cast<std::size_t>(pen);
        if (number >= used.size() || used[number]) continue;
        reports.note(input + ": pen " + std::to_string(pen) + " draws nothing");
    }
}

std::vector<NumberedPage> PagesToWrite(const OpenedPlot& plot, const std::string& input,
                                       const ConversionOptions& options, const OutputFormat& format,
                                       const ConversionReports& reports) {
    const std::size_t count = plot.pages.size();
    if (count == 0) {
        throw ToolError(input + ": draws nothing, nothing is written", kExitNotAPlot);
    }
    if (const std::size_t highest = options.pages.Highest(); highest > count) {
        throw ToolError(input + ": has no page " + std::to_string(highest) + ", its last one is " +
                        std::to_string(count));
    }
    if (options.tellUnusedPens) TellUnusedPens(plot, input, options, reports);
    std::vector<NumberedPage> pages;
    bool picturesAlone = false;
    for (std::size_t number = 1; number <= count; ++number) {
        if (!options.pages.Contains(number)) continue;
        const PlotPage page = LookedAt(plot.pages[number - 1], options.write.look);
        const PageGist gist = GistOf(page.Drawing());
        const std::string name = input + ": page " + std::to_string(number);
        if (gist.extent.empty) {
            reports.note(name + " shows nothing and is not written");
            continue;
        }
        if (gist.hasPictures && !format.holdsPictures) {
            const bool onlyPictures = !gist.hasOthers;
            reports.note(name + (onlyPictures ? " is pictures alone" : " has pictures") +
                         ", which " + std::string(format.description) + " does not hold" +
                         (onlyPictures ? ", and is not written" : "") +
                         (format.isPlot ? "; --rtl keeps them" : ""));
            picturesAlone = picturesAlone || onlyPictures;
            if (onlyPictures) continue;
        }
        pages.push_back({number, page});
        TellWhatSurprises(input, pages.back(), gist, options.write.page, format, reports);
    }
    if (pages.empty()) {
        throw ToolError(input + (picturesAlone ? ": holds pictures alone" : ": shows nothing") +
                            ", nothing is written",
                        kExitNotAPlot);
    }
    return pages;
}

// The pages' parts of the second half. Writers count each page, or band of a page, from 0 again.
std::function<void(int)> ProgressOfPages(std::size_t pages, const ConversionReports& reports) {
    return [pages, &reports, page = std::size_t{0}, last = 0](int percent) mutable {
        if (percent < last && page + 1 < pages) ++page;
        last = percent;
        const std::size_t done = page * 100 + static_cast<std::size_t>(percent);
        reports.progress(static_cast<int>(50 + done / (2 * pages)), true);
    };
}

// The files of one conversion; none gets its name before the last one is complete.
class Writing {
  public:
    Writing(const OutputFormat& format, WriteOptions options, const ConversionReports& reports)
        : format_(format), options_(std::move(options)), reports_(reports) {}

    void Write(const std::string& path, const std::vector<PlotPage>& pages,
               const std::string& input) {
        ThrowIfInterrupted();
        if (reports_.claim) reports_.claim(path);
        files_.push_back(std::make_unique<OutputFile>(path));
        try {
            format_.write(pages, options_, *files_.back());
        } catch (const PageError& error) {
            throw ToolError(input + ": " + error.what(), error.Status());
        }
        files_.back()->Finish();
        result_.pages += pages.size();
        result_.outputs.push_back(path);
        result_.bytes += files_.back()->Bytes();
    }
    ConversionResult Commit() {
        // The first one last: where it stands, the others do.
        for (auto file = files_.rbegin(); file != files_.rend(); ++file) (*file)->Commit();
        return std::move(result_);
    }

  private:
    const OutputFormat& format_;
    const WriteOptions options_;
    const ConversionReports& reports_;
    std::vector<std::unique_ptr<OutputFile>> files_;
    ConversionResult result_;
};

}  // namespace

std::string NumberedName(const std::string& path, std::size_t number) {
    return std::string(path).insert(EndingAt(path), "-" + std::to_string(number));
}

std::string Describe(const std::string& input, const ConversionResult& result) {
    std::string text = input + ": " + std::to_string(result.pages) +
                       (result.pages == 1 ? " page, " : " pages, ") + std::to_string(result.bytes) +
                       " bytes,";
    for (const std::string& output : result.outputs) text += ' ' + output;
    return text;
}

ConversionResult Convert(const Components& components, const std::string& input,
                         const std::string& output, const OutputFormat& format,
                         const ConversionOptions& options, const ConversionReports& reports) {
    const InputFile file(input);
    const LoadedPlot loaded = LoadPlot(components, file, options.open.force,
                                       [&](int percent) { reports.progress(percent / 2, false); });
    const OpenedPlot& plot = loaded.plot;
    for (const std::string& note : loaded.notes) reports.note(file.Name() + ": " + note);
    const auto pages = PagesToWrite(plot, file.Name(), options, format, reports);

    WriteOptions writeOptions = options.write;
    writeOptions.page.progress = ProgressOfPages(pages.size(), reports);
    writeOptions.page.note = [&](const std::string& note) {
        reports.note(file.Name() + ": " + note);
    };
    BitmapBudget budget{DotsForBitmaps(writeOptions.page.dpi, file.Size())};
    writeOptions.page.budget = &budget;
    writeOptions.facts = FactsOf(file, plot);
    writeOptions.page.title = writeOptions.facts.fileName;
    Writing writing(format, std::move(writeOptions), reports);
    const bool onlyOne = options.pages.IsOnePage() || plot.pages.size() == 1;
    if (format.manyPages) {
        std::vector<PlotPage> all;
        all.reserve(pages.size());
        for (const NumberedPage& page : pages) all.push_back(page.page);
        writing.Write(output, all, file.Name());
    } else if (output == "-" && pages.size() > 1) {
        throw ToolError(file.Name() + ": has " + std::to_string(pages.size()) +
                        " pages, and this format holds one; --page chooses it");
    } else {
        for (const NumberedPage& page : pages) {
            const bool numbered = !onlyOne && output != "-";
            writing.Write(numbered ? NumberedName(output, page.number) : output, {page.page},
                          file.Name());
        }
    }
    return writing.Commit();
}

}  // namespace qm::cli
