// Targets of the interpreter and the row decoders; see targets.h.
#include <algorithm>
#include <cstdint>
#include <new>

#include "fuzz/targets.h"
#include "interpreter/null_builder.h"
#include "interpreter/reading.h"
#include "raster/rows/transfer_blocks.h"

namespace qm::fuzz {

namespace {

constexpr int kMethods[] = {0, 1, 2, 3, 10, 4, 5};
constexpr int kDepths[] = {1, 2, 3, 4, 8, 16, 24, 32};
constexpr PlaneKind kPlanes[] = {kNoPlanes, kThreePlanes, kFourPlanes, kEightPlanes};
constexpr int kAngles[] = {0, 90, 180, 270};
// Keeps one input fast: what larger pictures do, small ones do too.
constexpr std::int32_t kMaxRows = 2000;

void InterpretBy(const qm::Reading& reading, std::string_view plot) try {
    NullBuilder reader(plot);
    reader.SetReading(reading);
    reader.EnterDocumentMode();
    reader.Interpret();
} catch (const std::bad_alloc&) {
    // A component would answer E_OUTOFMEMORY.
}

}  // namespace

void Detect(std::string_view plot) { NullBuilder(plot).Detect(); }

void Interpret(std::string_view plot) { InterpretBy({}, plot); }

void Reading(std::string_view plot) { InterpretBy(qm::Reading::Plotter(), plot); }

void Rows(std::string_view rows) {
    const auto* data = reinterpret_cast<const std::uint8_t*>(rows.data());
    std::size_t size = rows.size();
    if (size < 3) return;
    CRTLRaster raster(data[0], data[1], kDepths[data[2] & 7], kPlanes[(data[2] >> 3) & 3]);
    const int angle = kAngles[data[2] >> 6];
    data += 3;
    size -= 3;
    const auto planeBytes = static_cast<std::size_t>(PlaneBytes(raster.Width()));
    std::int32_t row = 0;
    while (size >= 2 && row < kMaxRows) {
        const int method = kMethods[data[0] % 7];
        const std::size_t plane = data[0] >> 5;
        const RowShare share =
            raster.Planes() == kNoPlanes ? RowShare{} : RowShare{plane * planeBytes, planeBytes};
        const std::size_t count = std::min<std::size_t>(data[1], size - 2);
        SpanSource source({data + 2, count});
        if (method == 4) {
            row = AddPlainBlock(source, data[1], raster, row, share).nextRow;
        } else if (method == 5) {
            row = AddAdaptiveBlock(source, data[1], raster, row, share);
        } else {
            raster.AddRow(row++, {data + 2, count}, method, share.offset, share.count,
                          (data[0] & 16) == 0);
        }
        data += 2 + count;
        size -= 2 + count;
    }
    if (raster.RowCount() < 70000) raster.MakeBitmap(angle);
}

}  // namespace qm::fuzz
