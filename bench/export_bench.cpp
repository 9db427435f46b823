// Cost of the export: a million lines through the sink's interface to a stream that only counts,
// and PackBits on rows as scans and photographs have them.
#include <benchmark/benchmark.h>
#include <qmfilter.h>

#include <cstdint>
#include <random>
#include <vector>

#include "export/pack_bits.h"
#include "export/save_vector_data.h"
#include "platform/write_only_stream.h"

namespace {

// Takes everything, keeps the count.
class CountingStream final : public qm::WriteOnlyStream {
  public:
    std::uint64_t Bytes() const { return bytes_; }

    HRESULT STDMETHODCALLTYPE Write(const void*, ULONG size, ULONG*) noexcept override {
        bytes_ += size;
        return S_OK;
    }

  private:
    std::uint64_t bytes_ = 0;
};

constexpr LONG kMillion = 1000000;

void MillionLines(benchmark::State& state) {
    const auto stream = qm::MakeObject<CountingStream>();
    qm::ExportSettings settings;
    settings.stream = stream;
    settings.transform.scale = 1016.0 / 300;
    const qm::ComPtr<IQmSaveVectorData> sink = qm::MakeObject<qm::CQmSaveVectorData>(settings);
    for (auto _ : state) {
        for (LONG i = 0; i < kMillion; ++i) {
            // 3 to 6 digits a coordinate, as on a large sheet.
            if (sink->AppendLine(i & 16383, -i & 8191, i & 4095, i & 32767) != S_OK) {
                state.SkipWithError("a write failed");
            }
        }
    }
    state.SetItemsProcessed(state.iterations() * kMillion);
    state.SetBytesProcessed(static_cast<std::int64_t>(stream->Bytes()));
}
BENCHMARK(MillionLines)->Unit(benchmark::kMillisecond);

using Rows = std::vector<std::uint8_t>;
constexpr std::size_t kRow = 4096;
constexpr std::size_t kRowCount = 256;

// One bit a pixel: white with strokes and some dust.
Rows Scan() {
    std::mt19937 random(1);
    Rows rows(kRow * kRowCount, 0xFF);
    for (std::size_t i = 0; i < rows.size() / 40; ++i) {
        rows[random() % rows.size()] = static_cast<std::uint8_t>(random());
    }
    for (std::size_t at = 0; at + 64 < rows.size(); at += 300 + random() % 900) {
        std::fill_n(rows.begin() + static_cast<std::ptrdiff_t>(at), random() % 12, std::uint8_t{0});
    }
    return rows;
}

// 24 bits a pixel: slow changes of three components with noise in the low bits.
Rows Photograph() {
    std::mt19937 random(2);
    Rows rows(kRow * kRowCount);
    int level[3] = {90, 120, 150};
    for (std::size_t i = 0; i < rows.size(); ++i) {
        int& component = level[i % 3];
        component = (component + static_cast<int>(random() % 7) - 3) & 255;
        rows[i] = static_cast<std::uint8_t>(component);
    }
    return rows;
}

// 8 bits a pixel, the same with fewer levels: one byte in seven repeats the one before.
Rows GreyPhotograph() {
    std::mt19937 random(3);
    Rows rows(kRow * kRowCount);
    int level = 120;
    for (std::uint8_t& byte : rows) {
        level = (level + static_cast<int>(random() % 7) - 3) & 255;
        byte = static_cast<std::uint8_t>(level);
    }
    return rows;
}

template <Rows (*Make)()>
void PackRows(benchmark::State& state) {
    const Rows rows = Make();
    std::vector<std::uint8_t> packed(qm::PackBitsBound(kRow));
    std::size_t size = 0;
    for (auto _ : state) {
        size = 0;
        for (std::size_t row = 0; row < kRowCount; ++row) {
            size += qm::PackBits(rows.data() + row * kRow, kRow, packed.data());
        }
        benchmark::DoNotOptimize(packed.data());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(rows.size()));
    state.counters["packed_percent"] =
        100.0 * static_cast<double>(size) / static_cast<double>(rows.size());
}
BENCHMARK(PackRows<Scan>);
BENCHMARK(PackRows<Photograph>);
BENCHMARK(PackRows<GreyPhotograph>);

}  // namespace
