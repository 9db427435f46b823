// Speed of the embedded host and of the SVG writer: lines appended through the build interface,
// played back, and written. The bytes counted are those of the plot text such a line stands for, so
// that the figures compare with interpret_bench.
#include <benchmark/benchmark.h>

#include "host/display_list_player.h"
#include "host/drawing_block.h"
#include "render/page_writers.h"

namespace {

using namespace qm;

constexpr std::int32_t kLines = 1000000;
constexpr std::int64_t kPlotBytesPerLine = 12;

// Chains of ten lines, a pen change every hundred: the shape of a CAD plot.
void Fill(IQmBuildVectorData& block) {
    LONG x = 0;
    LONG y = 0;
    for (std::int32_t i = 0; i < kLines; ++i) {
        if (i % 100 == 0) {
            block.AppendDrawColor1(0, 0, i & 0xFF);
            block.AppendLayer(1 + (i / 100) % 8);
            block.AppendPen(1 + (i / 100) % 8);
        }
        if (i % 10 == 0) x = (x + 977) % 30000;
        const LONG nextX = (x + 7 * (i % 13)) % 40000;
        const LONG nextY = (y + 5 * (i % 17)) % 30000;
        block.AppendLine(x, y, nextX, nextY);
        x = nextX;
        y = nextY;
    }
}

void Append(benchmark::State& state) {
    for (auto _ : state) {
        const ComPtr<DrawingBlock> block = MakeObject<DrawingBlock>();
        Fill(*block);
        benchmark::DoNotOptimize(block->Drawing().UsedBytes());
    }
    state.SetItemsProcessed(state.iterations() * kLines);
    state.SetBytesProcessed(state.iterations() * kLines * kPlotBytesPerLine);
}
BENCHMARK(Append)->Unit(benchmark::kMillisecond);

class LineSum final : public DisplayListVisitor {
  public:
    void Lines(const DrawingStyle&, PointSpan points) override {
        for (const PointI p : points) sum += p.x;
    }
    std::int64_t sum = 0;
};

void PlayBack(benchmark::State& state) {
    const ComPtr<DrawingBlock> block = MakeObject<DrawingBlock>();
    Fill(*block);
    for (auto _ : state) {
        LineSum visitor;
        Play(block->Drawing(), visitor);
        benchmark::DoNotOptimize(visitor.sum);
    }
    state.SetItemsProcessed(state.iterations() * kLines);
    state.SetBytesProcessed(state.iterations() * kLines * kPlotBytesPerLine);
    state.counters["list bytes/line"] = static_cast<double>(block->Drawing().UsedBytes()) / kLines;
}
BENCHMARK(PlayBack)->Unit(benchmark::kMillisecond);

class NullSink final : public OutputSink {
  public:
    void Write(std::string_view text) override { bytes += text.size(); }
    std::size_t bytes = 0;
};

void Svg(benchmark::State& state) {
    const ComPtr<DrawingBlock> block = MakeObject<DrawingBlock>();
    Fill(*block);
    PageSource page;
    page.drawing = &block->Drawing();
    std::size_t bytes = 0;
    for (auto _ : state) {
        NullSink sink;
        WriteSvg(page, {}, sink);
        bytes = sink.bytes;
    }
    state.SetItemsProcessed(state.iterations() * kLines);
    state.SetBytesProcessed(state.iterations() * kLines * kPlotBytesPerLine);
    state.counters["svg bytes/line"] = static_cast<double>(bytes) / kLines;
}
BENCHMARK(Svg)->Unit(benchmark::kMillisecond);

}  // namespace
