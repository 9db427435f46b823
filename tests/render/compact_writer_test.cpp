// Compact plots: what they say, that they settle, and that a reader finds the same drawing in them.
#include "host/display_list_player.h"
#include "render/bitmap/page_painter.h"
#include "render/compact/compact_plot.h"
#include "tests/host/host_test.h"
#include "tests/render/bitmap/drawn_page.h"
#include "tests/render/memory_sink.h"

namespace {

using namespace qm;

std::string Compact(const std::vector<PlotPage>& pages) {
    std::vector<PageSource> sources;
    sources.reserve(pages.size());
    for (const PlotPage& page : pages) sources.push_back(SourceOf(page));
    MemorySink sink;
    WriteCompactPlot(sources, PageOptions(), sink);
    return sink.text;
}

struct CompactCase {
    const char* name;
    const char* plot;
    const char* text;  // behind the header; PE's digits as d, those that end a number as e
};

void PrintTo(const CompactCase& row, std::ostream* out) { *out << row.name; }

// clang-format off
const CompactCase kCompact[] = {
    {"lines that meet are one", "PW0.35;PU10,5;PD90,5,90,50;PU90,50;PD9,50;",
     "PC1,0,0,0;PW.35,1;SP1;PE<=ee_eeeYebee;PG;\n"},
    {"dots", "PW0.35;PU9,9;PD;PU20,9;PD;PD25,9;PU30,9;PD31,9,31,9;", ""},
    {"dashes and ends keep their lines apart", "PW0.35;LT2;PD9,0;PU9,0;PD9,9;LT;LA1,1;PD0,9;PU0,9;PD0,0;LA1,2,2,5;PD;", ""},
    {"line types of the plot", "PW0.5;UL1,8,4,0,4;LT1;PD90,0;LT;PD90,90;LT4;PD0,90;LT1;PD0,0;UL1,3;LT1;PD9,9;", ""},
    {"widths", "PW0.36;PD9,0;PW0.025;PD9,9;PW0.05;PD0,9;PW1.4;PD0,0;PW0;PD9,9;", ""},
    {"pens are sorted", "PW1;PD90,0;SP2;PU0,99;PD90,99;SP1;PU0,200;PD90,200;SP2;PU0,300;PD90,300;",
     "PC1,0,0,0;PW1.00,1;SP1;PE<=eesee<teOesee;PC2,255,0,0;PW1.00,2;SP2;PE<teJesee<teQesee;PG;\n"},
    {"areas keep the order", "PW1;RA90,90;SP2;PU0,10;PD90,10;SP1;PU0,20;RA50,50;", ""},
    {"rectangles and circles", "PW1;PU10,10;EA90,60;RA40,30;RR-5,-5;PU50,50;CI20;CI5;PU50,50;PD60,60;", ""},
    {"areas with holes", "PM0;PD90,0,90,90,0,90;PM1;PU20,20;PD40,20,40,40;PM1;PU50,50;PD60,50,60,60,50,60;PM2;FP;PD9,9;", ""},
    {"areas with patterns", "RF2,4,2,1,0,0,0,0,0,1,0;FT11,2;PM0;PD90,0,90,90;PM2;FP;FT;PM0;PD0,0,90,9;PM2;FP;", ""},
    {"shades and draw modes", "FT10,40;PM0;PD90,0,90,90;PM2;FP;MC1,168;SP2;PD0,0;MC;PD9,9;", ""},
    {"a long line", "PW1;PM0;PE<=\xBF\xBF\xC1\xC1\xC1\xC1;PM2;EP;", ""},
    {"far away", "PW1;PU-2000000000,2000000000;PD2000000000,-2000000000;", ""},
    {"pages turned, pens anew", "PW1;PD90,0;PG;RO90;SP2;PW0.5;PD80,0;PG;PD9,9;PG;",
     "PC1,0,0,0;PW1.00,1;SP1;PE<=eesee;PG;\nRO90;PC2,255,0,0;PW.50,2;SP2;PE<=seeee;PG;\nPC0,0,0,0;PW0,0;SP0;PE<=_eeNee;PG;\n"},
};
// clang-format on

class CompactPlots : public HostTest, public testing::WithParamInterface<CompactCase> {
  protected:
    static std::string Readable(const std::string& text) {
        std::string readable;
        for (const char c : text) {
            const auto byte = static_cast<unsigned char>(c);
            readable += byte >= 191 ? 'e' : c;
        }
        return readable;
    }
    static std::vector<PlotPage> Read(const std::string& plot) {
        OpenedPlot opened;
        EXPECT_EQ(Open(plot, opened), S_OK);
        return opened.pages;
    }
    static void ExpectSame(const std::vector<PlotPage>& pages, const std::vector<PlotPage>& again) {
        ASSERT_EQ(again.size(), pages.size());
        for (std::size_t i = 0; i < pages.size(); ++i) {
            EXPECT_EQ(again[i].Rotation(), pages[i].Rotation());
            PageOptions options = bitmap::DotForDot();
            options.smooth = false;
            const Extent extent = Summarise(pages[i].Drawing()).extent;
            if (extent.Width() > 30000.0) options.dpi = 1e-3;
            const auto drawn = bitmap::Draw(pages[i].Drawing(), options);
            EXPECT_EQ(bitmap::Draw(again[i].Drawing(), options).dots, drawn.dots);
        }
    }
};

TEST_P(CompactPlots, SettleAndShowTheSame) {
    const CompactCase& row = GetParam();
    const auto pages = Pages(row.plot);
    const std::string plot = Compact(pages);
    const std::string text = plot.substr(plot.find('\n') + 1);
    if (*row.text != '\0') {
        EXPECT_EQ(Readable(text), row.text);
    }
    const auto again = Read(plot);
    EXPECT_EQ(Compact(again), plot) << Readable(text) << Readable(Compact(again));
    ExpectSame(pages, again);
}

INSTANTIATE_TEST_SUITE_P(Render, CompactPlots, testing::ValuesIn(kCompact), [](const auto& test) {
    std::string name = test.param.name;
    for (char& c : name) c = c >= 'a' && c <= 'z' ? c : '_';
    return name;
});

// They are not drawn the same: by lines that leave them by half a unit.
TEST_F(CompactPlots, ArcsSettle) {
    const std::string plot =
        Compact(Pages("PW1;PU100,0;PD;AA0,0,120;AA0,0,-400;PU300,300;AT350,350,400,300;"));
    EXPECT_EQ(Compact(Read(plot)), plot);
    EXPECT_NE(plot.find("PE<="), std::string::npos);
}

// A reader takes 255 points at a time.
TEST_F(CompactPlots, LongLinesGoOn) {
    std::string commands = "PW1;PU0,0;PD";
    for (int i = 1; i <= 1000; ++i) {
        commands += std::to_string(i * 10) + ',' + std::to_string(i % 7) + ',';
    }
    const auto pages = Pages(commands + "0,0;");
    const std::string plot = Compact(pages);
    EXPECT_LT(plot.size(), 2200U);
    const auto again = Read(plot);
    EXPECT_EQ(Compact(again), plot);
    ExpectSame(pages, again);
}

}  // namespace
