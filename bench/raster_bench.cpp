// Speed of the raster path: bytes of stored rows (decoders) or of source pixels (bitmap making) a
// second, on rows of an A0 page at 300 dpi. Whole files go through the interpreter.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "bench/counting_builder.h"
#include "raster/rows/rtl_raster.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::int32_t kWidth = 9933;
constexpr std::size_t kRowBytes = std::size_t{kWidth} * 3;

// PackBits data for one row whose runs and literals alternate and are `mean` bytes long on average.
Bytes PackedRow(std::size_t mean) {
    std::mt19937 random(3);
    Bytes data;
    std::size_t bytes = 0;
    while (bytes < kRowBytes) {
        const std::size_t run = 2 + random() % (2 * mean - 3);
        data.push_back(static_cast<std::uint8_t>(257 - run));
        data.push_back(static_cast<std::uint8_t>(random()));
        const std::size_t literal = 1 + random() % (2 * mean - 1);
        data.push_back(static_cast<std::uint8_t>(literal - 1));
        for (std::size_t i = 0; i < literal; ++i) {
            data.push_back(static_cast<std::uint8_t>(random()));
        }
        bytes += run + literal;
    }
    return data;
}

// A delta row that replaces `count` bytes behind each `gap` kept ones, all along the row.
Bytes DeltaData(std::size_t count, std::size_t gap) {
    Bytes data;
    for (std::size_t at = 0; at + gap + count <= kRowBytes; at += gap + count) {
        data.push_back(static_cast<std::uint8_t>(((count - 1) << 5) | gap));
        data.insert(data.end(), count, static_cast<std::uint8_t>(at));
    }
    return data;
}

// Method 10: a difference colour for one pixel in three.
Bytes ReplacementData() {
    Bytes data;
    for (std::int32_t x = 0; x + 3 <= kWidth; x += 3) data.insert(data.end(), {0x10, 0x84, 0x21});
    return data;
}

void Decode(benchmark::State& state, const Bytes& data, int method) {
    Bytes row(kRowBytes);
    const Bytes seed(kRowBytes, 1);
    const qm::ByteSpan span{data.data(), data.size()};
    const qm::RowTarget target{row.data(), kRowBytes, 0, kRowBytes};
    for (auto _ : state) {
        if (method == 0) qm::DecodeUnencoded(span, target);
        if (method == 1) qm::DecodeRunLength(span, target);
        if (method == 2) qm::DecodePackBits(span, target);
        if (method == 3) qm::DecodeDeltaRow(span, seed.data(), target);
        if (method == 10) qm::DecodeReplacementDeltaRow(span, seed.data(), target);
        benchmark::DoNotOptimize(row.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * std::int64_t{kWidth} * 3);
}

void Unencoded(benchmark::State& state) { Decode(state, Bytes(kRowBytes, 9), 0); }
void RunLength(benchmark::State& state) {
    Bytes data;
    for (std::size_t i = 0; i < kRowBytes / 16; ++i) data.insert(data.end(), {15, 7});
    Decode(state, data, 1);
}
void PackBits(benchmark::State& state) {
    Decode(state, PackedRow(static_cast<std::size_t>(state.range(0))), 2);
}
void DeltaRow(benchmark::State& state) {
    Decode(state, DeltaData(static_cast<std::size_t>(state.range(0)), 4), 3);
}
void ReplacementDelta(benchmark::State& state) { Decode(state, ReplacementData(), 10); }

// A picture from its rows to its bitmap; arguments: bits per pixel, angle. The rows are stored
// outside the measured time unless `whole`.
void Make(benchmark::State& state, bool whole) {
    const int bits = static_cast<int>(state.range(0));
    const int angle = static_cast<int>(state.range(1));
    const std::int32_t rows = bits == 24 ? 1000 : 6000;
    const auto rowBytes = static_cast<std::size_t>(qm::PackedRowBytes(kWidth, bits));
    Bytes data(rowBytes);
    std::mt19937 random(5);
    for (auto& byte : data) byte = static_cast<std::uint8_t>(random());
    for (auto _ : state) {
        if (!whole) state.PauseTiming();
        qm::CRTLRaster raster(kWidth, rows, bits, qm::kNoPlanes);
        for (std::int32_t y = 0; y < rows; ++y) {
            raster.AddRow(y, {data.data(), data.size()}, 0, 0, 0, true);
        }
        // Zeroed lazily, as a global memory block is.
        void* block = std::calloc(raster.PrepareBitmap(angle).value(), 1);
        if (!whole) state.ResumeTiming();
        raster.FillBitmap(static_cast<std::uint8_t*>(block), angle);
        benchmark::DoNotOptimize(block);
        if (!whole) state.PauseTiming();
        std::free(block);
        if (!whole) state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(rowBytes) * rows);
}

void Fill(benchmark::State& state) { Make(state, false); }
void WholePicture(benchmark::State& state) { Make(state, true); }

void MergePlanes(benchmark::State& state) {
    const Bytes planes(std::size_t{kWidth + 7} / 8 * 8, 0x5A);
    Bytes row(kWidth);
    for (auto _ : state) {
        qm::MergePlaneRow(planes.data(), row.data(), kWidth, qm::kThreePlanes);
        benchmark::DoNotOptimize(row.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * std::int64_t{kWidth});
}

// A whole plot: setup escapes, then `rows` times the same transfer.
void Interpret(benchmark::State& state, const std::string& setup, const Bytes& data, int rows,
               std::int64_t rowBytes) {
    std::string plot = "\033%0A\033*r" + std::to_string(kWidth) + "s" + std::to_string(rows) + "T";
    plot += setup;
    const std::string head = "\033*b" + std::to_string(data.size()) + "W";
    for (int i = 0; i < rows; ++i) plot.append(head).append(data.begin(), data.end());
    for (auto _ : state) {
        qm::CountingBuilder builder(plot);
        builder.EnterDocumentMode();
        builder.Interpret();
        if (builder.primitives != 1) state.SkipWithError("no picture");
    }
    state.SetBytesProcessed(state.iterations() * rowBytes * rows);
    state.counters["file"] = benchmark::Counter(
        static_cast<double>(plot.size()) * static_cast<double>(state.iterations()),
        benchmark::Counter::kIsRate, benchmark::Counter::kIs1024);
}

const std::string kConfigure24("\033*v6W\0\3\10\10\10\10", 11);

void ColourFile(benchmark::State& state) {
    Interpret(state, kConfigure24 + "\033*b2M", PackedRow(static_cast<std::size_t>(state.range(0))),
              1000, std::int64_t{kWidth} * 3);
}
// Short rows: the cost of a sequence shows.
void DeltaFile(benchmark::State& state) {
    Interpret(state, "\033*b3M", {0x1F, 100, 7, 0x22, 1, 2, 5, 9}, 14000, (kWidth + 7) / 8);
}

BENCHMARK(ColourFile)->Arg(8)->Arg(32)->Unit(benchmark::kMillisecond);
BENCHMARK(DeltaFile)->Unit(benchmark::kMillisecond);
BENCHMARK(Unencoded);
BENCHMARK(RunLength);
BENCHMARK(PackBits)->Arg(8)->Arg(32);
BENCHMARK(DeltaRow)->Arg(1)->Arg(4)->Arg(8);
BENCHMARK(ReplacementDelta);
BENCHMARK(MergePlanes);
BENCHMARK(Fill)->ArgsProduct({{1, 4, 8, 24}, {0, 90, 180}})->Unit(benchmark::kMillisecond);
BENCHMARK(WholePicture)->Args({24, 0})->Unit(benchmark::kMillisecond);

}  // namespace
