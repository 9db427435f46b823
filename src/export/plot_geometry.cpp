// See plot_geometry.h.
#include "export/plot_geometry.h"

#include "common/units.h"

namespace qm {
namespace {

// Quirk: any crop left of or right of 0 moves the origin, but only a crop below 0 moves it in y: a
// page that starts above 0 keeps its distance from the bottom.
std::int32_t ShiftX(double cropMinX) { return cropMinX != 0 ? TruncateToInt32(-cropMinX) : 0; }
std::int32_t ShiftY(double cropMinY) { return cropMinY < 0 ? TruncateToInt32(-cropMinY) : 0; }

// Quirk: LpiX counts as plotter units to the document unit, the inverse of what UserDPI does.
double ScaleOf(const PageAttributes& page, double userDpi) {
    if (userDpi != 0) return kUnitsPerInch / userDpi / page.originalScaling;
    return page.lpiX != 0 ? page.lpiX / kUnitsPerInch : 1.0;
}

}  // namespace

PlotTransform FreezeTransform(PageAttributes& page, double userDpi) {
    PlotTransform transform;
    transform.offsetX = ShiftX(page.cropMinX);
    transform.offsetY = ShiftY(page.cropMinY);
    page.cropMinX += transform.offsetX;
    page.cropMaxX += transform.offsetX;
    page.cropMinY += transform.offsetY;
    page.cropMaxY += transform.offsetY;
    transform.scale = ScaleOf(page, userDpi);
    transform.height = TruncateToInt32(page.cropMaxY);
    return transform;
}

}  // namespace qm
