// See document_walker.h.
#include "host/document_walker.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "common/geometry.h"
#include "common/numbers.h"
#include "common/packed_bitmap.h"
#include "host/host_object.h"
#include "host/page_summary.h"
#include "host/vector_block_pusher.h"

namespace qm {

namespace {

// A child's sink; E_NOINTERFACE when the component hands out something else.
template <typename Interface>
HRESULT MakeSink(IQmSaveStructure& parent, LONG type, LONG index, ComPtr<Interface>& sink) {
    ComPtr<IUnknown> object;
    const HRESULT status = parent.CreateObject(type, index, object.Put());
    if (FAILED(status)) return status;
    sink = object.As<Interface>();
    return sink ? S_OK : E_NOINTERFACE;
}

HRESULT PushAttribute(IQmSaveStructure& node, std::wstring_view name, const Variant& value) {
    return node.SetAttribute(Bstr(name).Get(), value.Get());
}

// What the page shows, turned as it is shown.
Extent ShownExtent(const PlotPage& page, QuarterTurn turn) {
    const Extent drawn = GistOf(page.Drawing()).extent;
    if (drawn.empty) return drawn;
    Extent shown;
    for (const double x : {drawn.minX, drawn.maxX}) {
        for (const double y : {drawn.minY, drawn.maxY}) {
            const PointI point = turn({RoundToInt32(x), RoundToInt32(y)});
            shown.Add(point.x, point.y);
        }
    }
    return shown;
}

// The origin stays where it is, so that coordinates in the file are those of the document; of a
// turned page only as far as nothing gets below 0. The far corner counts for pages whose y runs
// down.
HRESULT PushCropBox(IQmSaveStructure& node, const Extent& extent, bool turned) {
    const std::pair<const wchar_t*, double> values[] = {
        {L"CropMinX", turned ? std::min(0.0, extent.minX) : 0.0},
        {L"CropMinY", turned ? std::min(0.0, extent.minY) : 0.0},
        {L"CropMaxX", std::max(0.0, extent.maxX)},
        {L"CropMaxY", std::max(0.0, extent.maxY)},
    };
    for (const auto& [name, value] : values) {
        const HRESULT status = PushAttribute(node, name, Variant::Double(value));
        if (FAILED(status)) return status;
    }
    return S_OK;
}

HRESULT PushAttributes(IQmSaveStructure& node, const PlotPage& page, QuarterTurn turn) {
    for (const AttributeMap::Entry& entry : page.Attributes().Entries()) {
        const HRESULT status = PushAttribute(node, entry.name, entry.value);
        if (FAILED(status)) return status;
    }
    if (page.Attributes().Find(L"CropMaxX") != nullptr) return S_OK;
    return PushCropBox(node, ShownExtent(page, turn), turn.quarters != 0);
}

// The depths that a raster sink takes, with the layout of their dots.
struct RasterDepth {
    int bits;
    LONG type;  // QM_RASTER_TYPE
};
// clang-format off
constexpr RasterDepth kDepths[] = {
    { 1, QM_RASTER_BW},
    { 4, QM_RASTER_INDEX_4},
    { 8, QM_RASTER_INDEX_8},
    {16, QM_RASTER_RGB},
    {24, QM_RASTER_RGB},
    {32, QM_RASTER_RGBA},
};
// clang-format on

const RasterDepth* FindDepth(int bits) {
    for (const RasterDepth& depth : kDepths) {
        if (depth.bits == bits) return &depth;
    }
    return nullptr;
}

HRESULT PushRows(IQmSaveRasterData& sink, const PackedBitmapView& bitmap, LONG type) {
    const auto rowBytes = static_cast<LONG>(bitmap.RowBytes());
    for (std::int32_t y = 0; y < bitmap.Height(); ++y) {
        const HRESULT status = sink.AddScanline1(type, y, 1, rowBytes, bitmap.RowFromTop(y));
        if (FAILED(status)) return status;
    }
    return S_OK;
}

struct Resolution {
    LONG x = 0;  // dots per inch
    LONG y = 0;
};

HRESULT PushRasterBlock(IQmSaveStructure& page, LONG index, const PackedBitmapView& bitmap,
                        Resolution resolution) {
    const RasterDepth* const depth = FindDepth(bitmap.Bits());
    if (depth == nullptr) return E_INVALIDARG;
    ComPtr<IQmSaveRasterData> sink;
    HRESULT status = MakeSink(page, QM_RASTER_BLOCK, index, sink);
    if (FAILED(status)) return status;
    std::vector<PaletteEntry> palette;
    for (std::uint32_t i = 0; i < PackedColourCount(bitmap.Bits()); ++i) {
        palette.push_back(bitmap.Colour(i));
    }
    const auto* const colours =
        palette.empty() ? nullptr : reinterpret_cast<const BYTE*>(palette.data());
    status =
        sink->CreateRasterStorage(bitmap.Width(), bitmap.Height(), bitmap.Bits(), 0, resolution.x,
                                  resolution.y, static_cast<LONG>(palette.size()), colours);
    if (SUCCEEDED(status)) status = PushRows(*sink, bitmap, depth->type);
    return SUCCEEDED(status) ? sink->EndObject() : status;
}

LONG DotsPerInch(std::int32_t dots, double from, double to, double unitsPerInch) {
    const double inches = std::abs(to - from) / unitsPerInch;
    return inches > 0.0 ? std::max(1, RoundToInt32(dots / inches)) : 1;
}

// Pictures of other depths and broken ones are left out.
HRESULT PushPictures(IQmSaveStructure& node, const PlotPage& page,
                     const std::vector<PagePicture>& pictures) {
    LONG index = 1;  // behind the vector block
    for (const PagePicture& picture : pictures) {
        const auto bitmap =
            PackedBitmapView::Parse(picture.packedBitmap.data, picture.packedBitmap.size);
        if (!bitmap || FindDepth(bitmap->Bits()) == nullptr) continue;
        const auto [a, b] = picture.box;
        const Resolution resolution{DotsPerInch(bitmap->Width(), a.x, b.x, page.UnitsPerInch()),
                                    DotsPerInch(bitmap->Height(), a.y, b.y, page.UnitsPerInch())};
        const HRESULT status = PushRasterBlock(node, index++, *bitmap, resolution);
        if (FAILED(status)) return status;
    }
    return S_OK;
}

HRESULT PushDrawing(IQmSaveStructure& node, const PlotPage& page, QuarterTurn turn) {
    ComPtr<IQmSaveVectorData> sink;
    HRESULT status = MakeSink(node, QM_VECTOR_BLOCK, 0, sink);
    if (FAILED(status)) return status;
    VectorBlockPusher pusher(*sink, turn);
    Play(page.Drawing(), pusher);
    pusher.Finish();
    if (FAILED(pusher.Status())) return pusher.Status();
    status = sink->EndObject();
    return SUCCEEDED(status) ? PushPictures(node, page, pusher.Pictures()) : status;
}

HRESULT PushBitmap(IQmSaveStructure& node, const PageBitmap& drawn) {
    const auto bitmap = PackedBitmapView::Parse(drawn.packed.data(), drawn.packed.size());
    if (!bitmap) return E_INVALIDARG;
    return PushRasterBlock(node, 0, *bitmap, {drawn.dpi, drawn.dpi});
}

HRESULT PushPage(IQmSaveStructure& contents, LONG index, const PlotPage& page,
                 const PageDrawer& drawPage) {
    ComPtr<IQmSaveStructure> node;
    HRESULT status = MakeSink(contents, QM_CONTAINER, index, node);
    // A save component does not know that a page is to be shown turned.
    const QuarterTurn turn = QuarterTurn::Of(page.Rotation());
    if (SUCCEEDED(status)) status = PushAttributes(*node, page, turn);
    if (SUCCEEDED(status)) {
        status = drawPage ? PushBitmap(*node, drawPage(page)) : PushDrawing(*node, page, turn);
    }
    return SUCCEEDED(status) ? node->EndObject() : status;
}

HRESULT PushContents(IQmSaveStructure& document, const std::vector<PlotPage>& pages,
                     const PageDrawer& drawPage) {
    ComPtr<IQmSaveStructure> contents;
    HRESULT status = MakeSink(document, QM_CONTENTS, 0, contents);
    LONG index = 0;
    for (auto page = pages.begin(); page != pages.end() && SUCCEEDED(status); ++page) {
        status = PushPage(*contents, index++, *page, drawPage);
    }
    return SUCCEEDED(status) ? contents->EndObject() : status;
}

}  // namespace

HRESULT SaveDocument(IQmFilterSave& filter, IQmDataObject* target, IUnknown* settings,
                     const std::vector<PlotPage>& pages, const PageDrawer& drawPage) {
    ComPtr<IUnknown> root;
    HRESULT status = filter.CreateDocument(target, settings, root.Put());
    if (FAILED(status)) return status;
    const auto document = root.As<IQmSaveStructure>();
    if (!document) return E_NOINTERFACE;
    status = PushContents(*document, pages, drawPage);
    if (SUCCEEDED(status)) status = document->EndObject();
    return SUCCEEDED(status) ? filter.CloseDocument() : status;
}

}  // namespace qm
