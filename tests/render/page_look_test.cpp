// Pages with another look, as their SVG shows it.
#include "render/page_look.h"

#include "common/packed_bitmap.h"
#include "host/display_list_player.h"
#include "render/page_writers.h"
#include "tests/host/host_test.h"
#include "tests/render/memory_sink.h"

namespace {

using namespace qm;

struct LookCase {
    const char* name;
    const char* plot;
    PageLook look;
    const char* paths;
};

void PrintTo(const LookCase& row, std::ostream* out) { *out << row.name; }

constexpr const char* kTwoPens = "PW0.5,1;PW0,2;PD9,0;SP2;PC2,0,255,0;PU5,5;PD9,5;";

// The elements that draw, with what their groups say of colour and width.
std::string Drawn(const PlotPage& page) {
    PageOptions options;
    options.marginMillimetres = 0.0;
    MemorySink sink;
    WriteSvg(SourceOf(page), options, sink);
    std::istringstream lines(sink.text);
    std::string drawn;
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind("<g ", 0) == 0) drawn += line.substr(line.find(" stroke=\"#") + 9, 7) + ' ';
        if (line.rfind("<path", 0) == 0 || line.rfind("<rect", 0) == 0) drawn += line + '\n';
    }
    return drawn;
}

// clang-format off
const LookCase kLooks[] = {
    {"none", kTwoPens, {}, "#000\" s <path d=\"M0 0h9\"/>\n#0f0\" s <path class=\"h\" d=\"M5 5h4\"/>\n"},
    {"colour of a pen", kTwoPens, {{{1, {0x0000FF, {}}}}, {}, {}, false, 0.0},
     "#f00\" s <path d=\"M0 0h9\"/>\n#0f0\" s <path class=\"h\" d=\"M5 5h4\"/>\n"},
    {"width of a pen", kTwoPens, {{{2, {{}, 1.0}}}, {}, {}, false, 0.0},
     "#000\" s <path d=\"M0 0h9\"/>\n#0f0\" s <path d=\"M5 5h4\"/>\n"},
    {"only some pens", kTwoPens, {{}, {{2, 3}}, {}, false, 0.0}, "#0f0\" s <path class=\"h\" d=\"M5 5h4\"/>\n"},
    {"width of those that have none", kTwoPens, {{}, {}, 0.25, false, 0.0},
     "#000\" s <path d=\"M0 0h9\"/>\n#0f0\" s <path d=\"M5 5h4\"/>\n"},
    {"lines in black", kTwoPens, {{}, {}, {}, true, 0.0},
     "#000\" s <path d=\"M0 0h9\"/>\n#000\" s <path class=\"h\" d=\"M5 5h4\"/>\n"},
    {"a pen of its own colour beside them", kTwoPens, {{{2, {0x0000FF, {}}}}, {}, {}, true, 0.0},
     "#000\" s <path d=\"M0 0h9\"/>\n#f00\" s <path class=\"h\" d=\"M5 5h4\"/>\n"},
    {"white stays white", "PW1;PC1,255,255,255;PD9,0;RA9,9;", {{}, {}, {}, true, 0.0},
     "#fff\" s <path d=\"M0 0h9\"/>\n<rect x=\"9\" y=\"0\" width=\"0\" height=\"9\" fill=\"#fff\" stroke=\"none\"/>\n"},
    {"areas in grey", "PC1,255,0,0;RA9,9;", {{}, {}, {}, true, 0.0},
     "#000\" s <rect x=\"0\" y=\"0\" width=\"9\" height=\"9\" fill=\"#4c4c4c\" stroke=\"none\"/>\n"},
    {"dashes stay", "PW1;UL8,4,4;LT8,8,1;PD99,0;LT;PD99,9;", {{}, {}, {}, true, 0.0}, ""},
    {"lines stay apart", "PW1;PD99,0,99,99,0,99,0,0;SP1;PD0,50;", {{}, {}, {}, true, 0.0}, ""},
    {"the sheet stays", "PW1;PD9,0;SP2;PU90,50;PD99,50;", {{}, {{1, 1}}, {}, false, 0.0}, "#000\" s <path d=\"M0 0h9\"/>\n"},
};
// clang-format on

class PageLooks : public HostTest, public testing::WithParamInterface<LookCase> {};

TEST_P(PageLooks, ShowThis) {
    const LookCase& row = GetParam();
    const PlotPage page = Pages(row.plot).at(0);
    const PlotPage looked = LookedAt(page, row.look);
    if (*row.paths != '\0') {
        EXPECT_EQ(Drawn(looked), row.paths);
    } else {
        EXPECT_EQ(Drawn(looked), Drawn(page));
    }
}

INSTANTIATE_TEST_SUITE_P(Render, PageLooks, testing::ValuesIn(kLooks), [](const auto& test) {
    std::string name = test.param.name;
    for (char& c : name) c = c == ' ' ? '_' : c;
    return name;
});

class PageSheets : public HostTest {};

// Pages of some of the pens lie over each other.
TEST_F(PageSheets, HaveRoomForThePensThatAreLeftOut) {
    const PlotPage page = Pages("PW1;PD9,0;SP2;PU90,50;PD99,50;").at(0);
    PageLook look;
    look.only = {{1, 1}};
    look.clockwise = 90.0;
    const PlotPage looked = LookedAt(page, look);
    EXPECT_EQ(looked.Rotation(), -90.0);
    EXPECT_EQ(looked.Layers().size(), 1U);
    EXPECT_EQ(looked.Sheet().maxX, 119.0);
    MemorySink sink;
    WriteSvg(SourceOf(looked), PageOptions(), sink);
    EXPECT_NE(sink.text.find("width=\"12.25mm\" height=\"13.475mm\""), std::string::npos)
        << sink.text;
}

TEST_F(PageSheets, ShowPicturesInGrey) {
    std::string plot = "\033%0A\033*v6W";
    plot += std::string("\0\3\0\10\10\10", 6);
    plot += "\033*r2S\033*t75R\033*r1A\033*b6W";
    plot += std::string("\377\0\0\0\377\377", 6) + "\033*rC\033%0B";
    PageLook look;
    look.mono = true;
    std::vector<std::uint32_t> colours;
    class Dots final : public DisplayListVisitor {
      public:
        explicit Dots(std::vector<std::uint32_t>& found) : found_(found) {}
        void Picture(const DrawingStyle&, const BoxI&, std::int32_t, ByteRun bitmap) override {
            const auto view = PackedBitmapView::Parse(bitmap.data, bitmap.size);
            std::uint8_t rgb[6] = {};
            if (view && view->Width() == 2) view->RowToRgb(0, rgb);
            found_.assign(rgb, rgb + 6);
        }

      private:
        std::vector<std::uint32_t>& found_;
    } dots(colours);
    Play(LookedAt(Pages(plot).at(0), look).Drawing(), dots);
    EXPECT_EQ(colours, (std::vector<std::uint32_t>{179, 179, 179, 76, 76, 76}));
}

}  // namespace
