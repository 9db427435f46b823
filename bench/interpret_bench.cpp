// Bytes a second of the interpreting and the detection pass with a builder that does nothing.
#include <benchmark/benchmark.h>

#include "bench/cad_plot.h"
#include "bench/counting_builder.h"

namespace qm {
namespace {

constexpr std::size_t kPlotBytes = 32 << 20;

void Interpret(benchmark::State& state, const std::string& plot) {
    for (auto _ : state) {
        CountingBuilder builder(plot);
        benchmark::DoNotOptimize(builder.Interpret());
        benchmark::DoNotOptimize(builder.primitives);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(plot.size()));
}

void InterpretCadPlot(benchmark::State& state) {
    static const std::string plot = MakeCadPlot(kPlotBytes);
    Interpret(state, plot);
}
BENCHMARK(InterpretCadPlot)->Unit(benchmark::kMillisecond);

// The same drawing with a fraction in every number and user scaling on.
void InterpretScaledReals(benchmark::State& state) {
    static const std::string plot = [] {
        std::string text = "IP0,0,33000,23000;SC0,330,0,230;SP1;PU0,0;";
        for (int i = 0; text.size() < kPlotBytes; ++i) {
            text += "PD" + std::to_string(i % 330) + ".25," + std::to_string(i % 229) + ".125;";
        }
        return text;
    }();
    Interpret(state, plot);
}
BENCHMARK(InterpretScaledReals)->Unit(benchmark::kMillisecond);

void InterpretEncodedPolyline(benchmark::State& state) {
    static const std::string plot = [] {
        std::string text = "SP1;";
        while (text.size() < kPlotBytes) {
            text += "PE<=";
            for (int i = 0; i < 100; ++i) text += "\x55\xC5\x60\xD1";
            text += ';';
        }
        return text;
    }();
    Interpret(state, plot);
}
BENCHMARK(InterpretEncodedPolyline)->Unit(benchmark::kMillisecond);

// Detection stops at six mnemonics in a row, so it is given text that never has them.
void Detect(benchmark::State& state) {
    static const std::string text = [] {
        std::string lines;
        while (lines.size() < kPlotBytes) lines += "The quick brown fox 123, 456; ";
        return lines;
    }();
    for (auto _ : state) {
        CountingBuilder builder(text);
        benchmark::DoNotOptimize(builder.Detect());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(Detect)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace qm
