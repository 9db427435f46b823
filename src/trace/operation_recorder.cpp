// See operation_recorder.h. The lines' formats are a contract with scripts: they change only
// together with the tool's documentation.
#include "trace/operation_recorder.h"

#include <windows.h>
#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "common/packed_bitmap.h"
#include "trace/text_format.h"

namespace qm {

namespace {

// Pixel data up to this size is printed whole, larger pictures as their checksum.
constexpr std::size_t kMaxPrintedPixels = 4096;

void AppendColors(std::string& line, const PackedBitmapView& bitmap) {
    for (std::uint32_t i = 0; i < bitmap.ColourCount(); ++i) {
        if (i > 0) line += ',';
        const PaletteEntry entry = bitmap.Colour(i);
        const std::uint8_t bytes[] = {entry.blue, entry.green, entry.red};
        AppendHex(line, bytes, sizeof bytes);
    }
}

void AppendRows(std::string& line, const PackedBitmapView& bitmap) {
    if (bitmap.PixelBytes() > kMaxPrintedPixels) {
        const auto crc = crc32_z(0, bitmap.Pixels(), bitmap.PixelBytes());
        line += " crc32=";
        std::string hex;
        AppendHexNumber(hex, static_cast<std::uint32_t>(crc), 8);
        line.append(hex, 2);
        return;
    }
    line += " rows=";
    for (std::int32_t i = 0; i < bitmap.Height(); ++i) {
        if (i > 0) line += ',';
        AppendHex(line, bitmap.StoredRow(i), bitmap.Stride());
    }
}

void AppendBitmap(std::string& line, const void* data, std::size_t size) {
    const auto bitmap = PackedBitmapView::Parse(data, size);
    if (!bitmap) return;
    line += ' ';
    AppendInteger(line, bitmap->Width());
    line += 'x';
    AppendInteger(line, bitmap->Height());
    line += 'x';
    AppendInteger(line, bitmap->Bits());
    line += " colors=";
    AppendColors(line, *bitmap);
    AppendRows(line, *bitmap);
}

}  // namespace

OperationRecorder::OperationRecorder(Source source, std::uint32_t dataSize, Sink sink)
    : source_(std::move(source)), dataSize_(dataSize), sink_(std::move(sink)) {
    EnterDocumentMode();
}

void OperationRecorder::Record() {
    const std::int32_t result = Interpret();
    Begin("result").Add(result).Done();
}

OperationRecorder& OperationRecorder::Begin(const char* name) {
    line_ = name;
    return *this;
}

OperationRecorder& OperationRecorder::Add(std::int64_t value) {
    line_ += ' ';
    AppendInteger(line_, value);
    return *this;
}

OperationRecorder& OperationRecorder::AddReal(double value) {
    line_ += ' ';
    AppendDouble(line_, value);
    return *this;
}

OperationRecorder& OperationRecorder::AddText(const char* text) {
    line_ += ' ';
    AppendQuoted(line_, text);
    return *this;
}

OperationRecorder& OperationRecorder::AddHex(std::uint32_t value, int digits) {
    line_ += ' ';
    AppendHexNumber(line_, value, digits);
    return *this;
}

OperationRecorder& OperationRecorder::AddPoints(const PointI* points, std::int64_t count) {
    line_ += " :";
    AppendPoints(line_, points, static_cast<std::size_t>(std::max<std::int64_t>(count, 0)));
    return *this;
}

void OperationRecorder::Done() {
    line_ += '\n';
    sink_(line_);
}

std::uint32_t OperationRecorder::ReadData(void* buffer, std::uint32_t maxBytes) {
    return static_cast<std::uint32_t>(source_(buffer, maxBytes));
}

void OperationRecorder::EndPage(std::uint32_t pageIndex) { Begin("EndPage").Add(pageIndex).Done(); }

void OperationRecorder::Line(std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1) {
    Begin("Line").Add(x0).Add(y0).Add(x1).Add(y1).Done();
}

void OperationRecorder::Rectangle(std::int32_t x0, std::int32_t y0, std::int32_t x1,
                                  std::int32_t y1) {
    Begin("Rectangle").Add(x0).Add(y0).Add(x1).Add(y1).Done();
}

void OperationRecorder::FilledRectangle(std::int32_t x0, std::int32_t y0, std::int32_t x1,
                                        std::int32_t y1) {
    Begin("FilledRectangle").Add(x0).Add(y0).Add(x1).Add(y1).Done();
}

void OperationRecorder::Circle(std::int32_t cx, std::int32_t cy, std::int32_t radius) {
    Begin("Circle").Add(cx).Add(cy).Add(radius).Done();
}

void OperationRecorder::FilledPolyPolygon(PointI* points, const std::int32_t* counts,
                                          std::int32_t polygons) {
    Begin("FilledPolyPolygon").Add(polygons);
    std::int64_t total = 0;
    for (std::int32_t i = 0; i < polygons; ++i) {
        Add(counts[i]);
        total += counts[i];
    }
    AddPoints(points, total).Done();
}

void OperationRecorder::Polyline(std::int32_t count, PointI* points) {
    Begin("Polyline").Add(count).AddPoints(points, count).Done();
}

void OperationRecorder::FilledPolygon(std::int32_t count, PointI* points) {
    Begin("FilledPolygon").Add(count).AddPoints(points, count).Done();
}

int OperationRecorder::Arc(std::int32_t cx, std::int32_t cy, std::int32_t radius, double start,
                           double sweep) {
    Begin("Arc").Add(cx).Add(cy).Add(radius).AddReal(start).AddReal(sweep).Done();
    return 1;
}

void OperationRecorder::SetPatternLength(std::int32_t length, std::uint32_t mask) {
    Begin("SetPatternLength").Add(length).AddHex(mask, 8).Done();
}

void OperationRecorder::SetLineStyle(std::int32_t style) {
    Begin("SetLineStyle").Add(style).Done();
}

void OperationRecorder::SetPen(std::int32_t pen) { Begin("SetPen").Add(pen).Done(); }

void OperationRecorder::SetLineWidth(std::int32_t width) {
    Begin("SetLineWidth").Add(width).Done();
}

void OperationRecorder::SetColor(std::uint32_t colour) {
    Begin("SetColor").AddHex(colour, 6).Done();
}

int OperationRecorder::ReportProgress(std::int32_t /*percent*/) { return 1; }

void OperationRecorder::Raster(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
                               void* bitmap, std::int32_t flag, std::int32_t rop) {
    Begin("Raster").Add(x1).Add(y1).Add(x2).Add(y2).Add(flag).Add(rop);
    if (const void* data = GlobalLock(bitmap)) {
        AppendBitmap(line_, data, GlobalSize(bitmap));
        GlobalUnlock(bitmap);
    }
    GlobalFree(bitmap);
    Done();
}

void OperationRecorder::SetDrawMode(std::int32_t mode) { Begin("SetDrawMode").Add(mode).Done(); }

void OperationRecorder::SetFrameOffset(std::int32_t distance) {
    Begin("SetFrameOffset").Add(distance).Done();
}

void OperationRecorder::BeginLabelExtent(const char* text, double zero, std::int32_t height,
                                         std::int32_t reserved) {
    Begin("BeginLabelExtent").AddText(text).AddReal(zero).Add(height).Add(reserved).Done();
}

void OperationRecorder::EndLabelExtent(const char* text) {
    Begin("EndLabelExtent").AddText(text).Done();
}

void OperationRecorder::SetLineType(std::int32_t count, const std::int32_t* gaps) {
    Begin("SetLineType").Add(count);
    line_ += " :";
    for (std::int32_t i = 0; i < count; ++i) Add(gaps[i]);
    Done();
}

void OperationRecorder::SetLineAttributes(std::int32_t bits) {
    Begin("SetLineAttributes").AddHex(static_cast<std::uint32_t>(bits), 1).Done();
}

void OperationRecorder::DefineFillPattern(std::int32_t index, std::int32_t width,
                                          std::int32_t height, std::int32_t size,
                                          const std::uint8_t* bits) {
    Begin("DefineFillPattern").Add(index).Add(width).Add(height).Add(size);
    line_ += size > 0 ? " : " : " :";
    AppendHex(line_, bits, static_cast<std::size_t>(std::max(size, 0)));
    Done();
}

void OperationRecorder::SetFillType(std::int32_t kind, std::int32_t index) {
    Begin("SetFillType").Add(kind).Add(index).Done();
}

void OperationRecorder::BeginRasterClip(std::int32_t x1, std::int32_t y1, std::int32_t x2,
                                        std::int32_t y2) {
    Begin("BeginRasterClip").Add(x1).Add(y1).Add(x2).Add(y2).Done();
}

void OperationRecorder::EndRasterClip() { Begin("EndRasterClip").Done(); }

std::string Ops(std::string_view plot, const Reading& reading) {
    std::string out;
    std::string_view rest = plot;
    const auto source = [&rest](void* buffer, std::size_t size) {
        const std::size_t count = std::min(size, rest.size());
        std::memcpy(buffer, rest.data(), count);
        rest.remove_prefix(count);
        return count;
    };
    OperationRecorder recorder(source, static_cast<std::uint32_t>(plot.size()),
                               [&out](std::string_view line) { out += line; });
    recorder.SetReading(reading);
    recorder.Record();
    return out;
}

}  // namespace qm
