// CQmSaveVectorData and CQmSaveVectorDataD: the sinks of vector blocks, with 32-bit and with double
// coordinates. Made by CQmSaveStructure::CreateObject.
//
// VectorSink is what they share, once for both kinds of coordinates: the methods that have the same
// name in both interfaces. The texts are in vector_writer.h.
//
// Arrays: E_INVALIDARG when a pointer is missing or the rings claim more points than there are;
// nothing is written then. Counts of 0 and below write nothing. Test: tests/export/vector_test.cpp.
#pragma once

#include <qmfilter.h>

#include <cstddef>
#include <type_traits>
#include <vector>

#include "common/ellipse_points.h"
#include "common/numbers.h"
#include "export/export_settings.h"
#include "export/plot_geometry.h"
#include "export/vector_writer.h"
#include "platform/com_object.h"

namespace qm {

// `count` points (pairs of x, y) of the caller's, mapped as they are asked for.
template <typename Mapping>
class MappedPoints {
  public:
    using Coordinate = typename Mapping::Coordinate;

    MappedPoints(const Mapping& mapping, const Coordinate* points, std::size_t count)
        : mapping_(mapping), points_(points), count_(count) {}
    std::size_t Count() const { return count_; }
    PointI operator[](std::size_t i) const {
        return mapping_.Map(points_[2 * i], points_[2 * i + 1]);
    }

  private:
    const Mapping& mapping_;
    const Coordinate* points_;
    std::size_t count_;
};

template <typename Interface, typename Mapping>
class VectorSink : public ComObject<Interface> {
  public:
    using Coordinate = typename Mapping::Coordinate;
    using Angle = typename Mapping::Angle;

    explicit VectorSink(const ExportSettings& settings)
        : writer_(settings), mapping_(settings.transform) {}

    // ------------------------------------------------------------ state
    HRESULT STDMETHODCALLTYPE AppendPen(LONG pen) noexcept override {
        return writer_.SelectPen(pen);
    }
    HRESULT STDMETHODCALLTYPE AppendLineStipple(LONG, LONG) noexcept override {
        writer_.ForgetLineType();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE AppendLineStyle(LONG style) noexcept override {
        return writer_.LineStyle(style);
    }
    HRESULT STDMETHODCALLTYPE AppendLineWidth(LONG width) noexcept override {
        return writer_.LineWidth(width);
    }
    HRESULT STDMETHODCALLTYPE AppendLineWeight(LONG weight) noexcept override {
        return writer_.LineWeight(weight);
    }
    HRESULT STDMETHODCALLTYPE AppendDrawMode(LONG mode) noexcept override {
        return writer_.DrawMode(mode);
    }
    HRESULT STDMETHODCALLTYPE AppendFillStyle(LONG style, LONG index) noexcept override {
        return writer_.FillStyle(style, index);
    }
    HRESULT STDMETHODCALLTYPE DefineFillPattern(LONG index, LONG width, LONG height,
                                                const BYTE* pattern) noexcept override {
        return writer_.DefineFillPattern(index, width, height, pattern);
    }

    // ------------------------------------------------------------ primitives
    HRESULT STDMETHODCALLTYPE AppendPoint(Coordinate x, Coordinate y) noexcept override {
        return AppendLine(x, y, x, y);
    }
    HRESULT STDMETHODCALLTYPE AppendLine(Coordinate x1, Coordinate y1, Coordinate x2,
                                         Coordinate y2) noexcept override {
        return writer_.Line(mapping_.Map(x1, y1), mapping_.Map(x2, y2));
    }
    HRESULT STDMETHODCALLTYPE AppendRectangle(Coordinate x1, Coordinate y1, Coordinate x2,
                                              Coordinate y2,
                                              VARIANT_BOOL filled) noexcept override {
        const Coordinate corners[] = {x1, y1, x2, y1, x2, y2, x1, y2, x1, y1};
        return AppendPolygon(5, corners, filled);
    }
    HRESULT STDMETHODCALLTYPE AppendCircle(Coordinate x, Coordinate y, Coordinate radius,
                                           VARIANT_BOOL filled) noexcept override {
        return writer_.Circle(mapping_.Map(x, y), mapping_.Distance(radius), filled != 0);
    }
    HRESULT STDMETHODCALLTYPE AppendEllipse(Coordinate x, Coordinate y, Coordinate radiusX,
                                            Coordinate radiusY, Angle rotation,
                                            VARIANT_BOOL filled) noexcept override {
        return AppendArcPoints(
            {static_cast<double>(x), static_cast<double>(y), static_cast<double>(radiusX),
             static_cast<double>(radiusY), rotation},
            filled);
    }
    HRESULT STDMETHODCALLTYPE AppendPolygon(LONG count, const Coordinate* points,
                                            VARIANT_BOOL filled) noexcept override {
        if (count <= 0) return S_OK;
        if (points == nullptr) return E_INVALIDARG;
        return writer_.Polygon(Points(points, count), filled != 0);
    }
    HRESULT STDMETHODCALLTYPE AppendPolyPolygon(LONG rings, const LONG* pointsPerRing,
                                                LONG totalPoints, const Coordinate* points,
                                                VARIANT_BOOL filled) noexcept override {
        if (rings <= 0) return S_OK;
        if (pointsPerRing == nullptr) return E_INVALIDARG;
        return Guarded([&]() -> HRESULT {
            std::vector<MappedPoints<Mapping>> split;
            split.reserve(static_cast<std::size_t>(rings));
            LONG left = points != nullptr ? totalPoints : 0;
            for (LONG i = 0; i < rings; ++i) {
                const LONG count = pointsPerRing[i];
                if (count < 0 || count > left) return E_INVALIDARG;
                split.push_back(Points(points, count));
                points += 2 * static_cast<std::size_t>(count);
                left -= count;
            }
            if (filled != 0) return writer_.FilledRings(split);
            HRESULT status = S_OK;
            for (std::size_t i = 0; i < split.size() && status == S_OK; ++i)
                status = writer_.Polygon(split[i], false);
            return status;
        });
    }

    // ------------------------------------------------------------ text
    HRESULT STDMETHODCALLTYPE AppendLogFont(LONG size, const BYTE* font) noexcept override {
        return writer_.Font(size, font);
    }
    HRESULT STDMETHODCALLTYPE AppendText(Coordinate x, Coordinate y, BSTR text) noexcept override {
        return writer_.Text(mapping_.Map(x, y), text);
    }

    // Version of the vocabulary, for hosts that ask.
    HRESULT STDMETHODCALLTYPE GetInterfaceVersion(LONG* version) noexcept override {
        if (version == nullptr) return E_POINTER;
        *version = 188;
        return S_OK;
    }

    // ------------------------------------------------------------ accepted, nothing to write
    HRESULT STDMETHODCALLTYPE SetAttribute(BSTR, VARIANT) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE EndObject() noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE AppendLayer(LONG) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE AppendPolyFillMode(LONG) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE AppendRoundedRectangle(Coordinate, Coordinate, Coordinate, Coordinate,
                                                     Coordinate, Coordinate,
                                                     VARIANT_BOOL) noexcept override {
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE AppendBezier(LONG, const Coordinate*) noexcept override {
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE StartClipRegion() noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE AppendClipRegion() noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE EndClipRegion() noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE AppendTextElement() noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE AppendDib() noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE AppendLineAttributes() noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE AppendLineDash() noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE AppendMarkupObject() noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE AppendSubBlock() noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE AppendSubBlockEnd() noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE AppendSubBlockAttribute() noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE AppendSubBlockExtraData() noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE AppendEntity() noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE AppendVectorTextStart() noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE AppendVectorTextEnd() noexcept override { return S_OK; }

  protected:
    VectorWriter& Writer() noexcept { return writer_; }

    // Flattens the arc to points of this sink's own coordinates and passes them to AppendPolygon.
    HRESULT AppendArcPoints(const EllipseArc& arc, VARIANT_BOOL filled) noexcept {
        return Guarded([&] {
            std::vector<Coordinate> points;
            for (const PointD& point : EllipsePoints(arc)) {
                points.push_back(Rounded(point.x));
                points.push_back(Rounded(point.y));
            }
            return AppendPolygon(static_cast<LONG>(points.size() / 2), points.data(), filled);
        });
    }

  private:
    MappedPoints<Mapping> Points(const Coordinate* points, LONG count) const noexcept {
        return {mapping_, points, static_cast<std::size_t>(count)};
    }
    // Whole document units where the coordinates are integers.
    static Coordinate Rounded(double value) noexcept {
        if constexpr (std::is_integral_v<Coordinate>) {
            return RoundToInt32(value);
        } else {
            return value;
        }
    }

    VectorWriter writer_;
    Mapping mapping_;
};

class CQmSaveVectorData final : public VectorSink<IQmSaveVectorData, IntegerMapping> {
  public:
    using VectorSink::VectorSink;

    HRESULT STDMETHODCALLTYPE AppendDrawColor1(LONG red, LONG green, LONG blue) noexcept override {
        return Writer().DrawColour(red, green, blue);
    }
    HRESULT STDMETHODCALLTYPE AppendDrawColor2(LONG) noexcept override { return S_OK; }
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
