// Speed of area fills: hatch segments or polygon vertices a second, drawn into a builder that does
// nothing.
#include <benchmark/benchmark.h>

#include <cmath>
#include <string>

#include "bench/counting_builder.h"
#include "common/numbers.h"
#include "interpreter/attributes/polygon.h"

namespace qm {
namespace {

// A star-shaped outline of `vertices` points with radii of 5000 to 20000 units.
Contour Outline(int vertices) {
    Contour points;
    for (int i = 0; i < vertices; ++i) {
        const double angle = i * kTwoPi / vertices;
        const double radius = i % 2 == 0 ? 20000.0 : 5000.0 + i % 97 * 100.0;
        points.push_back(
            {TruncateToInt32(radius * std::cos(angle)), TruncateToInt32(radius * std::sin(angle))});
    }
    return points;
}

// A plot that records the outline once and fills it `fills` times.
std::string FillPlot(const std::string& attributes, int vertices, int fills) {
    std::string plot = attributes;
    std::string command = "PU";
    for (const PointI p : Outline(vertices)) {
        plot += command + std::to_string(p.x) + "," + std::to_string(p.y) + ";";
        command = command == "PU" ? "PM0;PD" : "PD";
    }
    plot += "PM2;";
    for (int i = 0; i < fills; ++i) plot += "FP;";
    return plot;
}

void Interpret(benchmark::State& state, const std::string& plot) {
    std::uint64_t primitives = 0;
    for (auto _ : state) {
        CountingBuilder builder(plot);
        builder.Interpret();
        primitives += builder.primitives;
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(primitives));
}

void HatchHorizontal(benchmark::State& state) {
    Interpret(state, FillPlot("FT3,10;", static_cast<int>(state.range(0)), 10));
}
BENCHMARK(HatchHorizontal)->Arg(10)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

void CrossHatchOblique(benchmark::State& state) {
    Interpret(state, FillPlot("FT4,10,45;", static_cast<int>(state.range(0)), 10));
}
BENCHMARK(CrossHatchOblique)->Arg(10)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

void FillUnclipped(benchmark::State& state) {
    Interpret(state, FillPlot("", static_cast<int>(state.range(0)), 100));
}
BENCHMARK(FillUnclipped)->Arg(10)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

void Clip(benchmark::State& state, const Contour& polygon) {
    constexpr ClipWindow kWindow{-10000, -10000, 10000, 10000};
    for (auto _ : state) benchmark::DoNotOptimize(ClipPolygon(polygon, kWindow));
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(polygon.size()));
}

void ClipOutline(benchmark::State& state) {
    Clip(state, Outline(static_cast<int>(state.range(0))));
}
BENCHMARK(ClipOutline)->Arg(10)->Arg(1000)->Arg(14999)->Unit(benchmark::kMillisecond);

// Every edge crosses nearly every other: the exact clipper, then beyond its limit.
void ClipCrossingEdges(benchmark::State& state) {
    Contour polygon;
    for (int i = 0; i < state.range(0); ++i) {
        const double angle = i * 3.1413;
        polygon.push_back({TruncateToInt32(20000.0 * std::cos(angle)),
                           TruncateToInt32(20000.0 * std::sin(angle))});
    }
    Clip(state, polygon);
}
BENCHMARK(ClipCrossingEdges)->Arg(360)->Arg(14999)->Unit(benchmark::kMillisecond);

// Teeth at 45 degrees, whose bounding boxes overlap although the edges do not cross: the slowest
// polygon known.
void ClipDiagonalComb(benchmark::State& state) {
    Contour polygon;
    for (int i = 0; i < 14998; ++i) {
        const int offset = i / 2 * 2 - 7000;
        const int reach = i % 4 == 1 || i % 4 == 2 ? 10000 : 0;
        polygon.push_back({offset + reach, reach - offset});
    }
    Clip(state, polygon);
}
BENCHMARK(ClipDiagonalComb)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace qm
