// See sheet_frame.h.
#include "raster/sheet_frame.h"

#include <algorithm>
#include <cmath>

#include "common/numbers.h"
#include "common/units.h"
#include "interpreter/coordinates.h"
#include "interpreter/pages.h"
#include "interpreter/reading.h"

namespace qm {

SheetFrame::SheetFrame(const Reading& reading, const PageState& page, const CoordinateState& c)
    : rotation_((c.rotation % 360 + 360) % 360) {
    const auto length = static_cast<double>(page.plotLength);
    const auto width = static_cast<double>(page.plotWidth);
    if (page.plotSizeGiven && length > 0.0 && width > 0.0) {
        rowsAlongY_ = length >= width;
        size_ = {std::max(length, width), std::min(length, width)};
    } else {
        const PointD sheet = reading.sheet.p1 + reading.sheet.p2;
        size_ = {std::min(sheet.x, sheet.y), std::max(sheet.x, sheet.y)};
    }
}

PointD SheetFrame::ToPage(PointD place) const {
    const PointD p = rowsAlongY_ ? PointD{place.y, place.x} : PointD{place.x, size_.y - place.y};
    switch (rotation_) {
        case 90:
            return {p.y, size_.x - p.x};
        case 180:
            return {size_.x - p.x, size_.y - p.y};
        case 270:
            return {size_.y - p.y, p.x};
        default:
            return p;
    }
}

PointD SheetFrame::FromPage(PointD point) const {
    PointD p = point;
    if (rotation_ == 90) p = {size_.x - point.y, point.x};
    if (rotation_ == 180) p = {size_.x - point.x, size_.y - point.y};
    if (rotation_ == 270) p = {point.y, size_.y - point.x};
    return rowsAlongY_ ? PointD{p.y, p.x} : PointD{p.x, size_.y - p.y};
}

int SheetFrame::Angle() const { return ((rowsAlongY_ ? 90 : 0) + 360 - rotation_) % 360; }

double SheetFrame::LongSide() const { return std::max(size_.x, size_.y); }

Placement PlaceOnSheet(const PictureFrame& frame, std::int32_t rows, RasterCursor cursor,
                       const SheetFrame& sheet) {
    constexpr double kSmallest = 2.0;  // as in PlacePicture
    const double unitsPerDot = kUnitsPerInch / frame.resolution;
    const PointD size = PictureSize(frame, rows);
    const PointD first{cursor.across * unitsPerDot, cursor.down * unitsPerDot};
    const auto rounded = [](PointD p) { return PointI{RoundToInt32(p.x), RoundToInt32(p.y)}; };
    Placement placed;
    placed.angle = sheet.Angle();
    placed.box = {rounded(sheet.ToPage(first)), rounded(sheet.ToPage(first + size))};
    placed.visible = size.x > kSmallest && size.y > kSmallest;
    placed.cursor = cursor;
    placed.cursor.down = WrapAdd(cursor.down, RoundToInt32(size.y / unitsPerDot));
    return placed;
}

}  // namespace qm
