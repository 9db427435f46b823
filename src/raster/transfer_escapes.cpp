// Escapes that transfer rows; see escape_table.h.
#include <algorithm>

#include "interpreter/hpgl_read.h"
#include "raster/escape_table.h"
#include "raster/picture.h"
#include "raster/rows/rtl_raster.h"
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
ByteSpan ReadData(HPGLRead& reader, EscapeValue value) {
    InputReader& input = reader.input;
    const std::size_t count = DataBytes(value);
    const std::uint8_t* from = input.Cursor();
    if (from < input.Limit() && count <= static_cast<std::size_t>(input.Limit() - from)) {
        input.Advance(from + count);
        return {from, count};
    }
    std::vector<std::uint8_t>& buffer = reader.raster.rowBuffer;
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

void AddPlainRows(HPGLRead& reader, CRTLRaster& picture, std::int64_t count) {
    RasterState& raster = reader.raster;
    ReaderSource source(reader.input);
    if (raster.pixelFormat != kOneBit) {
        SkipCounted(source, count);
        return;
    }
    const PlainBlockResult block =
        AddPlainBlock(source, count, picture, raster.currentRow, ShareOf(raster));
    raster.currentRow = block.nextRow;
    if (block.valid) picture.SetHeight(block.rows);
}

void AddAdaptiveRows(HPGLRead& reader, CRTLRaster& picture, std::int64_t count) {
    RasterState& raster = reader.raster;
    ReaderSource source(reader.input);
    raster.currentRow =
        AddAdaptiveBlock(source, count, picture, raster.currentRow, ShareOf(raster));
}

// A row that cannot be stored counts all the same.
void AddOneRow(HPGLRead& reader, CRTLRaster& picture, EscapeValue value) {
    RasterState& raster = reader.raster;
    const RowShare share = ShareOf(raster);
    const ByteSpan data = ReadData(reader, value);
    picture.AddRow(raster.currentRow, data, raster.method, share.offset, share.count, true);
    if (raster.currentRow < INT32_MAX) ++raster.currentRow;
}

}  // namespace

namespace escapes {

// ESC*b#M
void CompressionMethod(HPGLRead& reader, EscapeValue value) { reader.raster.method = value.number; }

// ESC*b#Y; in an open picture too it moves the position only, not the row.
void RasterYOffset(HPGLRead& reader, EscapeValue value) {
    std::int32_t& position = reader.raster.positionA;
    position = value.hadSign ? WrapAdd(position, value.number) : value.number;
}

// Commands whose data means nothing here.
void SkipData(HPGLRead& reader, EscapeValue value) { reader.input.SkipRaw(DataBytes(value)); }

// ESC*b#V: one plane; the row goes on.
void TransferPlane(HPGLRead& reader, EscapeValue value) {
    CRTLRaster* picture = OpenPicture(reader, true);
    if (picture == nullptr) return SkipData(reader, value);
    RasterState& raster = reader.raster;
    const RowShare share = ShareOf(raster);
    const ByteSpan data = ReadData(reader, value);
    picture->AddRow(raster.currentRow, data, raster.method, share.offset, share.count, false);
    raster.planeIndex = WrapAdd(raster.planeIndex, 1);
}

// ESC*b#W: a row or its last plane, or a block of rows.
void TransferRow(HPGLRead& reader, EscapeValue value) {
    CRTLRaster* picture = OpenPicture(reader, false);
    if (picture == nullptr) return SkipData(reader, value);
    RasterState& raster = reader.raster;
    if (raster.method == kPlainBlock) {
        AddPlainRows(reader, *picture, value.number);
    } else if (raster.method == kAdaptive) {
        AddAdaptiveRows(reader, *picture, value.number);
    } else {
        AddOneRow(reader, *picture, value);
    }
    raster.planeIndex = 0;
    if (picture->Height() > 0 && raster.currentRow >= picture->Height()) FinishPicture(reader);
}

}  // namespace escapes
}  // namespace qm
