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
#include "interfaces/picture_handover.h"

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

// A raster block of the page. The sink is asked for when the picture begins: a page that cannot be
// drawn has none.
class RasterBlock {
  public:
    RasterBlock(IQmSaveStructure& page, LONG index) : page_(page), index_(index) {}

    // `dpiY` beside head.dpi. E_INVALIDARG for a depth that no sink takes.
    HRESULT Begin(const PictureHead& head, LONG dpiY) {
        const RasterDepth* const depth = FindDepth(head.bits);
        if (depth == nullptr) return E_INVALIDARG;
        type_ = depth->type;
        rowBytes_ = static_cast<LONG>(PackedRowBytes(head.width, head.bits));
        height_ = head.height;
        HRESULT status = MakeSink(page_, QM_RASTER_BLOCK, index_, sink_);
        if (FAILED(status)) return status;
        handover_ = sink_.As<PictureHandover>();
        status = handover_ ? handover_->BeginPicture(head) : S_FALSE;
        if (status != S_FALSE) return status;
        handover_.Reset();
        const auto* const colours =
            head.palette.empty() ? nullptr : reinterpret_cast<const BYTE*>(head.palette.data());
        return sink_->CreateRasterStorage(head.width, head.height, head.bits, 0, head.dpi, dpiY,
                                          static_cast<LONG>(head.palette.size()), colours);
    }
    HRESULT Row(const std::uint8_t* row) {
        const LONG y = rows_++;
        if (handover_) return handover_->AddRow(row);
        return sink_->AddScanline1(type_, y, 1, rowBytes_, row);
    }
    HRESULT End() { return sink_->EndObject(); }
    // Whether Row was called for all rows of a picture that was begun.
    bool IsWhole() const { return sink_ && rows_ == height_; }

  private:
    IQmSaveStructure& page_;
    LONG index_;
    ComPtr<IQmSaveRasterData> sink_;
    ComPtr<PictureHandover> handover_;  // when the sink takes rows as they come
    LONG type_ = 0;
    LONG rowBytes_ = 0;
    LONG height_ = 0;
    LONG rows_ = 0;
};

// Pictures of other depths and broken ones are left out by the caller.
HRESULT PushRasterBlock(RasterBlock block, const PackedBitmapView& bitmap, LONG dpiX, LONG dpiY) {
    PictureHead head{bitmap.Width(), bitmap.Height(), bitmap.Bits(), dpiX, {}};
    for (std::uint32_t i = 0; i < PackedColourCount(bitmap.Bits()); ++i) {
        head.palette.push_back(bitmap.Colour(i));
    }
    HRESULT status = block.Begin(head, dpiY);
    for (std::int32_t y = 0; y < bitmap.Height() && SUCCEEDED(status); ++y) {
        status = block.Row(bitmap.RowFromTop(y));
    }
    return SUCCEEDED(status) ? block.End() : status;
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
        const HRESULT status =
            PushRasterBlock(RasterBlock(node, index++), *bitmap,
                            DotsPerInch(bitmap->Width(), a.x, b.x, page.UnitsPerInch()),
                            DotsPerInch(bitmap->Height(), a.y, b.y, page.UnitsPerInch()));
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

// What a drawer draws into. A failure of the component ends the drawing as an exception, which
// stays in this file.
class DrawnBlock final : public PictureSink {
  public:
    struct Refused {
        HRESULT status;
    };

    explicit DrawnBlock(RasterBlock block) : block_(std::move(block)) {}

    void Begin(const PictureHead& head) override { Check(block_.Begin(head, head.dpi)); }
    void Row(const std::uint8_t* row) override { Check(block_.Row(row)); }
    HRESULT End() { return block_.IsWhole() ? block_.End() : E_INVALIDARG; }

  private:
    static void Check(HRESULT status) {
        if (FAILED(status)) throw Refused{status};
    }

    RasterBlock block_;
};

HRESULT PushDrawn(IQmSaveStructure& node, const PlotPage& page, const PageDrawer& drawPage) {
    DrawnBlock block(RasterBlock(node, 0));
    try {
        drawPage(page, block);
    } catch (const DrawnBlock::Refused& refused) {
        return refused.status;
    }
    return block.End();
}

HRESULT PushPage(IQmSaveStructure& contents, LONG index, const PlotPage& page,
                 const PageDrawer& drawPage) {
    ComPtr<IQmSaveStructure> node;
    HRESULT status = MakeSink(contents, QM_CONTAINER, index, node);
    // A save component does not know that a page is to be shown turned.
    const QuarterTurn turn = QuarterTurn::Of(page.Rotation());
    if (SUCCEEDED(status)) status = PushAttributes(*node, page, turn);
    if (SUCCEEDED(status)) {
        status = drawPage ? PushDrawn(*node, page, drawPage) : PushDrawing(*node, page, turn);
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
