// See drawing_block.h.
#include "host/drawing_block.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <utility>

#include "common/colour.h"
#include "platform/text.h"

namespace qm {

namespace {

bool IsRun(LONG count, const void* data) { return count >= 0 && (count == 0 || data != nullptr); }

// LONG is another type than int32_t on Windows, of the same size.
const std::int32_t* AsInts(const LONG* values) {
    static_assert(sizeof(LONG) == sizeof(std::int32_t));
    return reinterpret_cast<const std::int32_t*>(values);
}

PointSpan AsPoints(LONG count, const LONG* points) {
    return {reinterpret_cast<const PointI*>(points), static_cast<std::size_t>(count)};
}

// A component beyond 0 to 255 keeps its low byte.
std::uint32_t ColourOf(LONG red, LONG green, LONG blue) {
    return Colour{static_cast<std::uint8_t>(red), static_cast<std::uint8_t>(green),
                  static_cast<std::uint8_t>(blue)}
        .ToBgr();
}

bool LengthsAgree(LONG rings, const LONG* lengths, LONG total) {
    std::int64_t sum = 0;
    for (LONG i = 0; i < rings; ++i) {
        if (lengths[i] < 0) return false;
        sum += lengths[i];
    }
    return sum == total;
}

// A global block that stays where it is, and is freed with this.
struct LockedBlock {
    explicit LockedBlock(GlobalBlock block) : owner(std::move(block)) {}

    const GlobalBlock owner;
    const GlobalView view{owner.Get()};
};

}  // namespace

template <typename Append>
HRESULT DrawingBlock::Filed(const Append& append) noexcept {
    const HRESULT status = Guarded([&]() -> HRESULT {
        append();
        return S_OK;
    });
    if (FAILED(status)) complete_ = false;
    return status;
}

void* DrawingBlock::FindInterface(REFIID riid) noexcept {
    return IsEqualGUID(riid, kIdentity) ? this : nullptr;
}

HRESULT DrawingBlock::PutAttribute(BSTR name, VARIANT value, LONG flags) noexcept {
    return attributes_.Put(name, value, flags);
}

HRESULT DrawingBlock::GetAttribute(BSTR name, LONG, VARIANT* value) noexcept {
    return attributes_.Get(name, value);
}

HRESULT DrawingBlock::AppendDrawColor1(LONG red, LONG green, LONG blue) noexcept {
    return Filed([&] { list_.AppendColour(RecordKind::kDrawColour, ColourOf(red, green, blue)); });
}

HRESULT DrawingBlock::AppendFillColor1(LONG red, LONG green, LONG blue) noexcept {
    return Filed([&] { list_.AppendColour(RecordKind::kFillColour, ColourOf(red, green, blue)); });
}

HRESULT DrawingBlock::AppendLayer(LONG layer) noexcept {
    return Filed([&] { list_.AppendValue(RecordKind::kLayer, layer); });
}

HRESULT DrawingBlock::AppendPen(LONG pen) noexcept {
    return Filed([&] { list_.AppendValue(RecordKind::kPen, pen); });
}

HRESULT DrawingBlock::AppendLineStyle(LONG style) noexcept {
    return Filed([&] { list_.AppendValue(RecordKind::kLineStyle, style); });
}

HRESULT DrawingBlock::AppendLineWidth(LONG width) noexcept {
    return Filed([&] { list_.AppendValue(RecordKind::kLineWidth, width); });
}

HRESULT DrawingBlock::AppendLine(LONG x1, LONG y1, LONG x2, LONG y2) noexcept {
    return Filed([&] { list_.AppendLine({x1, y1}, {x2, y2}); });
}

HRESULT DrawingBlock::AppendRectangle(LONG x1, LONG y1, LONG x2, LONG y2,
                                      VARIANT_BOOL filled) noexcept {
    return Filed([&] { list_.AppendRectangle({{x1, y1}, {x2, y2}}, filled != VARIANT_FALSE); });
}

HRESULT DrawingBlock::AppendCircle(LONG x, LONG y, LONG radius, VARIANT_BOOL filled) noexcept {
    return Filed([&] { list_.AppendCircle({x, y}, radius, filled != VARIANT_FALSE); });
}

HRESULT DrawingBlock::AppendArc3(LONG x, LONG y, LONG radiusX, LONG radiusY, FLOAT start,
                                 FLOAT span) noexcept {
    return Filed([&] { list_.AppendArc({{x, y}, radiusX, radiusY, start, span}); });
}

HRESULT DrawingBlock::AppendPolygon(LONG count, const LONG* points, VARIANT_BOOL filled) noexcept {
    if (!IsRun(count, points)) return E_INVALIDARG;
    return Filed([&] { list_.AppendPolygon(AsPoints(count, points), filled != VARIANT_FALSE); });
}

HRESULT DrawingBlock::AppendPolyPolygon(LONG rings, const LONG* lengths, LONG total,
                                        const LONG* points, VARIANT_BOOL filled) noexcept {
    if (!IsRun(rings, lengths) || !IsRun(total, points) || !LengthsAgree(rings, lengths, total)) {
        return E_INVALIDARG;
    }
    const Rings area{AsInts(lengths), static_cast<std::size_t>(rings), AsPoints(total, points)};
    return Filed([&] { list_.AppendPolyPolygon(area, filled != VARIANT_FALSE); });
}

HRESULT DrawingBlock::AppendDrawMode(LONG mode) noexcept {
    return Filed([&] { list_.AppendValue(RecordKind::kDrawMode, mode); });
}

HRESULT DrawingBlock::AppendLineDash(LONG count, const LONG* gaps) noexcept {
    if (!IsRun(count, gaps)) return E_INVALIDARG;
    return Filed([&] { list_.AppendLineDash(AsInts(gaps), static_cast<std::size_t>(count)); });
}

HRESULT DrawingBlock::AppendLineAttributes(LONG attributes) noexcept {
    return Filed([&] { list_.AppendValue(RecordKind::kLineAttributes, attributes); });
}

HRESULT DrawingBlock::DefineFillPattern(LONG index, LONG width, LONG height, LONG size,
                                        const BYTE* bits) noexcept {
    if (!IsRun(size, bits)) return E_INVALIDARG;
    const FillPattern pattern{index, width, height, {bits, static_cast<std::size_t>(size)}};
    return Filed([&] { list_.DefineFillPattern(pattern); });
}

HRESULT DrawingBlock::AppendFillStyle(LONG kind, LONG index) noexcept {
    return Filed([&] { list_.AppendFillStyle(kind, index); });
}

HRESULT DrawingBlock::AppendClipRegion(LONG count, const LONG* points) noexcept {
    if (!IsRun(count, points)) return E_INVALIDARG;
    return Filed([&] { list_.AppendClipRegion(AsPoints(count, points)); });
}

HRESULT DrawingBlock::EndClipRegion() noexcept {
    return Filed([&] { list_.EndClipRegion(); });
}

HRESULT DrawingBlock::AppendTextElement(LONG x1, LONG y1, LONG x2, LONG y2, LONG, LONG, LONG,
                                        BSTR text) noexcept {
    return Filed([&] { list_.AppendText({{x1, y1}, {x2, y2}}, WideToUtf8(ViewOf(text))); });
}

HRESULT DrawingBlock::AppendDib(LONG x1, LONG y1, LONG x2, LONG y2, LONG size, const BYTE* dib,
                                LONG rasterOperation) noexcept {
    if (!IsRun(size, dib)) return E_INVALIDARG;
    return Filed([&] {
        list_.AppendPicture({{x1, y1}, {x2, y2}}, rasterOperation,
                            {dib, static_cast<std::size_t>(size)});
    });
}

HRESULT DrawingBlock::AppendLetter(const Strokes& strokes, BoxI& box) noexcept {
    return Filed([&] { list_.AppendLetter(strokes, box); });
}

HRESULT DrawingBlock::AppendText(const BoxI& box, std::string_view text) noexcept {
    return Filed([&] {
        const bool ascii = std::all_of(text.begin(), text.end(),
                                       [](char c) { return static_cast<unsigned char>(c) < 128; });
        if (ascii) return list_.AppendText(box, text);
        list_.AppendText(box, WideToUtf8(BytesToWide(text)));
    });
}

HRESULT DrawingBlock::AppendOwnedDib(const BoxI& box, GlobalBlock dib, std::size_t size,
                                     LONG rasterOperation) noexcept {
    return Filed([&] {
        const auto locked = std::make_shared<const LockedBlock>(std::move(dib));
        const std::shared_ptr<const std::uint8_t> bytes(locked, locked->view.Data());
        list_.AppendPicture(box, rasterOperation, bytes, size);
    });
}

// Where memory is short the list stays as large as it is.
HRESULT DrawingBlock::EndOfData() noexcept {
    Filed([&] { list_.Finish(); });
    return S_OK;
}

HRESULT DrawingBlock::IsEmpty(VARIANT_BOOL* empty) noexcept {
    if (empty == nullptr) return E_POINTER;
    *empty = list_.IsEmpty() ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
}

}  // namespace qm
