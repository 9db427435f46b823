// CQmSaveVectorData and CQmSaveVectorDataD: the sinks of vector blocks, with 32-bit and with double
// coordinates. Made by CQmSaveStructure::CreateObject. What they share is in vector_sink.h, the
// texts in vector_writer.h. Test: tests/export/vector_test.cpp.
#pragma once

#include "export/vector_sink.h"

namespace qm {

class CQmSaveVectorData final : public VectorSink<IQmSaveVectorData, IntegerMapping> {
  public:
    using VectorSink::VectorSink;

    HRESULT STDMETHODCALLTYPE AppendDrawColor1(LONG red, LONG green, LONG blue) noexcept override {
        return Writer().DrawColour(red, green, blue);
    }
    HRESULT STDMETHODCALLTYPE AppendDrawColor2(LONG colour) noexcept override {
        Writer().State().drawColorFlags = static_cast<std::uint8_t>(colour & 255);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE AppendDrawColor3() noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE AppendFillColor1(LONG, LONG, LONG) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE AppendFillColor2(LONG) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE AppendFillColor3() noexcept override { return Writer().WhitePen(); }

    HRESULT STDMETHODCALLTYPE AppendArc1() noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE AppendArc2() noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE AppendArc3(LONG x, LONG y, LONG radiusX, LONG radiusY, FLOAT rotation,
                                         FLOAT start, FLOAT span) noexcept override {
        return AppendArcPoints(
            {static_cast<double>(x), static_cast<double>(y), static_cast<double>(radiusX),
             static_cast<double>(radiusY), rotation, start, span},
            VARIANT_FALSE);
    }
};

class CQmSaveVectorDataD final : public VectorSink<IQmSaveVectorDataD, RealMapping> {
  public:
    using VectorSink::VectorSink;

    HRESULT STDMETHODCALLTYPE AppendDrawColor(LONG red, LONG green, LONG blue) noexcept override {
        return Writer().DrawColour(red, green, blue);
    }
    HRESULT STDMETHODCALLTYPE AppendDrawColorBack() noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE AppendFillColor(LONG, LONG, LONG) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE AppendFillColorBack() noexcept override {
        return Writer().WhitePen();
    }
    HRESULT STDMETHODCALLTYPE AppendArc(DOUBLE x, DOUBLE y, DOUBLE radiusX, DOUBLE radiusY,
                                        DOUBLE rotation, DOUBLE start,
                                        DOUBLE span) noexcept override {
        return AppendArcPoints({x, y, radiusX, radiusY, rotation, start, span}, VARIANT_FALSE);
    }
    HRESULT STDMETHODCALLTYPE AppendMeta() noexcept override { return S_OK; }
};

}  // namespace qm
