// DrawingOperations: what an interpreted plot asks of the outside world, 29 operations in slot
// order.
//
// HPGLRead derives from it and calls it; HPGLReader (import/) turns the calls into host objects,
// the recorder (trace/) prints them, the null builder of the benchmarks drops them. All
// coordinates, radii and widths are plotter units (1/1016 inch); y points up; colours are
// 0x00BBGGRR; angles are radians. No operation reports an error.
#pragma once

#include <cstddef>
#include <cstdint>

#include "common/geometry.h"

namespace qm {

class DrawingOperations {
  public:
    virtual ~DrawingOperations() = default;

    // --- Source ---------------------------------------------------------------------------------
    // 0: copies up to `maxBytes` bytes of the plot into `buffer`; returns how many, 0 at the end or
    // on failure.
    virtual std::uint32_t ReadData(void* buffer, std::uint32_t maxBytes);
    // 1: the source's size in bytes (low 32 bits); sets the length of a progress step.
    virtual std::uint32_t GetDataSize();
    // 2: moves the source position; origin 1 = from here, 2 = from the end, else from the start.
    // Returns the new one.
    virtual std::uint32_t SeekData(std::int32_t offset, std::int32_t origin);

    // --- Page -----------------------------------------------------------------------------------
    // 3: a page is complete; `pageIndex` counts from 1. The last page of a file ends without this
    // call.
    virtual void EndPage(std::uint32_t pageIndex) = 0;

    // --- Shapes ---------------------------------------------------------------------------------
    // 4: one segment with the current pen.
    virtual void Line(std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1) = 0;
    // 5, 6: a rectangle by two opposite corners, unsorted: its outline, its area.
    virtual void Rectangle(std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1) = 0;
    virtual void FilledRectangle(std::int32_t x0, std::int32_t y0, std::int32_t x1,
                                 std::int32_t y1) = 0;
    // 7: a circle's outline; the radius can be negative when the plot's was.
    virtual void Circle(std::int32_t cx, std::int32_t cy, std::int32_t radius) = 0;
    // 8: areas filled together; polygon i has counts[i] of the points. The receiver may overwrite
    // the points.
    virtual void FilledPolyPolygon(PointI* points, const std::int32_t* counts,
                                   std::int32_t polygons) = 0;
    // 9, 10: an open run of segments; one filled area. The receiver may overwrite the points.
    virtual void Polyline(std::int32_t count, PointI* points) = 0;
    virtual void FilledPolygon(std::int32_t count, PointI* points) = 0;
    // 11: a circular arc, counter-clockwise for a positive sweep. Answers non-zero when it drew the
    // arc; 0 makes the caller draw segments instead.
    virtual int Arc(std::int32_t cx, std::int32_t cy, std::int32_t radius, double start,
                    double sweep) = 0;

    // --- Attributes -----------------------------------------------------------------------------
    // 12: the 32-step dash mask (most significant bit first, 1 = ink) and its length.
    virtual void SetPatternLength(std::int32_t length, std::uint32_t mask) = 0;
    // 13: the host's line-style code (0 solid, 1 to 4 dashes); a label sends back the number of a
    // user-defined type, LT99 can bring -32768 here.
    virtual void SetLineStyle(std::int32_t style) = 0;
    // 14: the pen, which is the layer too; can be negative.
    virtual void SetPen(std::int32_t pen) = 0;
    // 15: the line width: 0 (hairline) to 10000 of a pen, any number where a label's stroke weight
    // (SD) stands in for it.
    virtual void SetLineWidth(std::int32_t width) = 0;
    // 16: the draw and fill colour.
    virtual void SetColor(std::uint32_t colour) = 0;

    // --- Progress -------------------------------------------------------------------------------
    // 17: `percent` (1 to 99) of the source is read; answers non-zero to go on, 0 to stop.
    virtual int ReportProgress(std::int32_t percent) = 0;

    // --- Raster ---------------------------------------------------------------------------------
    // 18: a picture in the rectangle. `bitmap` is a global-memory handle of a packed
    // device-independent bitmap that passes to the receiver, which frees it. `flag` is 0 for raster
    // pictures; `rop` is the merge-control opcode.
    virtual void Raster(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
                        void* bitmap, std::int32_t flag, std::int32_t rop) = 0;
    // 19: the draw mode for what follows: 9 mask pen, 13 copy pen.
    virtual void SetDrawMode(std::int32_t mode) = 0;
    // 20: everything that follows on this page lies `distance` further down.
    virtual void SetFrameOffset(std::int32_t distance) = 0;

    // --- Labels ---------------------------------------------------------------------------------
    // 21, 22: the strokes between the two calls are the text (zero-terminated, 8-bit). The second
    // argument is always 0.0, the fourth always 0; `height` is the character height in current
    // units, truncated.
    virtual void BeginLabelExtent(const char* text, double zero, std::int32_t height,
                                  std::int32_t reserved) = 0;
    virtual void EndLabelExtent(const char* text) = 0;

    // --- Line types and fills -------------------------------------------------------------------
    // 23: a user-defined dash pattern, pen-down and pen-up lengths in turn.
    virtual void SetLineType(std::int32_t count, const std::int32_t* gaps) = 0;
    // 24: end and join style bits: ends 0x200 flat, 0x100 square, 0 round; joins 0x1000 bevel, 0
    // round.
    virtual void SetLineAttributes(std::int32_t bits) = 0;
    // 25: a one-bit pattern, rows padded to an even number of bytes, a set bit = no ink.
    virtual void DefineFillPattern(std::int32_t index, std::int32_t width, std::int32_t height,
                                   std::int32_t size, const std::uint8_t* bits) = 0;
    // 26: (3, index) fills with pattern `index`, (0, 0) fills solid again.
    virtual void SetFillType(std::int32_t kind, std::int32_t index) = 0;

    // --- Clip -----------------------------------------------------------------------------------
    // 27, 28: pictures between the two calls are clipped to the rectangle. No command sends them.
    virtual void BeginRasterClip(std::int32_t x1, std::int32_t y1, std::int32_t x2,
                                 std::int32_t y2) = 0;
    virtual void EndRasterClip() = 0;

    // No operation of its own: Line for every line of a letter's strokes, for receivers that can
    // take them at once.
    virtual void Letter(const Strokes& strokes);
};

}  // namespace qm
