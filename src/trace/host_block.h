// TracedBlock: a drawing block that keeps nothing but whether it is empty.
//
// Test: tests/trace/host_trace_test.cpp.
#pragma once

#include "trace/host_log.h"

namespace qm {

class TracedBlock final : public TracedObject<IQmBuildVectorData, IQmAttributes> {
  public:
    explicit TracedBlock(const std::shared_ptr<HostLog>& log);

    HRESULT STDMETHODCALLTYPE PutAttribute(BSTR name, VARIANT value, LONG flags) noexcept override;
    // Nothing is kept: E_INVALIDARG, as for any absent attribute.
    HRESULT STDMETHODCALLTYPE GetAttribute(BSTR name, LONG flags, VARIANT* value) noexcept override;

    HRESULT STDMETHODCALLTYPE AppendDrawColor1(LONG red, LONG green, LONG blue) noexcept override;
    HRESULT STDMETHODCALLTYPE AppendFillColor1(LONG red, LONG green, LONG blue) noexcept override;
    HRESULT STDMETHODCALLTYPE AppendLayer(LONG number) noexcept override;
    HRESULT STDMETHODCALLTYPE AppendPen(LONG number) noexcept override;
    HRESULT STDMETHODCALLTYPE AppendLineStyle(LONG style) noexcept override;
    HRESULT STDMETHODCALLTYPE AppendLineWidth(LONG width) noexcept override;
    HRESULT STDMETHODCALLTYPE AppendLine(LONG x1, LONG y1, LONG x2, LONG y2) noexcept override;
    HRESULT STDMETHODCALLTYPE AppendRectangle(LONG x1, LONG y1, LONG x2, LONG y2,
                                              VARIANT_BOOL filled) noexcept override;
    HRESULT STDMETHODCALLTYPE AppendCircle(LONG centerX, LONG centerY, LONG radius,
                                           VARIANT_BOOL filled) noexcept override;
    HRESULT STDMETHODCALLTYPE AppendArc3(LONG centerX, LONG centerY, LONG radiusX, LONG radiusY,
                                         FLOAT start, FLOAT span) noexcept override;
    HRESULT STDMETHODCALLTYPE AppendPolygon(LONG count, const LONG* points,
                                            VARIANT_BOOL filled) noexcept override;
    HRESULT STDMETHODCALLTYPE AppendPolyPolygon(LONG polygons, const LONG* counts, LONG total,
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
    HRESULT STDMETHODCALLTYPE AppendTextElement(LONG x1, LONG y1, LONG x2, LONG y2, LONG reserved1,
                                                LONG reserved2, LONG reserved3,
                                                BSTR text) noexcept override;
    HRESULT STDMETHODCALLTYPE AppendDib(LONG x1, LONG y1, LONG x2, LONG y2, LONG size,
                                        const BYTE* dib, LONG rasterOperation) noexcept override;
    HRESULT STDMETHODCALLTYPE EndOfData() noexcept override;
    HRESULT STDMETHODCALLTYPE IsEmpty(VARIANT_BOOL* empty) noexcept override;

  private:
    // As Call, for what makes a page worth keeping: primitives, texts and pictures, not state.
    template <typename... Arguments>
    HRESULT Draw(std::string_view method, const Arguments&... arguments) noexcept {
        empty_ = false;
        return Call(method, arguments...);
    }

    bool empty_ = true;
};

}  // namespace qm
