// qmfilter/plot.h as an embedding program calls it: what a visitor is told of a plot that has a
// primitive of each kind, what a page says of itself, and why a plot cannot be opened.
#include "qmfilter/plot.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using namespace qmfilter;

std::ostream& operator<<(std::ostream& out, const Point& p) {
    return out << ' ' << p.x << ',' << p.y;
}
std::ostream& operator<<(std::ostream& out, const Box& b) { return out << b.a << b.b; }
std::ostream& Put(std::ostream& out, const Point& p) { return out << p; }
std::ostream& Put(std::ostream& out, std::int32_t n) { return out << ' ' << n; }

const char* Filled(bool filled) { return filled ? " filled" : ""; }

template <typename T>
std::string Of(Span<T> items) {
    std::ostringstream out;
    for (const T& item : items) Put(out, item);
    return out.str();
}

class Printer final : public Visitor {
  public:
    void Lines(const Style& s, Span<Point> p) override { Line("lines", s) << Of(p); }
    void Rectangle(const Style& s, const Box& b, bool filled) override {
        Line("rectangle", s) << b << Filled(filled);
    }
    void Circle(const Style& s, Point centre, std::int32_t radius, bool filled) override {
        Line("circle", s) << centre << ' ' << radius << Filled(filled);
    }
    void Arc(const Style& s, const ArcShape& a) override {
        Line("arc", s) << a.centre << ' ' << a.radiusX << ' ' << a.radiusY << ' ' << a.start << ' '
                       << a.span;
    }
    void Polygon(const Style& s, Span<Point> p, bool filled) override {
        Line("polygon", s) << Of(p) << Filled(filled);
    }
    void PolyPolygon(const Style& s, Span<std::int32_t> n, Span<Point> p, bool filled) override {
        Line("rings", s) << Of(n) << Of(p) << Filled(filled);
    }
    void Text(const Style& s, const Box& b, std::string_view label) override {
        Line("text", s) << b << ' ' << label;
    }
    void Picture(const Style& s, const Box& b, std::int32_t operation,
                 Span<std::uint8_t> bitmap) override {
        Line("picture", s) << b << ' ' << operation << ' ' << bitmap.size << ' ' << int{bitmap[0]};
    }
    void DefinePattern(const Pattern& p) override {
        text << "\npattern " << p.index << ' ' << p.width << ' ' << p.height << Of(p.bits);
    }
    void ClipRegion(Span<Point> corners) override { text << "\nclip" << Of(corners); }
    void EndClipRegion() override { text << "\nend of clip"; }

    std::ostringstream text;

  private:
    std::ostream& Line(const char* name, const Style& s) {
        return text << '\n'
                    << name << " [" << s.pen << ' ' << s.layer << ' ' << std::hex << s.drawColour
                    << ' ' << s.fillColour << std::dec << ' ' << s.lineStyle << Of(s.dash) << ' '
                    << s.lineWidth << ' ' << s.lineAttributes << ' ' << s.drawMode << ' '
                    << s.fillKind << ' ' << s.fillIndex << ']';
    }
};

// What is there but clip regions, which no plot asks for.
const std::string kPlot =
    "IN;PU;PA;SP2;PW0.5;PU1,2;PD30,2,30,40;PU;UL1,8,4;LT1;LA2,4;EA50,60;LT2;CI7;LT;AA20,20,90;"
    "RA40,50;PM0;PD9,0,9,9;PM2;FP;EP;RF3,2,2,0,1,1,0;FT11,3;PM0;PD9,0,9,9;PM1;PU3,1;PD5,1,5,2;PM2;"
    "FP;FT;MC1,168;PU9,9;SP1;LB-\3\033%0A\033*t1016R\033*r8S\033*b1W\xF0\033*b1W\x0F\033*b1W"
    "\xAA\033%0BPG;RO90;SP2;PD5,6;";

TEST(EmbeddedPlot, TellsAVisitorEachPrimitive) {
    const Plot plot = Plot::FromBytes(kPlot);
    ASSERT_EQ(plot.Pages().size(), 2U);
    Printer printer;
    plot.Pages()[0].Draw(printer);
    EXPECT_EQ(printer.text.str(), R"(
lines [2 2 ff ff 0 20 0 13 0 0] 1,2 30,2 30,40
rectangle [2 2 ff ff 0 8 4 20 512 13 0 0] 30,40 50,60
circle [2 2 ff ff 0 8 4 20 512 13 0 0] 30,40 7
lines [2 2 ff ff 0 20 512 13 0 0] 30,40 30,40
arc [2 2 ff ff 0 20 512 13 0 0] 20,20 22 22 63.4349 90
lines [2 2 ff ff 0 20 512 13 0 0] 0,30 0,30
rectangle [2 2 ff ff 0 20 512 13 0 0] 0,30 40,50 filled
polygon [2 2 ff ff 0 0 512 13 0 0] 0,30 9,0 9,9 0,30 filled
polygon [2 2 ff ff 0 20 512 13 0 0] 0,30 9,0 9,9 0,30
pattern 3 2 2 191 255 127 255
rings [2 2 ff ff 0 0 512 13 3 3] 4 3 0,30 9,0 9,9 0,30 3,1 5,1 5,2 filled
lines [1 1 0 0 0 0 512 9 0 0] 19,69 59,69
text [1 1 0 0 0 0 512 9 0 0] 19,69 59,69 -
picture [1 1 0 0 0 20 512 9 0 0] -7,0 0,4 168 60 40)");
}

TEST(EmbeddedPlot, TellsWhatAPageIs) {
    const Plot plot = Plot::FromBytes(kPlot);
    std::ostringstream text;
    for (const Page& page : plot.Pages()) {
        const Extent e = page.DrawnExtent();
        text << page.Name() << ' ' << page.UnitsPerInch() << ' ' << page.Rotation() << ' ' << e.minX
             << ' ' << e.minY << ' ' << e.maxX << ' ' << e.maxY << ' ' << e.empty << '\n';
        for (const Layer& l : page.Layers())
            text << l.number << ' ' << l.name << ' ' << l.colour << ' ' << l.visible << '\n';
        for (const Attribute& a : page.Attributes()) text << a.name << '=' << a.value << '\n';
        for (const TextItem& t : page.Texts()) text << t.text << t.box << '\n';
    }
    EXPECT_EQ(text.str(), R"(Page 1 1016 0 -10 -10 60 70 0
1 Layer no.: 1 0 1
2 Layer no.: 2 255 1
NodeID=Page 1
Loaded=true
LpiX=1016
LpiY=1016
DirectionY=true
Default=true
UseBitmapPrinting=true
SearchAble=true
- 19,69 59,69
Page 2 1016 90 -5 -4 103 19 0
2 Layer no.: 2 255 1
NodeID=Page 2
Loaded=true
LpiX=1016
LpiY=1016
DirectionY=true
SearchAble=true
InitialRotation=90
)");
}

TEST(EmbeddedPlot, SaysWhyItIsNotOpened) {
    const auto reason = [](const std::function<Plot()>& open) {
        try {
            return "opened: " + open().Format();
        } catch (const PlotError& error) {
            return std::to_string(static_cast<int>(error.Reason())) + ' ' + error.what();
        }
    };
    std::string longPlot = kPlot;
    for (int i = 0; i < 20; ++i) longPlot += kPlot;
    int told = 0;
    const auto stop = [&told](int percent) { return (told = percent) < 50; };
    EXPECT_EQ(reason([] { return Plot::FromBytes(kPlot); }), "opened: HPGL/2");
    EXPECT_EQ(reason([] { return Plot::FromBytes("no plot"); }), "1 plot: not a plot file");
    EXPECT_EQ(reason([] { return Plot::Open("/none"); }), "0 /none: cannot be read");
    EXPECT_EQ(reason([&] { return Plot::FromBytes(longPlot, stop); }), "2 plot: aborted");
    EXPECT_EQ(told, 50);
}

}  // namespace
