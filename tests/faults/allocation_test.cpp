// Memory that runs out: every allocation of a piece of work fails in turn, alone and with all that
// follow. The work is whole or it fails; nothing is leaked (the asan preset would tell), and no
// result lacks a part.
#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <sstream>

#include "common/tool_error.h"
#include "export/save_filter.h"
#include "fuzz/components.h"
#include "fuzz/failing_allocation.h"
#include "host/document_walker.h"
#include "host/source_and_events.h"
#include "render/bitmap/page_bitmap.h"
#include "render/viewer/viewer_writer.h"
#include "replay/replay.h"
#include "tests/render/memory_sink.h"

namespace qm {
namespace {

// Something of everything: two pages, pens, dashes, fills, patterns, clipping, labels, a picture.
const std::string kPlot =
    "IN;SP1;PW.5;PU0,0;PD400,0,400,300;LT2;PD0,300;LT;CI50;AA0,0,90;IW10,10,300,300;PD200,200;IW;"
    "PM0;PD500,500,0,500;PM1;PD9,9,9,5;PM2;FT3,40,45;FP;EP;RF1,2,2,1,0,0,1;FT11,1;RA90,90;FT;"
    "UL1,10,20;LT1;BZ1,1,90,90,180,90,270,1;SI.2,.3;DI1,1;LBab\3PE7?@A;PG;SP2;PD100,100;"
    "\x1b%0A\x1b*t100R\x1b*r8S\x1b*b2M\x1b*b2W\x01\xAA\x1b*b2W\xFF\x55\x1b*rC\x1b%0BPD7,7;PG;";

const char* const kVectors =
    "setting UsePenTable true\npentable\npen 1 1 255 0.01\nattribute PenTable\n"
    "attribute NodeID \"Page 1\"\nobject 1203\nAppendPen 1\nAppendLine 0 0 5 5\n"
    "AppendPolygon 3 true : 0,0 1,0 1,1\nDefineFillPattern 1 2 2 80004000\nAppendFillStyle 3 1\n"
    "AppendBezier 4 : 0,0 1,0 1,1 2,2\nAppendLogFont 40 10 \"Arial\"\nAppendText 1 1 \"abc\"\n";
const char* const kPicture =
    "object 1202\nCreateRasterStorage 3 2 1 0 100 100 0\nAddScanline1 0 0 2 1 A040\nend\n";

// What a work came to: its output, or that it failed.
using Work = std::function<std::string(const OpenedPlot& opened)>;
const char* const kFailed = "failed";

std::string Outcome(const Work& work, const OpenedPlot& opened) {
    try {
        return work(opened);
    } catch (const std::bad_alloc&) {
        return kFailed;
    }
}

std::string Opened(const OpenedPlot&) {
    ComPtr<IQmDataObject> source;
    OpenedPlot plot;
    if (OpenMemoryObject(kPlot, source.Put()) != S_OK) return kFailed;
    if (OpenPlot(*source.Get(), {}, plot) != S_OK) return kFailed;
    MemorySink sink;
    for (const PlotPage& page : plot.pages) WriteSvg(SourceOf(page), PageOptions(), sink);
    return sink.text;
}

template <typename Write>
Work ForEachPage(Write write) {
    return [write](const OpenedPlot& plot) {
        MemorySink sink;
        PageOptions options;
        options.dpi = 20;
        for (const PlotPage& page : plot.pages) write(SourceOf(page), options, sink);
        return sink.text;
    };
}

template <typename Filter>
std::string Saved(const OpenedPlot& plot) {
    ComPtr<IStream> stream;
    if (FAILED(CreateStreamOnHGlobal(nullptr, TRUE, stream.Put()))) return kFailed;
    const auto filter = MakeObject<Filter>();
    const auto target = MakeObject<DataObject>(stream, std::wstring());
    if (!filter || !target) return kFailed;
    const PageDrawer draw = [](const PlotPage& page, PictureSink& sink) {
        PageOptions options;
        options.dpi = 20;
        DrawBitmap(SourceOf(page), options, 24, sink);
    };
    constexpr bool kPictures = std::is_same_v<Filter, CQmFilterSaveHPRTL>;
    const HRESULT status = SaveDocument(*filter.Get(), target.Get(), nullptr, plot.pages,
                                        kPictures ? draw : PageDrawer());
    if (FAILED(status)) return kFailed;
    std::string bytes(100000, '\0');
    ULONG done = 0;
    stream->Seek({}, STREAM_SEEK_SET, nullptr);
    stream->Read(bytes.data(), static_cast<ULONG>(bytes.size()), &done);
    bytes.resize(done);
    return bytes;
}

Work Replayed(const char* script, ReplayFormat format) {
    return [=](const OpenedPlot&) -> std::string {
        const auto stream = MakeObject<fuzz::NullStream>();
        if (!stream) return kFailed;
        std::ostringstream messages;
        const int status = ReplayScript(script, "test", format, stream.Get(), messages);
        return status == kExitSuccess ? "" : kFailed;
    };
}

std::string Viewed(const OpenedPlot& plot) {
    MemorySink sink;
    ViewerDocument document{"a.plt", "HPGL/2", 9, {}};
    for (const PlotPage& page : plot.pages) document.pages.push_back(SourceOf(page));
    WriteViewer(document, PageOptions(), sink);
    return sink.text;
}

std::string Printed(const OpenedPlot& plot) {
    MemorySink sink;
    std::vector<PageSource> pages;
    for (const PlotPage& page : plot.pages) pages.push_back(SourceOf(page));
    WritePdf(pages, PageOptions(), sink);
    return sink.text;
}

struct Row {
    const char* name;
    Work work;
};
void PrintTo(const Row& row, std::ostream* out) { *out << row.name; }

class Exhausted : public testing::TestWithParam<Row> {};

TEST_P(Exhausted, MemoryMakesTheWorkFail) {
    using Reach = FailingAllocation::Reach;
    const fuzz::Components components;
    const OpenedPlot opened = fuzz::Components::Open(kPlot);
    const Work& work = GetParam().work;
    const LONG before = LiveObjectCount();
    // The first time, what is kept for later times is made.
    work(opened);
    std::size_t count = 0;
    std::string whole;
    {
        const FailingAllocation counter;
        whole = work(opened);
        count = counter.Count();
    }
    ASSERT_NE(whole, kFailed);
    ASSERT_GT(count, 5U);
    RecordProperty("allocations", static_cast<int>(count));
    for (const Reach reach : {Reach::kOne, Reach::kAllFromThere}) {
        std::size_t harmless = 0;
        for (std::size_t number = 0; number < count; ++number) {
            std::string outcome;
            {
                const FailingAllocation failing(number, reach);
                outcome = Outcome(work, opened);
            }
            if (outcome == whole) ++harmless;
            ASSERT_TRUE(outcome == kFailed || outcome == whole)
                << "allocation " << number << " of " << count << " is missed";
            ASSERT_EQ(LiveObjectCount(), before) << number;
        }
        EXPECT_LT(harmless, count);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Faults, Exhausted,
    testing::Values(Row{"Open", Opened}, Row{"Svg", ForEachPage(WriteSvg)},
                    Row{"Png", ForEachPage(WritePng)}, Row{"Pdf", Printed}, Row{"Viewer", Viewed},
                    Row{"SaveHpgl", Saved<CQmFilterSaveHPGL>},
                    Row{"SaveRtl", Saved<CQmFilterSaveHPRTL>},
                    Row{"ReplayHpgl", Replayed(kVectors, ReplayFormat::kHpgl)},
                    Row{"ReplayRtl", Replayed(kPicture, ReplayFormat::kHprtl)}),
    [](const auto& row) { return std::string(row.param.name); });

// A writer that is asked to stop stops, at whichever step, and takes nothing along.
TEST(AbortedWriters, AtEveryStep) {
    const fuzz::Components components;
    const OpenedPlot opened = fuzz::Components::Open(kPlot);
    const std::vector<PageSource> pages{SourceOf(opened.pages.front()),
                                        SourceOf(opened.pages.back())};
    const std::function<void(const PageOptions&, OutputSink&)> writers[] = {
        [&](const auto& options, auto& sink) { WritePng(pages.front(), options, sink); },
        [&](const auto& options, auto& sink) { WritePdf(pages, options, sink); },
        [&](const auto& options, auto& sink) {
            WriteViewer({"a.plt", "HPGL/2", 9, pages}, options, sink);
        },
    };
    for (const auto& write : writers) {
        int steps = 0;
        int last = INT_MAX;
        const auto step = [&] {
            if (steps++ == last) throw PageError("stop");
        };
        PageOptions options;
        options.dpi = 20;
        options.checkpoint = step;
        options.progress = [&](int) { step(); };
        MemorySink whole;
        write(options, whole);
        const int count = steps;
        ASSERT_GT(count, 0);
        for (last = 0; last < count; ++last) {
            steps = 0;
            MemorySink sink;
            EXPECT_THROW(write(options, sink), PageError) << last;
            EXPECT_EQ(whole.text.compare(0, sink.text.size(), sink.text), 0) << last;
        }
    }
}

}  // namespace
}  // namespace qm
