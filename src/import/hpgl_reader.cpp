// See hpgl_reader.h. The operations stand in slot order.
#include "import/hpgl_reader.h"

#include <algorithm>
#include <utility>

#include "common/colour.h"
#include "common/numbers.h"
#include "common/packed_bitmap.h"
#include "import/qm_filter_hpgl.h"
#include "platform/global_block.h"
#include "platform/text.h"
#include "platform/variant.h"

namespace qm {

namespace {

// Degrees as the host takes them, by the cut constant as everywhere.
float Degrees(double radians) { return static_cast<float>(radians / kRadiansPerDegree); }

// Bytes of the bitmap itself: the block may have been rounded up by the system. 0 when it cannot be
// read.
std::size_t BitmapBytes(const GlobalBlock& owner) {
    const GlobalView block(owner.Get());
    const auto bitmap = PackedBitmapView::Parse(block.Data(), block.Size());
    if (!bitmap) return block.Size();
    return static_cast<std::size_t>(bitmap->Pixels() - block.Data()) + bitmap->PixelBytes();
}

}  // namespace

void HPGLReader::BeginDocument(ComPtr<IQmDocument> root, HostPage first, CQmFilterHPGL* filter) {
    root_ = std::move(root);
    page_ = std::move(first);
    filter_ = filter;
    penUsed_ = {};
    EnterDocumentMode();
}

// --- Source --------------------------------------------------------------------------------------

std::uint32_t HPGLReader::ReadData(void* buffer, std::uint32_t maxBytes) {
    // Statuses of reads differ between sources; the count tells.
    if (file_) {
        DWORD done = 0;
        readFailed_ = readFailed_ || !ReadFile(file_.Get(), buffer, maxBytes, &done, nullptr);
        return done;
    }
    ULONG done = 0;
    if (stream_) stream_->Read(buffer, maxBytes, &done);
    return done;
}

std::uint32_t HPGLReader::GetDataSize() {
    if (file_) return GetFileSize(file_.Get(), nullptr);
    STATSTG status{};
    if (!stream_ || FAILED(stream_->Stat(&status, STATFLAG_NONAME))) return 0;
    return static_cast<std::uint32_t>(status.cbSize.QuadPart);
}

std::uint32_t HPGLReader::SeekData(std::int32_t offset, std::int32_t origin) {
    const DWORD method = origin == 1 ? FILE_CURRENT : origin == 2 ? FILE_END : FILE_BEGIN;
    if (file_) return SetFilePointer(file_.Get(), offset, nullptr, method);
    LARGE_INTEGER move{};
    move.QuadPart = offset;
    ULARGE_INTEGER position{};
    // The three origins of streams and files have the same numbers.
    if (stream_) stream_->Seek(move, method, &position);
    return static_cast<std::uint32_t>(position.QuadPart);
}

// --- Page ----------------------------------------------------------------------------------------

PageFacts HPGLReader::Facts() const {
    return {pageCounter_,   layers_,     highestLayer_, penUsed_,
            rasterPresent_, searchable_, Rotation()};
}

// Ends the block's data and, unless the page is empty, makes it a node; `finished` tells which.
HRESULT HPGLReader::ClosePage(bool& finished) {
    bool empty = false;
    const HRESULT status = CloseBlock(page_, empty);
    if (FAILED(status)) return status;
    finished = !empty || rasterPresent_;
    if (finished && root_ && page_.container) FinishPage(*root_, *page_.container, Facts());
    return S_OK;
}

void HPGLReader::EndPage(std::uint32_t /*pageIndex*/) {
    bool finished = false;
    if (FAILED(ClosePage(finished))) return;
    page_.container.Reset();
    layers_ = {};
    highestLayer_ = 0;
    // Quirk: counted for an empty page too, so page names can skip numbers.
    pageCounter_ = WrapAdd(pageCounter_, 1);
    frameOffset_ = 0;
    page_ = CreatePage(kFurtherBlock);
    if (!page_.container) return;
    penUsed_ = {};
    rasterPresent_ = false;
}

HRESULT HPGLReader::FinishLastPage(LONG& pages) {
    bool finished = false;
    const HRESULT status = ClosePage(finished);
    if (FAILED(status)) return status;
    pages = WrapAdd(pageCounter_, finished ? 1 : 0);
    return S_OK;
}

// --- Shapes --------------------------------------------------------------------------------------

void HPGLReader::Line(std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1) {
    y0 = Shifted(y0);
    y1 = Shifted(y1);
    if (trackExtent_) {
        extent_.Add(x0, y0);
        extent_.Add(x1, y1);
    }
    if (page_.block) page_.block->AppendLine(x0, y0, x1, y1);
}

void HPGLReader::Letter(const Strokes& strokes) {
    if (!page_.handover || frameOffset_ != 0) return HPGLRead::Letter(strokes);
    BoxI box;
    page_.handover->AppendLetter(strokes, box);
    if (!trackExtent_) return;
    extent_.Add(box.a.x, box.a.y);
    extent_.Add(box.b.x, box.b.y);
}

void HPGLReader::AppendRectangle(std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1,
                                 VARIANT_BOOL filled) {
    if (page_.block) page_.block->AppendRectangle(x0, Shifted(y0), x1, Shifted(y1), filled);
}

void HPGLReader::Rectangle(std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1) {
    AppendRectangle(x0, y0, x1, y1, VARIANT_FALSE);
}

void HPGLReader::FilledRectangle(std::int32_t x0, std::int32_t y0, std::int32_t x1,
                                 std::int32_t y1) {
    AppendRectangle(x0, y0, x1, y1, 1);
}

void HPGLReader::Circle(std::int32_t cx, std::int32_t cy, std::int32_t radius) {
    if (page_.block) page_.block->AppendCircle(cx, Shifted(cy), radius, VARIANT_FALSE);
}

// Moves the points by the frame offset in place, takes them into the label extent and returns them
// as the host's number pairs. A copy, because a host's LONG is not everywhere the type that a
// PointI holds.
const LONG* HPGLReader::ShiftPoints(PointI* points, std::int32_t count) {
    const auto size = static_cast<std::size_t>(std::max(count, 0));
    if (hostPoints_.size() < 2 * size) hostPoints_.resize(2 * size);
    LONG* const pairs = hostPoints_.data();
    for (std::size_t i = 0; i < size; ++i) {
        PointI& point = points[i];
        point.y = Shifted(point.y);
        pairs[2 * i] = point.x;
        pairs[2 * i + 1] = point.y;
    }
    if (trackExtent_) {
        for (std::size_t i = 0; i < size; ++i) extent_.Add(points[i].x, points[i].y);
    }
    return pairs;
}

void HPGLReader::FilledPolyPolygon(PointI* points, const std::int32_t* counts,
                                   std::int32_t polygons) {
    hostCounts_.assign(counts, counts + std::max(polygons, 0));
    std::int32_t total = 0;
    for (const LONG count : hostCounts_) total = WrapAdd(total, count);
    const LONG* pairs = ShiftPoints(points, total);
    if (!page_.block) return;
    page_.block->AppendPolyPolygon(polygons, hostCounts_.data(), total, pairs, VARIANT_TRUE);
}

void HPGLReader::AppendPolygon(std::int32_t count, PointI* points, VARIANT_BOOL filled) {
    const LONG* pairs = ShiftPoints(points, count);
    if (page_.block) page_.block->AppendPolygon(count, pairs, filled);
}

void HPGLReader::Polyline(std::int32_t count, PointI* points) {
    AppendPolygon(count, points, VARIANT_FALSE);
}

void HPGLReader::FilledPolygon(std::int32_t count, PointI* points) {
    AppendPolygon(count, points, VARIANT_TRUE);
}

int HPGLReader::Arc(std::int32_t cx, std::int32_t cy, std::int32_t radius, double start,
                    double sweep) {
    if (page_.block) {
        page_.block->AppendArc3(cx, Shifted(cy), radius, radius, Degrees(start), Degrees(sweep));
    }
    return 1;
}

// --- Attributes ----------------------------------------------------------------------------------

// Quirk: says nothing; dashes reach the host through SetLineType only.
void HPGLReader::SetPatternLength(std::int32_t /*length*/, std::uint32_t /*mask*/) {}

void HPGLReader::SetLineStyle(std::int32_t style) {
    if (page_.block) page_.block->AppendLineStyle(style);
}

void HPGLReader::SetPen(std::int32_t pen) {
    pen = std::max(pen, 0);
    const auto index = static_cast<std::size_t>(pen);
    if (index >= kLayers) return;
    if (Layer& layer = layers_[index]; !layer.defined) {
        layer = {colour_, true};
        highestLayer_ = std::max(highestLayer_, pen);
    }
    if (page_.block) {
        page_.block->AppendLayer(pen);
        page_.block->AppendPen(pen);
    }
    penUsed_[index] = true;
}

void HPGLReader::SetLineWidth(std::int32_t width) {
    if (page_.block) page_.block->AppendLineWidth(width);
}

void HPGLReader::SetColor(std::uint32_t colour) {
    colour_ = colour;
    if (!page_.block) return;
    const auto [red, green, blue] = Colour::FromBgr(colour);
    page_.block->AppendDrawColor1(red, green, blue);
    page_.block->AppendFillColor1(red, green, blue);
}

int HPGLReader::ReportProgress(std::int32_t percent) {
    if (filter_ == nullptr) return 1;
    if (!Aborted()) filter_->FireProgress(percent, abort_);
    return Aborted() ? 0 : 1;
}

// --- Raster --------------------------------------------------------------------------------------

void HPGLReader::Raster(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
                        void* bitmap, std::int32_t /*flag*/, std::int32_t rop) {
    GlobalBlock owner(bitmap);
    const std::size_t size = BitmapBytes(owner);
    if (size == 0) return;
    const auto [left, right] = std::minmax({x1, x2});
    const auto [bottom, top] = std::minmax({Shifted(y1), Shifted(y2)});
    // Quirk: pictures go into the drawing block; the host's raster blocks are never used.
    if (page_.handover) {
        page_.handover->AppendOwnedDib({{left, bottom}, {right, top}}, std::move(owner), size, rop);
    } else if (page_.block) {
        const GlobalView view(owner.Get());
        page_.block->AppendDib(left, bottom, right, top, static_cast<LONG>(size), view.Data(), rop);
    }
    rasterPresent_ = true;
}

void HPGLReader::SetDrawMode(std::int32_t mode) {
    if (page_.block) page_.block->AppendDrawMode(mode);
}

void HPGLReader::SetFrameOffset(std::int32_t distance) { frameOffset_ = WrapNegate(distance); }

// --- Labels --------------------------------------------------------------------------------------

void HPGLReader::BeginLabelExtent(const char* /*text*/, double /*zero*/, std::int32_t /*height*/,
                                  std::int32_t /*reserved*/) {
    extent_ = LabelExtent();
    trackExtent_ = true;
    searchable_ = true;
}

void HPGLReader::EndLabelExtent(const char* text) {
    trackExtent_ = false;
    if (page_.handover) {
        page_.handover->AppendText({{extent_.minX, extent_.minY}, {extent_.maxX, extent_.maxY}},
                                   text);
        return;
    }
    if (!page_.block) return;
    page_.block->AppendTextElement(extent_.minX, extent_.minY, extent_.maxX, extent_.maxY, 0, 0, 0,
                                   Bstr(BytesToWide(text)).Get());
}

// --- Line types, fills, clip ---------------------------------------------------------------------

void HPGLReader::SetLineType(std::int32_t count, const std::int32_t* gaps) {
    if (!page_.block) return;
    hostCounts_.assign(gaps, gaps + std::max(count, 0));
    page_.block->AppendLineDash(count, hostCounts_.data());
}

void HPGLReader::SetLineAttributes(std::int32_t bits) {
    if (page_.block) page_.block->AppendLineAttributes(bits);
}

void HPGLReader::DefineFillPattern(std::int32_t index, std::int32_t width, std::int32_t height,
                                   std::int32_t size, const std::uint8_t* bits) {
    if (page_.block) page_.block->DefineFillPattern(index, width, height, size, bits);
}

void HPGLReader::SetFillType(std::int32_t kind, std::int32_t index) {
    if (page_.block) page_.block->AppendFillStyle(kind, index);
}

// Quirk: the frame offset is not added here, although pictures are moved by it.
void HPGLReader::BeginRasterClip(std::int32_t x1, std::int32_t y1, std::int32_t x2,
                                 std::int32_t y2) {
    const std::array<LONG, 10> ring = {x1, y1, x2, y1, x2, y2, x1, y2, x1, y1};
    if (page_.block) page_.block->AppendClipRegion(5, ring.data());
}

void HPGLReader::EndRasterClip() {
    if (page_.block) page_.block->EndClipRegion();
}

}  // namespace qm
