// A program that embeds the filter: counts what is on each page, in the words of qmplot info.
#include <qmfilter/plot.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <iterator>

namespace {

class Counter final : public qmfilter::Visitor {
  public:
    void Lines(const qmfilter::Style&, qmfilter::Span<qmfilter::Point> points) override {
        lines += points.size - 1;
    }
    void Rectangle(const qmfilter::Style&, const qmfilter::Box&, bool) override { ++rectangles; }

    std::size_t lines = 0;
    std::size_t rectangles = 0;
};

void Count(const qmfilter::Plot& plot) {
    std::printf("%s, %zu page\n", plot.Format().c_str(), plot.Pages().size());
    for (const qmfilter::Page& page : plot.Pages()) {
        Counter counter;
        page.Draw(counter);
        std::printf("    %zu lines, %zu rectangles, %zu texts\n", counter.lines, counter.rectangles,
                    page.Texts().size());
        for (const qmfilter::Layer& layer : page.Layers())
            std::printf("layer \"%s\"\n", layer.name.c_str());
    }
}

}  // namespace

int main(int, char** arguments) try {
    Count(qmfilter::Plot::Open(arguments[1]));
    std::ifstream file(arguments[1], std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    Count(qmfilter::Plot::FromBytes(bytes));
    // Without an IP the engine's reading does not scale.
    const char* const kScaled = "IN;SP1;SC0,1,0,1;PU0,0;PD1,1;PU;PU;PU;";
    const auto width = [kScaled](qmfilter::Reading reading, const qmfilter::Sheet& sheet = {}) {
        const auto drawn = qmfilter::Plot::FromBytes(kScaled, {}, reading, sheet).Pages().at(0);
        return drawn.DrawnExtent().maxX - drawn.DrawnExtent().minX;
    };
    if (width(qmfilter::Reading::kPlotter) < 1000 || width(qmfilter::Reading::kEngine) > 10)
        return 1;
    if (std::lround(width(qmfilter::Reading::kPlotter, {50.0, 100.0})) / 100 != 40) return 1;
    qmfilter::Plot::FromBytes("no plot");
} catch (const qmfilter::PlotError& error) {
    std::printf("%s\n", error.what());
    return error.Reason() == qmfilter::Status::kNoPlot ? 0 : 1;
}
