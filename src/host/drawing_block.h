// DrawingBlock: the embedded host's drawing block. It checks what IQmBuildVectorData receives and
// files it in a display list. Test: tests/host/document_test.cpp.
#pragma once

#include "host/display_list.h"
#include "host/host_object.h"
#include "interfaces/drawing_handover.h"
#include "platform/com_object.h"
#include "qmfilter.h"

namespace qm {

// Methods answer E_INVALIDARG for counts that are negative or disagree and for null arrays, and
// then append nothing.
class DrawingBlock final : public ComObject<IQmBuildVectorData, IQmAttributes, DrawingHandover> {
  public:
    static constexpr IID kIdentity = {
        0x6e7c5b1a, 0x0f2d, 0x4c55, {0x9a, 0x41, 0x7d, 0x5e, 0x20, 0xc3, 0x81, 0x12}};

    const DisplayList& Drawing() const noexcept { return list_; }
    // False once something was lost for want of memory: filters do not look at what their calls
    // come to.
    bool Complete() const noexcept { return complete_ && attributes_.Complete(); }
    // Gives back the memory of the drawing; the block stays empty or not as it is. For a host that
    // looks at the calls alone.
    void DropDrawing() noexcept { list_.DropRecords(); }

    HRESULT STDMETHODCALLTYPE PutAttribute(BSTR name, VARIANT value, LONG flags) noexcept override;
    HRESULT STDMETHODCALLTYPE GetAttribute(BSTR name, LONG flags, VARIANT* value) noexcept override;

    HRESULT STDMETHODCALLTYPE AppendDrawColor1(LONG red, LONG green, LONG blue) noexcept override;
    HRESULT STDMETHODCALLTYPE AppendFillColor1(LONG red, LONG green, LONG blue) noexcept override;
    HRESULT STDMETHODCALLTYPE AppendLayer(LONG layer) noexcept override;
    HRESULT STDMETHODCALLTYPE AppendPen(LONG pen) noexcept override;
    HRESULT STDMETHODCALLTYPE AppendLineStyle(LONG style) noexcept override;
    HRESULT STDMETHODCALLTYPE AppendLineWidth(LONG width) noexcept override;
    HRESULT STDMETHODCALLTYPE AppendLine(LONG x1, LONG y1, LONG x2, LONG y2) noexcept override;
    HRESULT STDMETHODCALLTYPE AppendRectangle(LONG x1, LONG y1, LONG x2, LONG y2,
                                              VARIANT_BOOL filled) noexcept override;
    HRESULT STDMETHODCALLTYPE AppendCircle(LONG x, LONG y, LONG radius,
                                           VARIANT_BOOL filled) noexcept override;
    HRESULT STDMETHODCALLTYPE AppendArc3(LONG x, LONG y, LONG radiusX, LONG radiusY, FLOAT start,
                                         FLOAT span) noexcept override;
    HRESULT STDMETHODCALLTYPE AppendPolygon(LONG count, const LONG* points,
                                            VARIANT_BOOL filled) noexcept override;
    HRESULT STDMETHODCALLTYPE AppendPolyPolygon(LONG rings, const LONG* lengths, LONG total,
                                                const LONG* points,
                                                VARIANT_BOOL filled) noexcept override;
    HRESULT STDMETHODCALLTYPE AppendDrawMode(LONG mode) noexcept override;
    HRESULT STDMETHODCALLTYPE AppendLineDash(LONG count, const LONG* gaps) noexcept override;
    HRESULT STDMETHODCALLTYPE AppendLineAttributes(LONG attributes) noexcept override;
    HRESULT STDMETHODCALLTYPE DefineFillPattern(LONG index, LONG width, LONG height, LONG size,
                                                const BYTE* bits) noexcept override;
    HRESULT STDMETHODCALLTYPE AppendFillStyle(LONG kind, LONG index) noexcept override;
    HRESULT STDMETHODCALLTYPE AppendClipRegion(LONG count, const LONG* points) noexcept override;
    HRESULT STDMETHODCALLTYPE EndClipRegion() noexcept override;
    HRESULT STDMETHODCALLTYPE AppendTextElement(LONG x1, LONG y1, LONG x2, LONG y2, LONG, LONG,
                                                LONG, BSTR text) noexcept override;
    HRESULT STDMETHODCALLTYPE AppendDib(LONG x1, LONG y1, LONG x2, LONG y2, LONG size,
                                        const BYTE* dib, LONG rasterOperation) noexcept override;
    // Further calls may follow all the same.
    HRESULT STDMETHODCALLTYPE EndOfData() noexcept override;
    HRESULT STDMETHODCALLTYPE IsEmpty(VARIANT_BOOL* empty) noexcept override;

    HRESULT STDMETHODCALLTYPE AppendLetter(const Strokes& strokes, BoxI& box) noexcept override;
    HRESULT STDMETHODCALLTYPE AppendText(const BoxI& box, std::string_view text) noexcept override;
    HRESULT STDMETHODCALLTYPE AppendOwnedDib(const BoxI& box, GlobalBlock dib, std::size_t size,
                                             LONG rasterOperation) noexcept override;

  protected:
    // The block itself, for OwnObject.
    void* FindInterface(REFIID riid) noexcept override;

  private:
    // Runs `append`; lack of memory becomes E_OUTOFMEMORY and is kept in mind.
    template <typename Append>
    HRESULT Filed(const Append& append) noexcept;

    AttributeMap attributes_;
    DisplayList list_;
    bool complete_ = true;
};

}  // namespace qm
