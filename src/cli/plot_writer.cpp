#include "cli/plot_writer.h"

#include <algorithm>
#include <cstdint>
#include <new>
#include <string>

#include "cli/sink_stream.h"
#include "common/numbers.h"
#include "common/tool_error.h"
#include "common/work_budget.h"
#include "export/save_filter.h"
#include "host/document_walker.h"
#include "host/source_and_events.h"
#include "platform/text.h"
#include "render/bitmap/own_picture.h"
#include "render/bitmap/page_bitmap.h"
#include "render/page_frame.h"

namespace qm::cli {

namespace {

ComPtr<IQmFilterSave> MakeSaveFilter(bool rtl) {
    ComPtr<IQmFilterSave> filter;
    if (rtl) {
        filter.Attach(MakeObject<CQmFilterSaveHPRTL>().Detach());
    } else {
        filter.Attach(MakeObject<CQmFilterSaveHPGL>().Detach());
    }
    if (!filter) throw std::bad_alloc();
    return filter;
}

constexpr double kTurnOfHighPages = -90.0;

int DpiOf(const PlotOptions& options) { return std::max(1, RoundToInt32(options.rtlDpi)); }

// For all pages together, of which each knows the size of the plot.
WorkBudget DotsOf(const std::vector<PlotPage>& pages, const PlotOptions& options) {
    const std::uint64_t bytes = pages.empty() ? 0 : SourceOf(pages.front()).sourceBytes;
    return bytes == 0 ? WorkBudget() : DotsForBitmaps(DpiOf(options), bytes);
}

// The picture has a whole number of dots per inch in the file, so it is drawn with one, and without
// a margin, which would grow each time that the file is converted. Other programs show only what is
// wider than high as it is meant, so a high page is drawn turned.
PageDrawer DrawerOf(PageOptions page, const PlotOptions& options, BitmapBudget& budget) {
    const int dpi = DpiOf(options);
    page.dpi = dpi;
    page.budget = &budget;
    page.marginMillimetres = 0.0;
    page.hairlineMillimetres = 0.0;  // the thinnest line of the plotter
    return [page, dpi, bits = options.bits](const PlotPage& source, PictureSink& sink) {
        SquareWidener widener(sink);
        PageSource drawn = SourceOf(source);
        if (DrawOwnPicture(drawn, dpi, bits, widener)) return;
        const PageFrame frame = FrameOf(drawn, GistOf(*drawn.drawing).extent, page);
        if (frame.height >= frame.width) drawn.rotation += kTurnOfHighPages;
        DrawBitmap(drawn, page, bits, widener);
    };
}

}  // namespace

void WritePlot(const std::vector<PlotPage>& pages, const PageOptions& page,
               const PlotOptions& options, OutputSink& sink) {
    const auto filter = MakeSaveFilter(options.rtl);
    const auto stream = MakeObject<SinkStream>(sink);
    const auto target = MakeObject<DataObject>(ComPtr<IStream>(stream.Get()), std::wstring());
    if (!stream || !target) throw std::bad_alloc();
    BitmapBudget budget{DotsOf(pages, options)};
    const HRESULT status =
        SaveDocument(*filter.Get(), target.Get(), nullptr, pages,
                     options.rtl ? DrawerOf(page, options, budget) : PageDrawer());
    stream->ThrowFailure();
    if (status == E_OUTOFMEMORY) throw std::bad_alloc();
    if (FAILED(status)) throw PageError("the plot cannot be saved: " + StatusName(status));
}

}  // namespace qm::cli
