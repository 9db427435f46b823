// See host_block.h. The lines' formats are a contract with scripts: they change only together with
// the tool's documentation.
#include "trace/host_block.h"

#include <zlib.h>

#include "common/packed_bitmap.h"

namespace qm {

namespace {

// "WxHxBITS crc32=XXXXXXXX" of a whole packed bitmap; "?" when it is none.
std::string Describe(const BYTE* dib, LONG size) {
    const auto bytes = static_cast<std::size_t>(size);
    const auto bitmap = PackedBitmapView::Parse(dib, bytes);
    if (!bitmap) return "?";
    std::string text = std::to_string(bitmap->Width()) + 'x' + std::to_string(bitmap->Height()) +
                       'x' + std::to_string(bitmap->Bits()) + " crc32=";
    std::string crc;
    AppendHexNumber(crc, static_cast<std::uint32_t>(crc32_z(0, dib, bytes)), 8);
    return text.append(crc, 2);
}

}  // namespace

TracedBlock::TracedBlock(const std::shared_ptr<HostLog>& log)
    : TracedObject(log, log->Number("block")) {}

HRESULT TracedBlock::PutAttribute(BSTR name, VARIANT value, LONG flags) noexcept {
    return Call("PutAttribute", name, value, flags);
}

HRESULT TracedBlock::GetAttribute(BSTR /*name*/, LONG /*flags*/, VARIANT* value) noexcept {
    if (value != nullptr) VariantInit(value);
    return E_INVALIDARG;
}

HRESULT TracedBlock::AppendDrawColor1(LONG red, LONG green, LONG blue) noexcept {
    return Call("AppendDrawColor1", red, green, blue);
}

HRESULT TracedBlock::AppendFillColor1(LONG red, LONG green, LONG blue) noexcept {
    return Call("AppendFillColor1", red, green, blue);
}

HRESULT TracedBlock::AppendLayer(LONG number) noexcept { return Call("AppendLayer", number); }

HRESULT TracedBlock::AppendPen(LONG number) noexcept { return Call("AppendPen", number); }

HRESULT TracedBlock::AppendLineStyle(LONG style) noexcept { return Call("AppendLineStyle", style); }

HRESULT TracedBlock::AppendLineWidth(LONG width) noexcept { return Call("AppendLineWidth", width); }

HRESULT TracedBlock::AppendLine(LONG x1, LONG y1, LONG x2, LONG y2) noexcept {
    return Draw("AppendLine", x1, y1, x2, y2);
}

HRESULT TracedBlock::AppendRectangle(LONG x1, LONG y1, LONG x2, LONG y2,
                                     VARIANT_BOOL filled) noexcept {
    return Draw("AppendRectangle", x1, y1, x2, y2, AsFlag{filled});
}

HRESULT TracedBlock::AppendCircle(LONG centerX, LONG centerY, LONG radius,
                                  VARIANT_BOOL filled) noexcept {
    return Draw("AppendCircle", centerX, centerY, radius, AsFlag{filled});
}

HRESULT TracedBlock::AppendArc3(LONG centerX, LONG centerY, LONG radiusX, LONG radiusY, FLOAT start,
                                FLOAT span) noexcept {
    return Draw("AppendArc3", centerX, centerY, radiusX, radiusY, static_cast<double>(start),
                static_cast<double>(span));
}

HRESULT TracedBlock::AppendPolygon(LONG count, const LONG* points, VARIANT_BOOL filled) noexcept {
    return Draw("AppendPolygon", count, AsFlag{filled}, AsPairs{points, count});
}

HRESULT TracedBlock::AppendPolyPolygon(LONG polygons, const LONG* counts, LONG total,
                                       const LONG* points, VARIANT_BOOL filled) noexcept {
    return Draw("AppendPolyPolygon", polygons, AsList{counts, polygons}, total, AsFlag{filled},
                AsPairs{points, total});
}

HRESULT TracedBlock::AppendDrawMode(LONG mode) noexcept { return Call("AppendDrawMode", mode); }

HRESULT TracedBlock::AppendLineDash(LONG count, const LONG* gaps) noexcept {
    return Call("AppendLineDash", count, AsWord{":"}, AsList{gaps, count});
}

HRESULT TracedBlock::AppendLineAttributes(LONG attributes) noexcept {
    return Call("AppendLineAttributes", AsHex{static_cast<ULONG>(attributes), 1});
}

HRESULT TracedBlock::DefineFillPattern(LONG index, LONG width, LONG height, LONG size,
                                       const BYTE* bits) noexcept {
    return Call("DefineFillPattern", index, width, height, size, AsBytes{bits, size});
}

HRESULT TracedBlock::AppendFillStyle(LONG kind, LONG index) noexcept {
    return Call("AppendFillStyle", kind, index);
}

HRESULT TracedBlock::AppendClipRegion(LONG count, const LONG* points) noexcept {
    return Call("AppendClipRegion", count, AsPairs{points, count});
}

HRESULT TracedBlock::EndClipRegion() noexcept { return Call("EndClipRegion"); }

HRESULT TracedBlock::AppendTextElement(LONG x1, LONG y1, LONG x2, LONG y2, LONG reserved1,
                                       LONG reserved2, LONG reserved3, BSTR text) noexcept {
    return Draw("AppendTextElement", x1, y1, x2, y2, reserved1, reserved2, reserved3, text);
}

HRESULT TracedBlock::AppendDib(LONG x1, LONG y1, LONG x2, LONG y2, LONG size, const BYTE* dib,
                               LONG rasterOperation) noexcept {
    return Guarded([&] {
        return Draw("AppendDib", x1, y1, x2, y2, size, rasterOperation,
                    AsWord{Describe(dib, size)});
    });
}

HRESULT TracedBlock::EndOfData() noexcept { return Call("EndOfData"); }

HRESULT TracedBlock::IsEmpty(VARIANT_BOOL* empty) noexcept {
    if (empty == nullptr) return E_POINTER;
    *empty = empty_ ? VARIANT_TRUE : VARIANT_FALSE;
    return Call("IsEmpty", AsWord{empty_ ? "true" : "false"});
}

}  // namespace qm
