// Strokes a second of label drawing with a builder that does nothing.
#include <benchmark/benchmark.h>

#include <string>

#include "bench/counting_builder.h"

namespace qm {
namespace {

// Labels of all printable ASCII characters; `attributes` stands in front of each.
std::string MakeLabels(const std::string& attributes) {
    std::string plot = "SP1;";
    while (plot.size() < (4 << 20)) {
        plot += attributes + "PU1000,2000;LB";
        for (char c = ' '; c < 127; ++c) plot += c;
        plot += '\3';
    }
    return plot;
}

void Draw(benchmark::State& state, const std::string& plot) {
    std::uint64_t strokes = 0;
    for (auto _ : state) {
        CountingBuilder builder(plot);
        benchmark::DoNotOptimize(builder.Interpret());
        strokes += builder.primitives;
    }
    state.counters["strokes"] =
        benchmark::Counter(static_cast<double>(strokes), benchmark::Counter::kIsRate);
}

void DrawLabels(benchmark::State& state) { Draw(state, MakeLabels("")); }
BENCHMARK(DrawLabels)->Unit(benchmark::kMillisecond);

// A new direction for each label, user scaling and a clip window that lets all strokes through.
void DrawTurnedLabels(benchmark::State& state) {
    Draw(state, "IP0,0,10000,10000;SC0,10000,0,10000;IW-90000,-90000,90000,90000;" +
                    MakeLabels("DI3,4;SL.3;LO5;"));
}
BENCHMARK(DrawTurnedLabels)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace qm
