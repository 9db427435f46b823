// Round trips: a plot is opened, saved through a save component and opened again. What is written
// and what comes back are compared; failures of the target come back as statuses.
#include "host/document_walker.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

#include "common/packed_bitmap.h"
#include "export/save_filter.h"
#include "host/display_list_player.h"
#include "host/document_node.h"
#include "host/drawing_block.h"
#include "host/page_summary.h"
#include "host/source_and_events.h"
#include "tests/export/exported.h"
#include "tests/host/host_test.h"

namespace {

using namespace qm;

class DocumentWalkerTest : public HostTest {
  protected:
    template <typename Filter = CQmFilterSaveHPGL>
    static HRESULT Save(const std::vector<PlotPage>& pages, RecordingStream& stream,
                        const PageDrawer& drawer = {}) {
        const auto filter = MakeObject<Filter>();
        const auto target = MakeObject<DataObject>(ComPtr<IStream>(&stream), std::wstring());
        return SaveDocument(*filter, target.Get(), nullptr, pages, drawer);
    }
    template <typename Filter = CQmFilterSaveHPGL>
    static std::string Saved(const std::vector<PlotPage>& pages, const PageDrawer& drawer = {}) {
        const auto stream = MakeObject<RecordingStream>();
        EXPECT_EQ(Save<Filter>(pages, *stream, drawer), S_OK);
        return stream->Bytes();
    }
    static std::vector<PlotPage> Reopened(const std::string& saved) {
        OpenedPlot plot;
        EXPECT_EQ(Open(saved, plot), S_OK);
        return plot.pages;
    }
};

// A plot and how what saving makes of it goes on behind kPageStart, without the line ends.
struct Trip {
    const char* name;
    const char* plot;
    const char* text;
};
void PrintTo(const Trip& trip, std::ostream* out) { *out << trip.name; }

constexpr const char* kPageStart = "BPINSP1;TR0;PG;";

// clang-format off
const Trip kTrips[] = {
    {"LinesAndWidth", "PW0.35;PU10,20;PD30,-40;PU;PA0,0;PD5,5;",
     "MC;LT;LT;PC1,0,0,0;SP1;PW0.35,1;PU10,20PD30,-40;PU0,0PD5,5;PU;PG;"},
    {"ChainAsOnePath", "PU10,20;PD30,40,50,60;",
     "MC;LT;LT;PC1,0,0,0;SP1;PW0.00,1;PU10,20PD;PA30,40;PA50,60;PU;PG;"},
    // The pen in front of its colour, the width behind both; a pen that draws nothing is not sent.
    {"PensAndColours", "PC2,255,128,0;PW0.5,2;SP2;SP3;SP2;PU0,0;PD9,0;SP1;PD9,9;PU;SP2;PD0,9;",
     "MC;LT;LT;PC2,255,128,0;SP2;PW0.50,2;PU0,0PD9,0;LT;PC1,0,0,0;SP1;PW0.00,1;PU9,0PD9,9;LT;"
     "PC2,255,128,0;SP2;PW0.50,2;PU9,9PD0,9;PU;PG;"},
    {"PensOfOneColour", "PC2,0,0,0;PD9,0;SP2;PD9,9;",
     "MC;LT;LT;PC1,0,0,0;SP1;PW0.00,1;PU0,0PD9,0;LT;PC2,0,0,0;SP2;PW0.00,2;PU9,0PD9,9;PU;PG;"},
    {"LineStyles", "LT2;PU0,0;PD9,0;LT1;PU;PD0,9;LT4;PU;PD5,5;LT6;PU;PD0,0;LT;PU;PD1,1;",
     "MC;LT2;LT2;PC1,0,0,0;SP1;PW0.00,1;PU0,0PD9,0;LT1;PU9,0PD0,9;LT4;PU0,9PD5,5;LT6;PU5,5PD0,0;"
     "LT;PU0,0PD1,1;PU;PG;"},
    {"MaskPenMode", "PU0,0;MC1,168;PD9,0;MC;PU0,9;PD9,9;",
     "MC1,168;LT;LT;PC1,0,0,0;SP1;PW0.00,1;PU0,0PD9,0;MC;PU0,9PD9,9;PU;PG;"},
    {"Circles", "PW0.35;PU100,200;CI50;PM0;CI20;PM2;FP;",
     "MC;LT;LT;PC1,0,0,0;SP1;PW0.35,1;PU;PA100,200;CI50;PW0.00,1;FT;PU120,200;PD;PM0PA119,201;"},
    // The area's pen is thin, since the sink sets it down where the area begins.
    {"WideOutlineAndArea", "PW1;PA0,0;EA100,50;PA200,0;RA300,50;",
     "MC;LT;LT;PC1,0,0,0;SP1;PW1.00,1;PU0,0PD;PA100,0;PA100,50;PA0,50;PA0,0;PW0.00,1;FT;PU200,0;PD;"
     "PM0PA300,0;PA300,50;PA200,50;PA200,0;PM2;FP;PU;PG;"},
    {"WideDot", "PW1;PU7,7;PD;PU;", "MC;LT;LT;PC1,0,0,0;SP1;PW1.00,1;PU7,7PD7,7;PU;PG;"},
    {"AreaWithHole", "PA0,0;PM0;PD90,0,90,90,0,90;PM1;PU30,30;PD60,30,60,60,30,60;PM2;FP;",
     "MC;LT;LT;PC1,0,0,0;SP1;PW0.00,1;FT;PU0,0PM0PDPA90,0;PA90,90;PA0,90;PM1;PU30,30;PD;"
     "PA60,30;PA60,60;PA30,60;PM2;FP;PU;PG;"},
    {"UserPattern", "RF3,2,2,0,1,1,0;FT11,3;PU0,0;PM0;PD50,0,50,50;PM2;FP;",
     "RF3,2,2,0,1,1,0;MC;LT;LT;PC1,0,0,0;SP1;PW0.00,1;FT11,3PU0,0;PD;PM0PA50,0;PA50,50;PA0,0;"
     "PM2;FP;PU;PG;"},
    {"ShadedBlack", "FT10,50;PU0,0;PM0;PD50,0,50,50;PM2;FP;", "MC;LT;LT;PC1,127,127,127;SP1;"},
    // 12 degrees in steps of six.
    {"ArcAsSteps", "PA1000,0;PD;AA0,0,12;PU;",
     "MC;LT;LT;PC1,0,0,0;SP1;PW0.00,1;PU1000,0PD;PA995,105;PA978,208;"},
    // The strokes come back, the text to search for does not.
    {"OutlinesThatContinue", "PU0,0;PM0;PD9,0,9,9;PM2;EP;PU0,0;PD;PD0,9,0,9,5,5;EA7,8;",
     "MC;LT;LT;PC1,0,0,0;SP1;PW0.00,1;PU0,0PD;PA9,0;PA9,9;PA0,0;PA0,9;PA5,5;PA7,5;PA7,8;PA5,8;PA5,5;PU;PG;"},
    {"WidthsThatComeBack", "PW0.175;PU0,0;PD9,0;PW0.225;PU;PD0,9;",
     "MC;LT;LT;PC1,0,0,0;SP1;PW0.15,1;PU0,0PD9,0;PW0.23,1;PU9,0PD0,9;PU;PG;"},
    {"NothingToFill", "PU0,0;PM0;PD9,0,0,0;PM2;FP;PU0,0;PD9,9;",
     "MC;LT;LT;PC1,0,0,0;SP1;PW0.00,1;PU0,0PD9,9;PU;PG;"},
    {"DotInFrontOfAnArea", "PU0,0;PD;PM0;PD9,0,9,9;PM2;FP;PW1;PU0,0;PD;PM0;PD9,0,9,9;PM2;FP;",
     "MC;LT;LT;PC1,0,0,0;SP1;PW0.00,1;FT;PU0,0;PD;PM0PA9,0;PA9,9;PA0,0;PM2;FP;PW1.00,1;PU0,0PD0,0;"
     "PW0.00,1;PU0,0;PD;PM0PA9,0;PA9,9;PA0,0;PM2;FP;PU;PG;"},
    {"Label", "PA0,0;LBI\003",
     "MC;LT;LT;PC1,0,0,0;SP1;PW0.00,1;PU20,120PD40,120;PU30,120PD30,0;PU20,0PD40,0;PU;PG;"},
    {"OwnDashesBecomeSolid", "UL1,30,70;LT1,-5;PU0,0;PD900,0;",
     "MC;LT;LT;PC1,0,0,0;SP1;PW0.00,1;PU0,0PD900,0;PU;PG;"},
};
// clang-format on

class Trips : public DocumentWalkerTest, public testing::WithParamInterface<Trip> {};

TEST_P(Trips, WriteAndReopen) {
    const auto pages = Pages(GetParam().plot);
    ASSERT_EQ(pages.size(), 1U);
    const std::string saved = Saved(pages);
    std::string text = saved;
    for (const char end : {'\r', '\n'})
        text.erase(std::remove(text.begin(), text.end(), end), text.end());
    const std::string start = kPageStart + std::string(GetParam().text);
    EXPECT_EQ(text.substr(0, start.size()), start);
    const auto again = Reopened(saved);
    ASSERT_EQ(again.size(), 1U);
    EXPECT_EQ(Saved(again), saved);
    const Extent before = Summarise(pages[0].Drawing()).extent;
    const Extent after = Summarise(again[0].Drawing()).extent;
    EXPECT_NEAR(after.minX, before.minX, 1.0);
    EXPECT_NEAR(after.maxX, before.maxX, 1.0);
    EXPECT_NEAR(after.maxY, before.maxY, 1.0);
}

INSTANTIATE_TEST_SUITE_P(DocumentWalker, Trips, testing::ValuesIn(kTrips),
                         [](const auto& test) { return std::string(test.param.name); });

// Pages put together by hand: what no plot file holds.
class HandMadePage {
  public:
    HandMadePage()
        : container_(MakeObject<DocumentNode>(SHORT{QM_CONTAINER})),
          block_(MakeObject<DrawingBlock>()) {}
    DrawingBlock& Block() { return *block_; }
    void Put(const wchar_t* name, const Variant& value) {
        container_->PutAttribute(Bstr(name).Get(), value.Get(), 0);
    }
    std::vector<PlotPage> Made() const { return {PlotPage(*container_, *block_, 0)}; }

  private:
    ComPtr<DocumentNode> container_;
    ComPtr<DrawingBlock> block_;
};

TEST_F(DocumentWalkerTest, PagesAdvanceBeforeEachAndStandTurned) {
    const auto pages = Pages("RO90;PU100,10;PD100,300;PG;SP1;PU0,0;PD0,40;");
    ASSERT_EQ(pages.size(), 2U);
    const std::string page = "\r\nPG;\r\nMC;LT;\r\nLT;\r\nPC1,0,0,0;\r\nSP1;PW0.00,1;\r\nPU";
    // Turned to the left and moved until nothing is left of 0.
    EXPECT_EQ(Saved(pages),
              "BPINSP1;TR0;\r\n" + page + "290,100PD0,100;\r\n" + page + "40,0PD0,0;\r\nPU;PG;");
    EXPECT_EQ(Reopened(Saved(pages)).at(1).Rotation(), 0.0);
}

// Turned about the origin, then moved until nothing is below 0; a line up and a turned ellipse.
TEST_F(DocumentWalkerTest, PagesOfEveryTurn) {
    const std::pair<double, const char*> rows[] = {
        {0.0, "PU100,10PD30,300;"},   {90.0, "PU290,100PD0,30;"},  {180.0, "PU0,290PD70,0;"},
        {270.0, "PU10,0PD300,70;"},   {-90.0, "PU10,0PD300,70;"},  {-180.0, "PU0,290PD70,0;"},
        {-270.0, "PU290,100PD0,30;"}, {45.0, "PU100,10PD30,300;"},
    };
    for (const auto& [rotation, line] : rows) {
        HandMadePage page;
        page.Put(L"InitialRotation", Variant::Double(rotation));
        page.Put(L"DirectionY", Variant::Boolean(true));
        page.Block().AppendLine(100, 10, 30, 300);
        EXPECT_NE(Saved(page.Made()).find(line), std::string::npos)
            << rotation << Saved(page.Made());
    }
}

TEST_F(DocumentWalkerTest, PageWithoutDirectionStandsUpright) {
    HandMadePage page;
    page.Put(L"LpiX", Variant::Double(2032.0));
    page.Block().AppendLine(0, 0, 100, 50);
    // y runs down from one unit above the highest point; two plotter units a document unit.
    EXPECT_NE(Saved(page.Made()).find("PU0,102PD200,2;"), std::string::npos);
    page.Put(L"CropMaxX", Variant::Double(100.0));
    page.Put(L"CropMaxY", Variant::Double(80.0));
    EXPECT_NE(Saved(page.Made()).find("PU0,162PD200,62;"), std::string::npos);
}

TEST_F(DocumentWalkerTest, SpansThatAreNoArcs) {
    const float infinite = std::numeric_limits<float>::infinity();
    HandMadePage page;
    page.Block().AppendArc3(0, 0, 100, 100, 0.0F, 0.0F);
    page.Block().AppendArc3(0, 0, 100, 100, infinite, 90.0F);
    page.Block().AppendArc3(0, 0, 100, 100, 0.0F, infinite);
    EXPECT_EQ(Saved(page.Made()), "BPINSP1;TR0;\r\nPU;PG;");
    // Many turns are one: 60 steps.
    page.Block().AppendArc3(0, 0, 100, 100, 0.0F, 1e9F);
    const std::string saved = Saved(page.Made());
    EXPECT_LT(saved.size(), 1000U);
    EXPECT_NE(saved.find("PU100,"), std::string::npos);
}

// A packed bitmap of `width` x 2 dots whose bytes count up from the bottom row.
std::vector<std::uint8_t> CountingBitmap(std::int32_t width, std::int32_t height, int bits) {
    std::vector<std::uint8_t> bytes(PackedBitmapSize(width, height, bits).value());
    PaletteEntry palette[256] = {};
    for (unsigned i = 0; i < 256; ++i) {
        palette[i] = {static_cast<std::uint8_t>(i), 0, static_cast<std::uint8_t>(255 - i), 0};
    }
    std::uint8_t* row = WritePackedHeader(bytes.data(), width, height, bits, palette);
    const auto used = static_cast<std::size_t>(PackedRowBytes(width, bits));
    unsigned next = 0x80;
    for (std::int32_t y = 0; y < height; ++y, row += PackedStride(width, bits)) {
        for (std::size_t i = 0; i < used; ++i) row[i] = static_cast<std::uint8_t>(next += 37);
        if (bits == 1) row[used - 1] &= static_cast<std::uint8_t>(0xFF00U >> (width % 8));
    }
    return bytes;
}

void Give(const std::vector<std::uint8_t>& packed, PictureSink& sink) {
    const auto bitmap = PackedBitmapView::Parse(packed.data(), packed.size()).value();
    PictureHead head{bitmap.Width(), bitmap.Height(), bitmap.Bits(), 100, {}};
    for (std::uint32_t i = 0; i < bitmap.ColourCount(); ++i) {
        head.palette.push_back(bitmap.Colour(i));
    }
    sink.Begin(head);
    for (std::int32_t y = 0; y < head.height; ++y) sink.Row(bitmap.RowFromTop(y));
}

TEST_F(DocumentWalkerTest, PicturesAreRasterBlocksThatOnlyRtlKeeps) {
    HandMadePage page;
    const auto bitmap = CountingBitmap(20, 10, 24);
    page.Block().AppendDib(0, 0, 203, 102, static_cast<LONG>(bitmap.size()), bitmap.data(), 204);
    page.Block().AppendDib(0, 0, 9, 9, 4, bitmap.data(), 204);  // broken
    EXPECT_EQ(Saved(page.Made()), "BPINSP1;TR0;\r\nPU;PG;");
    // Dots per inch across: 100 and 50; only those count.
    page.Block().AppendDib(406, 0, 0, 300, static_cast<LONG>(bitmap.size()), bitmap.data(), 204);
    page.Put(L"InitialRotation", Variant::Double(90.0));
    const std::string rtl = Saved<CQmFilterSaveHPRTL>(page.Made());
    const std::size_t first = rtl.find("PS203,102;");
    EXPECT_LT(first, rtl.find("PS406,203;"));
    EXPECT_EQ(rtl.find("PS"), first) << rtl.substr(rtl.find("PS"), 20);
}

struct Turned {
    int bits;
    std::int32_t width;
    std::int32_t height;
};
void PrintTo(const Turned& row, std::ostream* out) {
    *out << row.bits << " bits " << row.width << " x " << row.height;
}

class RtlTrips : public DocumentWalkerTest, public testing::WithParamInterface<Turned> {};

// Dots as red, green, blue bytes, row by row from the top.
std::vector<std::uint8_t> DotsOf(const PackedBitmapView& view) {
    const auto rowBytes = std::size_t{3} * static_cast<std::size_t>(view.Width());
    std::vector<std::uint8_t> dots(rowBytes * static_cast<std::size_t>(view.Height()));
    for (std::int32_t y = 0; y < view.Height(); ++y) {
        view.RowToRgb(y, dots.data() + rowBytes * static_cast<std::size_t>(y));
    }
    return dots;
}

class PictureCatcher final : public DisplayListVisitor {
  public:
    void Picture(const DrawingStyle&, const BoxI&, std::int32_t, ByteRun bitmap) override {
        bytes.assign(bitmap.data, bitmap.data + bitmap.size);
        ++count;
    }
    std::vector<std::uint8_t> bytes;
    int count = 0;
};

// The importer turns what is wider than high to the left, what is higher than wide stays. A square
// is turned by half a turn when it is written, which the importer's turn to the left does not undo.
PointI WhereItComesBack(const Turned& row, PointI dot) {
    if (row.width > row.height) return {dot.y, row.width - 1 - dot.x};
    if (row.width == row.height) return {row.height - 1 - dot.y, dot.x};
    return dot;
}

TEST_P(RtlTrips, KeepDots) {
    const Turned& row = GetParam();
    const auto drawn = CountingBitmap(row.width, row.height, row.bits);
    const PageDrawer drawer = [&](const PlotPage&, PictureSink& sink) { Give(drawn, sink); };
    const auto again = Reopened(Saved<CQmFilterSaveHPRTL>(Pages("PD9,9;"), drawer));
    ASSERT_EQ(again.size(), 1U);
    PictureCatcher catcher;
    Play(again[0].Drawing(), catcher);
    ASSERT_EQ(catcher.count, 1);
    const auto before = PackedBitmapView::Parse(drawn.data(), drawn.size());
    const auto after = PackedBitmapView::Parse(catcher.bytes.data(), catcher.bytes.size());
    ASSERT_TRUE(before && after);
    ASSERT_EQ(after->Width(), std::min(row.width, row.height));
    ASSERT_EQ(after->Height(), std::max(row.width, row.height));
    const auto from = DotsOf(*before);
    const auto to = DotsOf(*after);
    for (std::int32_t y = 0; y < row.height; ++y) {
        for (std::int32_t x = 0; x < row.width; ++x) {
            const PointI at = WhereItComesBack(row, {x, y});
            const auto old = 3 * static_cast<std::size_t>(y * row.width + x);
            const auto now = 3 * static_cast<std::size_t>(at.y * after->Width() + at.x);
            EXPECT_TRUE(std::equal(&from[old], &from[old] + 3, &to[now])) << x << ',' << y;
        }
    }
}

constexpr Turned kTurned[] = {{1, 21, 5},  {1, 5, 21},  {8, 21, 5}, {8, 5, 21},
                              {24, 21, 5}, {24, 5, 21}, {24, 8, 8}};
INSTANTIATE_TEST_SUITE_P(DocumentWalker, RtlTrips, testing::ValuesIn(kTurned));

TEST_F(DocumentWalkerTest, FailuresComeBack) {
    const auto pages = Pages("RF3,1,1,1;PW1;PD9,9,9,0;PG;PD5,5;CI9;");
    ASSERT_EQ(pages.size(), 2U);
    const auto filter = MakeObject<CQmFilterSaveHPGL>();
    EXPECT_EQ(SaveDocument(*filter, nullptr, nullptr, pages), E_FAIL);
    const auto noStream = MakeObject<DataObject>(ComPtr<IStream>(), std::wstring());
    EXPECT_EQ(SaveDocument(*filter, noStream.Get(), nullptr, pages), E_FAIL);

    const PageDrawer drawer = [](const PlotPage&, PictureSink& sink) {
        Give(CountingBitmap(10, 9, 24), sink);
    };
    // A medium of any size that is too small.
    const std::size_t vectors = Saved(pages).size();
    const std::size_t rasters = Saved<CQmFilterSaveHPRTL>(pages, drawer).size();
    for (std::size_t room = 0; room < std::max(vectors, rasters); ++room) {
        const auto full = MakeObject<RecordingStream>(room);
        EXPECT_EQ(Save(pages, *full), room < vectors ? STG_E_MEDIUMFULL : S_OK) << room;
        const auto fullToo = MakeObject<RecordingStream>(room);
        EXPECT_EQ(Save<CQmFilterSaveHPRTL>(pages, *fullToo, drawer),
                  room < rasters ? STG_E_MEDIUMFULL : S_OK)
            << room;
    }
    const auto stream = MakeObject<RecordingStream>();
    const auto nothing = [](const PlotPage&, PictureSink&) {};
    EXPECT_EQ(Save(pages, *stream, nothing), E_INVALIDARG);
    const auto noRows = [](const PlotPage&, PictureSink& sink) { sink.Begin({2, 1, 24, 100, {}}); };
    EXPECT_EQ(Save(pages, *stream, noRows), E_INVALIDARG);
    const auto noPaper = [](const PlotPage&, PictureSink&) { throw std::runtime_error("none"); };
    EXPECT_THROW(Save(pages, *stream, noPaper), std::runtime_error);
}

}  // namespace
