// VectorWriter: what both vector sinks have in common, which is everything but the mapping of
// coordinates: the drawing state and the texts of state changes and primitives.
//
// Points come in mapped to plotter units, so each text exists once. Every method returns the status
// of its last write, S_OK when it has nothing to say. Test: tests/export/vector_test.cpp.
#pragma once

#include <qmfilter.h>

#include <cstddef>
#include <cstdint>
#include <optional>

#include "common/colour.h"
#include "common/geometry.h"
#include "export/export_settings.h"
#include "export/plot_output.h"
#include "export/plot_text.h"

namespace qm {

// Drawing state of one sink; nothing of it passes to the next sink.
struct VectorState {
    LONG pen = 0;  // never below 0
    Colour drawColour;
    LONG lineStyle = 0;     // the host's code
    LONG hpglLineType = 0;  // made from lineStyle; 9 is solid, 0 writes "LT0;"
    LONG lineWidth = 0;     // document units, never below 0
    std::optional<LONG> drawMode;
    // The pen table gave this property of the current pen: the host's own calls only remember it.
    bool penWidthFromTable = false;
    bool penColourFromTable = false;
    bool penStyleFromTable = false;
};

class VectorWriter {
  public:
    explicit VectorWriter(const ExportSettings& settings)
        : settings_(settings), output_(settings.stream) {}

    // ------------------------------------------------------------ pens, colours, lines
    // Components are written as they come. In mono mode the host's colours are dropped.
    HRESULT DrawColour(LONG red, LONG green, LONG blue) noexcept;
    // Defines the current pen as white.
    HRESULT WhitePen() noexcept;
    HRESULT SelectPen(LONG pen) noexcept;
    HRESULT LineStyle(LONG style) noexcept;
    // The next pen is selected with "LT0;" unless a line style comes first.
    void ForgetLineType() noexcept { state_.hpglLineType = 0; }
    // Document units.
    HRESULT LineWidth(LONG width) noexcept;
    // Hundredths of a millimetre.
    HRESULT LineWeight(LONG weight) noexcept;
    // 9 inverts what is under the pen, anything else draws over it.
    HRESULT DrawMode(LONG mode) noexcept;

    // ------------------------------------------------------------ fills
    // Unknown styles and hatches write nothing.
    HRESULT FillStyle(LONG style, LONG index) noexcept;
    // E_INVALIDARG for a missing pattern of a size above 0.
    HRESULT DefineFillPattern(LONG index, LONG width, LONG height, const BYTE* pattern) noexcept;

    // ------------------------------------------------------------ primitives, mapped
    HRESULT Line(PointI from, PointI to) noexcept;
    HRESULT Circle(PointI centre, std::int32_t radius, bool filled) noexcept;
    // `points`: Count() and operator[] giving PointI; nothing is written for none. Filled:
    // closed and filled. Else an open line.
    template <typename Points>
    HRESULT Polygon(const Points& points, bool filled) const noexcept;
    // One filled area of several rings: `rings` gives the points of ring i as Polygon takes them.
    template <typename Rings>
    HRESULT FilledRings(const Rings& rings) const noexcept;

    // ------------------------------------------------------------ text
    // `description`: LOGFONTA of `size` bytes. E_INVALIDARG when it is shorter than 60, E_FAIL when
    // the system cannot measure the font.
    HRESULT Font(LONG size, const BYTE* description) noexcept;
    // Characters above 255 become '?'; the text ends at its first zero character. E_OUTOFMEMORY
    // with nothing written when the label cannot be made.
    HRESULT Text(PointI at, BSTR text) noexcept;

  private:
    HRESULT TablePen() noexcept;
    void AddLineType(TextSequence& texts, LONG type) const noexcept;

    ExportSettings settings_;
    PlotOutput output_;
    VectorState state_;
};

template <typename Points>
HRESULT VectorWriter::Polygon(const Points& points, bool filled) const noexcept {
    const std::size_t count = points.Count();
    if (count == 0) return S_OK;
    const PointI first = points[0];
    TextSequence texts(output_);
    texts.Add(filled ? plot_text::kStartPolygon : plot_text::kStartPolyline, first.x, first.y);
    for (std::size_t i = 1; i < count && texts.Going(); ++i) {
        const PointI point = points[i];
        texts.Add(plot_text::kNextPoint, point.x, point.y);
    }
    if (filled) texts.Add(plot_text::kClosePolygon, first.x, first.y);
    return texts.Status();
}

template <typename Rings>
HRESULT VectorWriter::FilledRings(const Rings& rings) const noexcept {
    TextSequence texts(output_);
    const Command<Int, Int>* start = &plot_text::kStartFirstRing;
    for (std::size_t r = 0; r < rings.size(); ++r) {
        const auto ring = rings[r];
        for (std::size_t i = 0; i < ring.Count() && texts.Going(); ++i) {
            const PointI point = ring[i];
            texts.Add(i == 0 ? *start : plot_text::kNextPoint, point.x, point.y);
        }
        if (ring.Count() > 0) start = &plot_text::kStartNextRing;
    }
    if (start == &plot_text::kStartNextRing) texts.Add(plot_text::kFillRings);
    return texts.Status();
}

}  // namespace qm
