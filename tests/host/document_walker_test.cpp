// Round trips: a plot is opened, saved through a save component and opened again. What is written
// and what comes back are compared; failures of the target come back as statuses.
#include "host/document_walker.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <sstream>
#include <stdexcept>

#include "common/packed_bitmap.h"
#include "export/save_filter.h"
#include "host/display_list_player.h"
#include "host/document_node.h"
#include "host/drawing_block.h"
#include "host/source_and_events.h"
#include "import/qm_filter_hpgl.h"
#include "server/class_factory.h"
#include "tests/export/exported.h"

namespace {

using namespace qm;

// What a page shows, a primitive a line, in one way for shapes that are the same picture:
// rectangles are polygons, points on the spot do not lengthen a path, and the dot that the thinnest
// pen leaves where an area begins is left out.
class ShownPrinter final : public DisplayListVisitor {
  public:
    std::string Text() const { return out_.str(); }

    void Lines(const DrawingStyle& style, PointSpan points) override {
        bool moves = false;
        for (const PointI point : points) moves = moves || !(point == points[0]);
        if (!moves && style.lineWidth == 0) return;
        out_ << (moves ? "path" : "dot");
        PrintPoints(points);
        Print(style, false);
    }
    void Rectangle(const DrawingStyle& style, const BoxI& box, bool filled) override {
        const PointI corners[] = {box.a, {box.b.x, box.a.y}, box.b, {box.a.x, box.b.y}, box.a};
        Polygon(style, {corners, 5}, filled);
    }
    void Circle(const DrawingStyle& style, PointI centre, std::int32_t radius,
                bool filled) override {
        out_ << (filled ? "disc" : "circle");
        Print(centre);
        out_ << " r" << radius;
        Print(style, filled);
    }
    void Polygon(const DrawingStyle& style, PointSpan points, bool filled) override {
        if (!filled) return Lines(style, points);
        PrintRing("area", points);
        Print(style, true);
    }
    void PolyPolygon(const DrawingStyle& style, const Rings& rings, bool) override {
        const PointI* ring = rings.points.data;
        for (std::size_t i = 0; i < rings.count; ++i) {
            const auto count = static_cast<std::size_t>(rings.lengths[i]);
            PrintRing(i == 0 ? "area" : " and", {ring, count});
            ring += count;
        }
        Print(style, true);
    }
    void Picture(const DrawingStyle&, const BoxI& box, std::int32_t, ByteRun) override {
        out_ << "picture";
        Print(box.a);
        Print(box.b);
        out_ << '\n';
    }
    void Pattern(const FillPattern& pattern) override {
        out_ << "pattern " << pattern.index << ' ' << pattern.width << 'x' << pattern.height;
        for (std::size_t i = 0; i < pattern.bits.size; ++i)
            out_ << ' ' << int{pattern.bits.data[i]};
        out_ << '\n';
    }

  private:
    // Closing points, however many, are left out.
    void PrintRing(const char* name, PointSpan points) {
        while (points.count > 1 && points[points.count - 1] == points[0]) --points.count;
        out_ << name;
        PrintPoints(points);
    }
    void PrintPoints(PointSpan points) {
        for (std::size_t i = 0; i < points.count; ++i) {
            if (i == 0 || !(points[i] == points[i - 1])) Print(points[i]);
        }
    }
    void Print(PointI point) { out_ << ' ' << point.x << ',' << point.y; }
    void Print(const DrawingStyle& style, bool filled) {
        const std::uint32_t colour = filled ? style.fillColour : style.drawColour;
        out_ << " pen " << style.pen << " bgr " << std::hex << colour << std::dec;
        if (filled) {
            out_ << " fill " << style.fillKind << ' ' << style.fillIndex;
        } else {
            out_ << " width " << style.lineWidth << " style " << style.lineStyle;
        }
        out_ << " mode " << style.drawMode << '\n';
    }

    std::ostringstream out_;
};

std::string Shown(const PlotPage& page) {
    ShownPrinter printer;
    Play(page.Drawing(), printer);
    return printer.Text();
}

class DocumentWalkerTest : public testing::Test {
  protected:
    void SetUp() override {
        before_ = LiveObjectCount();
        classes_ = std::make_unique<HostClasses>();
        ASSERT_EQ(classes_->Status(), S_OK);
        const auto factory = MakeObject<ClassFactory>(&CreateQmFilterHPGL);
        ASSERT_EQ(CoRegisterClassObject(CLSID_QmFilterHPGL, factory.Get(), CLSCTX_INPROC_SERVER,
                                        REGCLS_MULTIPLEUSE, &cookie_),
                  S_OK);
    }
    void TearDown() override {
        CoRevokeClassObject(cookie_);
        classes_.reset();
        EXPECT_EQ(LiveObjectCount(), before_) << "objects leaked";
    }

    static OpenedPlot Open(const std::string& bytes) {
        ComPtr<IQmDataObject> source;
        OpenedPlot plot;
        EXPECT_EQ(OpenMemoryObject(bytes, source.Put()), S_OK);
        EXPECT_EQ(OpenPlot(*source, {}, plot), S_OK);
        return plot;
    }
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

    LONG before_ = 0;
    DWORD cookie_ = 0;
    std::unique_ptr<HostClasses> classes_;
};

// A plot, as long as detection wants it, and what saving makes of it behind the state that every
// page begins with (kStart). `reopened` is null where the same comes back.
struct Trip {
    const char* name;
    const char* plot;
    const char* text;
    const char* reopened;
};
void PrintTo(const Trip& trip, std::ostream* out) { *out << trip.name; }

constexpr const char* kPageStart = "BPINSP1;TR0;\r\n\r\nPG;\r\n";

// clang-format off
const Trip kTrips[] = {
    {"LinesAndWidth", "PW0.35;PU10,20;PD30,-40;PU;PA0,0;PD5,5;",
     "MC;LT;\r\nLT;\r\nPC1,0,0,0;\r\nSP1;PW0.35,1;\r\nPU10,20PD30,-40;\r\nPU0,0PD5,5;\r\n",
     nullptr},
    {"ChainAsOnePath", "PU10,20;PD30,40,50,60;",
     "MC;LT;\r\nLT;\r\nPC1,0,0,0;\r\nSP1;PW0.00,1;\r\nPU10,20PD;PA30,40;\r\nPA50,60;\r\n", nullptr},
    // The pen in front of its colour, the width behind both; a pen that draws nothing is not sent.
    {"PensAndColours", "PC2,255,128,0;PW0.5,2;SP2;SP3;SP2;PU0,0;PD9,0;SP1;PD9,9;PU;SP2;PD0,9;",
     nullptr, nullptr},
    {"LineStyles", "LT2;PU0,0;PD9,0;LT1;PU;PD0,9;LT4;PU;PD5,5;LT6;PU;PD0,0;LT;PU;PD1,1;", nullptr,
     nullptr},
    {"MaskPenMode", "PU0,0;MC1,168;PD9,0;MC;PU0,9;PD9,9;", nullptr, nullptr},
    {"Circles", "PW0.35;PU100,200;CI50;PM0;CI20;PM2;FP;", nullptr, nullptr},
    // The area's pen is thin, since the sink sets it down where the area begins.
    {"WideOutlineAndArea", "PW1;PA0,0;EA100,50;PA200,0;RA300,50;",
     "MC;LT;\r\nLT;\r\nPC1,0,0,0;\r\nSP1;PW1.00,1;\r\nPU0,0PD;PA100,0;\r\nPA100,50;\r\nPA0,50;\r\n"
     "PA0,0;\r\nPW0.00,1;\r\nFT;PU200,0;PD;PM0\r\nPA300,0;\r\nPA300,50;\r\nPA200,50;\r\n"
     "PA200,0;\r\nPA200,0;PM2;FP;\r\n", nullptr},
    {"WideDot", "PW1;PU7,7;PD;PU;", nullptr, nullptr},
    {"AreaWithHole", "PA0,0;PM0;PD90,0,90,90,0,90;PM1;PU30,30;PD60,30,60,60,30,60;PM2;FP;",
     "MC;LT;\r\nLT;\r\nPC1,0,0,0;\r\nSP1;PW0.00,1;\r\nFT;PU0,0PM0PD", nullptr},
    {"UserPattern", "RF3,2,2,0,1,1,0;FT11,3;PU0,0;PM0;PD50,0,50,50;PM2;FP;",
     "RF3,2,2,0,1,1,0;MC;LT;\r\nLT;\r\nPC1,0,0,0;\r\nSP1;PW0.00,1;\r\nFT11,3PU0,0;PD;PM0\r\n",
     nullptr},
    {"ShadedBlack", "FT10,50;PU0,0;PM0;PD50,0,50,50;PM2;FP;",
     "MC;LT;\r\nLT;\r\nPC1,127,127,127;\r\n", nullptr},
    // 12 degrees in steps of six.
    {"ArcAsSteps", "PA1000,0;PD;AA0,0,12;PU;", nullptr,
     "path 1000,0 995,105 978,208 pen 1 bgr 0 width 0 style 0 mode 13\n"},
    // The strokes come back, the text to search for does not.
    {"Label", "PA0,0;LBI\003", nullptr, nullptr},
    {"OwnDashesBecomeSolid", "UL1,30,70;LT1,-5;PU0,0;PD900,0;", nullptr, nullptr},
};
// clang-format on

class Trips : public DocumentWalkerTest, public testing::WithParamInterface<Trip> {};

TEST_P(Trips, WriteAndReopen) {
    const Trip& trip = GetParam();
    const OpenedPlot plot = Open("IN;SP1;PU;PU;PU;PU;PU;PU;" + std::string(trip.plot));
    ASSERT_EQ(plot.pages.size(), 1U);
    const std::string saved = Saved(plot.pages);
    const std::string start = kPageStart + std::string(trip.text != nullptr ? trip.text : "");
    EXPECT_EQ(saved.substr(0, start.size()), start);
    EXPECT_EQ(saved.substr(saved.size() - 6), "PU;PG;");
    const OpenedPlot again = Open(saved);
    ASSERT_EQ(again.pages.size(), 1U);
    EXPECT_EQ(Shown(again.pages[0]),
              trip.reopened != nullptr ? trip.reopened : Shown(plot.pages[0]));
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
    std::vector<PlotPage> Pages() const { return {PlotPage(*container_, *block_)}; }

  private:
    ComPtr<DocumentNode> container_;
    ComPtr<DrawingBlock> block_;
};

TEST_F(DocumentWalkerTest, PagesAdvanceBeforeEachAndStandTurned) {
    const OpenedPlot plot = Open("IN;SP1;PU;PU;PU;PU;RO90;PU100,10;PD100,300;PG;SP1;PU0,0;PD0,40;");
    ASSERT_EQ(plot.pages.size(), 2U);
    ASSERT_EQ(plot.pages[0].Rotation(), 90.0);
    const std::string page = "\r\nPG;\r\nMC;LT;\r\nLT;\r\nPC1,0,0,0;\r\nSP1;PW0.00,1;\r\nPU";
    // Turned to the left and moved until nothing is left of 0.
    EXPECT_EQ(Saved(plot.pages),
              "BPINSP1;TR0;\r\n" + page + "290,100PD0,100;\r\n" + page + "40,0PD0,0;\r\nPU;PG;");
    const OpenedPlot again = Open(Saved(plot.pages));
    ASSERT_EQ(again.pages.size(), 2U);
    EXPECT_EQ(again.pages[0].Rotation(), 0.0);
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
        EXPECT_NE(Saved(page.Pages()).find(line), std::string::npos)
            << rotation << Saved(page.Pages());
    }
}

TEST_F(DocumentWalkerTest, PageWithoutDirectionStandsUpright) {
    HandMadePage page;
    page.Put(L"LpiX", Variant::Double(2032.0));
    page.Block().AppendLine(0, 0, 100, 50);
    // y runs down from one unit above the highest point; two plotter units a document unit.
    EXPECT_NE(Saved(page.Pages()).find("PU0,102PD200,2;"), std::string::npos);
    page.Put(L"CropMaxX", Variant::Double(100.0));
    page.Put(L"CropMaxY", Variant::Double(80.0));
    EXPECT_NE(Saved(page.Pages()).find("PU0,162PD200,62;"), std::string::npos);
}

TEST_F(DocumentWalkerTest, SpansThatAreNoArcs) {
    const float infinite = std::numeric_limits<float>::infinity();
    HandMadePage page;
    page.Block().AppendArc3(0, 0, 100, 100, 0.0F, 0.0F);
    page.Block().AppendArc3(0, 0, 100, 100, infinite, 90.0F);
    page.Block().AppendArc3(0, 0, 100, 100, 0.0F, infinite);
    EXPECT_EQ(Saved(page.Pages()), "BPINSP1;TR0;\r\nPU;PG;");
    // Many turns are one: 60 steps.
    page.Block().AppendArc3(0, 0, 100, 100, 0.0F, 1e9F);
    const std::string saved = Saved(page.Pages());
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

TEST_F(DocumentWalkerTest, PicturesAreRasterBlocksThatOnlyRtlKeeps) {
    HandMadePage page;
    const auto bitmap = CountingBitmap(20, 10, 24);
    page.Block().AppendDib(0, 0, 203, 102, static_cast<LONG>(bitmap.size()), bitmap.data(), 204);
    page.Block().AppendDib(0, 0, 9, 9, 4, bitmap.data(), 204);  // broken
    EXPECT_EQ(Saved(page.Pages()), "BPINSP1;TR0;\r\nPU;PG;");
    // Dots per inch across: 100 and 50; only those count.
    page.Block().AppendDib(406, 0, 0, 300, static_cast<LONG>(bitmap.size()), bitmap.data(), 204);
    page.Put(L"InitialRotation", Variant::Double(90.0));
    const std::string rtl = Saved<CQmFilterSaveHPRTL>(page.Pages());
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
    const OpenedPlot plot = Open("IN;SP1;PU;PU;PU;PU;PU;PU;PD9,9;");
    const OpenedPlot again = Open(Saved<CQmFilterSaveHPRTL>(plot.pages, [&](const PlotPage&) {
        return PageBitmap{drawn, 100};
    }));
    ASSERT_EQ(again.pages.size(), 1U);
    PictureCatcher catcher;
    Play(again.pages[0].Drawing(), catcher);
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
    const OpenedPlot plot = Open("IN;SP1;PU;PU;PU;PU;RF3,1,1,1;PW1;PD9,9,9,0;PG;PD5,5;CI9;");
    ASSERT_EQ(plot.pages.size(), 2U);
    const auto filter = MakeObject<CQmFilterSaveHPGL>();
    EXPECT_EQ(SaveDocument(*filter, nullptr, nullptr, plot.pages), E_FAIL);
    const auto noStream = MakeObject<DataObject>(ComPtr<IStream>(), std::wstring());
    EXPECT_EQ(SaveDocument(*filter, noStream.Get(), nullptr, plot.pages), E_FAIL);

    const PageDrawer drawer = [](const PlotPage&) {
        return PageBitmap{CountingBitmap(9, 9, 24), 100};
    };
    // A medium of any size that is too small.
    const std::size_t vectors = Saved(plot.pages).size();
    const std::size_t rasters = Saved<CQmFilterSaveHPRTL>(plot.pages, drawer).size();
    for (std::size_t room = 0; room < std::max(vectors, rasters); ++room) {
        const auto full = MakeObject<RecordingStream>(room);
        EXPECT_EQ(Save(plot.pages, *full), room < vectors ? STG_E_MEDIUMFULL : S_OK) << room;
        const auto fullToo = MakeObject<RecordingStream>(room);
        EXPECT_EQ(Save<CQmFilterSaveHPRTL>(plot.pages, *fullToo, drawer),
                  room < rasters ? STG_E_MEDIUMFULL : S_OK)
            << room;
    }
    const auto stream = MakeObject<RecordingStream>();
    EXPECT_EQ(Save(plot.pages, *stream, [](const PlotPage&) { return PageBitmap{}; }),
              E_INVALIDARG);
    EXPECT_THROW(Save(plot.pages, *stream,
                      [](const PlotPage&) -> PageBitmap { throw std::runtime_error("no paper"); }),
                 std::runtime_error);
}

}  // namespace
