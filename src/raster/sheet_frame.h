// SheetFrame: how the dots of the raster language lie on the sheet, and the sheet on the page.
//
// Rows run across the medium and follow each other along it. The plot language's x axis lies along
// the longer side of the plot size (PS), so that rows run along y where the medium is longer than
// wide; without a plot size the rows are upright. A page that RO turned is shown turned by as much:
// there pictures are turned back, as they lie on the sheet whatever RO says. Raster mode comes here
// when the reading places pictures on the sheet (reading.h). Tests:
// tests/interpreter/reading_test.cpp.
#pragma once

#include "common/geometry.h"
#include "raster/rows/placement.h"

namespace qm {

struct CoordinateState;
struct PageState;
struct Reading;

class SheetFrame {
  public:
    SheetFrame(const Reading& reading, const PageState& page, const CoordinateState& coordinates);

    // A place so far across the medium (x) and down it (y), as the page has it, and back; both in
    // plotter units.
    PointD ToPage(PointD place) const;
    PointD FromPage(PointD point) const;
    // By how much a picture is turned counter-clockwise on the page: 0, 90, 180 or 270.
    int Angle() const;
    // The longer side: how wide a picture can be that does not tell, plotter units.
    double LongSide() const;

  private:
    bool rowsAlongY_ = false;
    PointD size_;  // of the sheet, x along its longer side or, without a plot size, along the rows
    int rotation_ = 0;  // RO of the page: 0, 90, 180 or 270
};

// Places a picture of `rows` rows that starts at `cursor`; the cursor then stands below it.
Placement PlaceOnSheet(const PictureFrame& frame, std::int32_t rows, RasterCursor cursor,
                       const SheetFrame& sheet);

}  // namespace qm
