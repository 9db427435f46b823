// Escapes that transfer rows; see escape_table.h.
#include <algorithm>

#include "raster/escape_table.h"
#include "raster/picture.h"
#include "raster/rows/transfer_blocks.h"

namespace qm {

namespace {

constexpr std::int32_t kPlainBlock = 4;
constexpr std::int32_t kAdaptive = 5;

class ReaderSource : public ByteSource {
  public:
    explicit ReaderSource(InputReader& input) : input_(input) {}
    std::size_t Read(std::uint8_t* to, std::size_t size) override {
        return input_.ReadRaw(to, size);
    }

  private:
    InputReader& input_;
};

std::size_t DataBytes(EscapeValue value) {
    return static_cast<std::size_t>(std::max(value.number, 0));
}

// The counted data behind a transfer: where it lies in the input block, or, when it runs past the
// block, gathered in the row buffer. Shorter than counted when the input ends.
ByteSpan ReadData(EscapeValue value, InputReader& input, std::vector<std::uint8_t>& buffer) {
    const std::size_t count = DataBytes(value);
    const std::uint8_t* from = input.Cursor();
    if (from < input.Limit() && count <= static_cast<std::size_t>(input.Limit() - from)) {
        input.Advance(from + count);
        return {from, count};
    }
    ReaderSource source(input);
    ReadCounted(source, value.number, buffer);
    return {buffer.data(), buffer.size()};
}

// The bytes of the row that the next transfer fills: a plane, or the whole row.
RowShare ShareOf(const RasterState& raster) {
    if (raster.picture->Planes() == kNoPlanes) return {};
    const auto plane = static_cast<std::size_t>(PlaneBytes(raster.picture->Width()));
    return {static_cast<std::size_t>(raster.planeIndex) * plane, plane};
}

void AddPlainRows(std::int64_t count, InputReader& input, RasterState& raster) {
    ReaderSource source(input);
    if (raster.pixelFormat != kOneBit) {
        SkipCounted(source, count);
        return;
    }
    const PlainBlockResult block =
        AddPlainBlock(source, count, *raster.picture, raster.currentRow, ShareOf(raster));
    raster.currentRow = block.nextRow;
    if (block.valid) raster.picture->SetHeight(block.rows);
}

void AddAdaptiveRows(std::int64_t count, InputReader& input, RasterState& raster) {
    ReaderSource source(input);
    raster.currentRow =
        AddAdaptiveBlock(source, count, *raster.picture, raster.currentRow, ShareOf(raster));
}

// A row that cannot be stored counts all the same.
void AddOneRow(EscapeValue value, InputReader& input, RasterState& raster) {
    const RowShare share = ShareOf(raster);
    const ByteSpan data = ReadData(value, input, raster.rowBuffer);
    raster.picture->AddRow(raster.currentRow, data, raster.method, share.offset, share.count, true);
    if (raster.currentRow < INT32_MAX) ++raster.currentRow;
}

}  // namespace

namespace escapes {

// ESC*b#M
void CompressionMethod(EscapeValue value, RasterState& raster) { raster.method = value.number; }

// ESC*b#Y; in an open picture too it moves the position only, not the row. It goes down the rows,
// other than PageState::rasterYOffset.
void MoveDownRows(EscapeValue value, RasterState& raster) {
    std::int32_t& down = raster.cursor.down;
    down = value.hadSign ? WrapAdd(down, value.number) : value.number;
}

// Commands whose data means nothing here.
void SkipData(EscapeValue value, InputReader& input) { input.SkipRaw(DataBytes(value)); }

// ESC*b#V: one plane; the row goes on.
void TransferPlane(EscapeValue value, InputReader& input, RasterState& raster,
                   const PageState& page, const Drawing& drawing) {
    CRTLRaster* picture = OpenPicture(raster, page, drawing, true);
    if (picture == nullptr) return SkipData(value, input);
    const RowShare share = ShareOf(raster);
    const ByteSpan data = ReadData(value, input, raster.rowBuffer);
    picture->AddRow(raster.currentRow, data, raster.method, share.offset, share.count, false);
    raster.planeIndex = WrapAdd(raster.planeIndex, 1);
}

// ESC*b#W: a row or its last plane, or a block of rows.
void TransferRow(EscapeValue value, InputReader& input, RasterState& raster, const JobState& job,
                 const PageState& page, Drawing& drawing) {
    CRTLRaster* picture = OpenPicture(raster, page, drawing, false);
    if (picture == nullptr) return SkipData(value, input);
    if (raster.method == kPlainBlock) {
        AddPlainRows(value.number, input, raster);
    } else if (raster.method == kAdaptive) {
        AddAdaptiveRows(value.number, input, raster);
    } else {
        AddOneRow(value, input, raster);
    }
    raster.planeIndex = 0;
    if (picture->Height() > 0 && raster.currentRow >= picture->Height()) {
        FinishPicture(raster, job, page, drawing);
    }
}

}  // namespace escapes
}  // namespace qm
