// Any bytes as the rows of one small picture: every method and plane kind, then its bitmap. Nothing
// may be written outside a row, whatever the data say.
//
//   build/fuzz/fuzz/raster_fuzz CORPUS
#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "raster/rows/transfer_blocks.h"

namespace {

constexpr int kMethods[] = {0, 1, 2, 3, 10, 4, 5};
constexpr int kDepths[] = {1, 2, 3, 4, 8, 16, 24, 32};
constexpr qm::PlaneKind kPlanes[] = {qm::kNoPlanes, qm::kThreePlanes, qm::kFourPlanes,
                                     qm::kEightPlanes};
constexpr int kAngles[] = {0, 90, 180, 270};
// Keeps one input fast: what larger pictures do, small ones do too.
constexpr std::int32_t kMaxRows = 2000;

}  // namespace

// Three bytes describe the picture; then, for each transfer, one the method and one its length.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 3) return 0;
    qm::CRTLRaster raster(data[0], data[1], kDepths[data[2] & 7], kPlanes[(data[2] >> 3) & 3]);
    const int angle = kAngles[data[2] >> 6];
    data += 3;
    size -= 3;
    const auto planeBytes = static_cast<std::size_t>(qm::PlaneBytes(raster.Width()));
    std::int32_t row = 0;
    while (size >= 2 && row < kMaxRows) {
        const int method = kMethods[data[0] % 7];
        const std::size_t plane = data[0] >> 5;
        const qm::RowShare share = raster.Planes() == qm::kNoPlanes
                                       ? qm::RowShare{}
                                       : qm::RowShare{plane * planeBytes, planeBytes};
        const std::size_t count = std::min<std::size_t>(data[1], size - 2);
        qm::SpanSource source({data + 2, count});
        if (method == 4) {
            row = qm::AddPlainBlock(source, data[1], raster, row, share).nextRow;
        } else if (method == 5) {
            row = qm::AddAdaptiveBlock(source, data[1], raster, row, share);
        } else {
            raster.AddRow(row++, {data + 2, count}, method, share.offset, share.count,
                          (data[0] & 16) == 0);
        }
        data += 2 + count;
        size -= 2 + count;
    }
    if (raster.RowCount() < 70000) raster.MakeBitmap(angle);
    return 0;
}
