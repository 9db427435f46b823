// See picture.h.
#include "raster/picture.h"

#include <memory>
#include <utility>

#include "common/numbers.h"
#include "common/units.h"
#include "interpreter/coordinates.h"
#include "interpreter/envelopes.h"
#include "interpreter/pages.h"
#include "interpreter/pen_motion.h"
#include "interpreter/reading.h"
#include "raster/bitmap_changes.h"
#include "raster/rows/raster_state.h"
#include "raster/sheet_frame.h"

namespace qm {

namespace {

constexpr std::int32_t kNotSource = 51;
constexpr std::int32_t kSourceCopy = 204;

struct PictureFormat {
    int bits;
    PlaneKind planes;
};

// Quirk: four and eight planes are recognised only when the picture begins with a plane transfer;
// beginning with a row its pixels are 4 and 8 bits side by side, which is how pictures of packed
// pixels come.
PictureFormat FormatOf(std::int32_t pixelFormat, bool byPlane, const Reading& reading) {
    if (pixelFormat == kPlanesOfThree) return {8, kThreePlanes};
    if (byPlane && pixelFormat == kPlanesOfFour) {
        return {8, reading.knowsPalettes ? kAllFourPlanes : kFourPlanes};
    }
    if (byPlane && pixelFormat == kEightBits) return {8, kEightPlanes};
    return {pixelFormat, kNoPlanes};
}

// A job header may name a page language whose raster data is no part of the plot.
// Quirk: a plotter that knows both languages draws it.
bool PicturesAreOff(const JobState& job, const Reading& reading) {
    return job.jobLanguagePCL && !job.jobLanguageHPGL && !reading.drawsPrintJobs;
}

// Quirk: pictures under "destination" draw nothing by definition; those under "not source" are left
// out too, so an inverted picture does not appear.
bool LeavesNoMark(std::int32_t rasterOperation, const Reading& reading) {
    constexpr std::int32_t kDestination = 170;
    return rasterOperation == kDestination ||
           (rasterOperation == kNotSource && !reading.invertsPictures);
}

// Turned exactly, other than by MakeBitmap: half a turn is made of the finished bitmap.
GlobalBlock MakeTurnedBitmap(CRTLRaster& picture, int angle) {
    GlobalBlock bitmap = picture.MakeBitmap(angle % 180);
    if (bitmap && angle >= 180) TurnOver(bitmap);
    return bitmap;
}

void SendBitmap(const RasterState& raster, CRTLRaster& picture, const Placement& place,
                std::int32_t rasterOperation, Drawing& drawing) {
    picture.SetColours(PictureColours(raster.palette, picture.BitsPerPixel()));
    GlobalBlock bitmap = drawing.reading.placesOnSheet ? MakeTurnedBitmap(picture, place.angle)
                                                       : picture.MakeBitmap(place.angle);
    if (!bitmap) return;
    if (rasterOperation == kNotSource) {
        Invert(bitmap);
        rasterOperation = kSourceCopy;
    }
    drawing.out.Raster(place.box, bitmap.Detach(), rasterOperation);
}

// As wide as the sheet: the picture shows as much of it as its widest row takes.
std::unique_ptr<CRTLRaster> MeasuredPicture(RasterState& raster, PictureFormat format,
                                            double sheetUnits) {
    const double dots = sheetUnits / kUnitsPerInch * raster.frame.resolution;
    auto picture = std::make_unique<CRTLRaster>(RoundToInt32(dots), raster.frame.sourceHeight,
                                                format.bits, format.planes, &raster.budget);
    picture->MeasureRows();
    return picture;
}

Placement Place(const RasterState& raster, const CRTLRaster& picture, const JobState& job,
                const PageState& page, const Drawing& drawing) {
    const CoordinateState& c = drawing.coordinates;
    if (drawing.reading.placesOnSheet) {
        PictureFrame frame = raster.frame;
        frame.sourceWidth = picture.ShownWidth();
        return PlaceOnSheet(frame, picture.RowCount(), raster.cursor,
                            SheetFrame(drawing.reading, page, c));
    }
    return PlacePicture(raster.frame, picture.RowCount(), raster.cursor,
                        {c.rotation, page.plotLandscape, job.jobLanguageHPGL, raster.turn});
}

}  // namespace

CRTLRaster* OpenPicture(RasterState& raster, const PageState& page, const Drawing& drawing,
                        bool byPlane) {
    if (raster.picture || !raster.documentMode) return raster.picture.get();
    PictureFrame& frame = raster.frame;
    const PictureFormat format = FormatOf(raster.pixelFormat, byPlane, drawing.reading);
    raster.planeIndex = 0;
    if (frame.sourceWidth == 0 && drawing.reading.placesOnSheet) {
        const SheetFrame sheet(drawing.reading, page, drawing.coordinates);
        raster.picture = MeasuredPicture(raster, format, sheet.LongSide());
        return raster.picture.get();
    }
    // Quirk: a width that the job does not give is that of the plot size, and none without one.
    if (frame.sourceWidth == 0) {
        const double inches = page.plotWidth / kUnitsPerInch;
        frame.sourceWidth = RoundToInt32(inches * frame.resolution);
    }
    raster.picture = std::make_unique<CRTLRaster>(frame.sourceWidth, frame.sourceHeight,
                                                  format.bits, format.planes, &raster.budget);
    return raster.picture.get();
}

void FinishPicture(RasterState& raster, const JobState& job, const PageState& page,
                   Drawing& drawing) {
    // Taken out of the state first: it is gone however this ends.
    const auto picture = std::move(raster.picture);
    raster.currentRow = 0;
    raster.planeIndex = 0;
    raster.rowBuffer = {};
    if (!picture || !picture->HasRows() || PicturesAreOff(job, drawing.reading)) return;
    const Placement place = Place(raster, *picture, job, page, drawing);
    const std::int32_t operation = drawing.lines.MergeOpcode;
    if (place.visible && !LeavesNoMark(operation, drawing.reading)) {
        SendBitmap(raster, *picture, place, operation, drawing);
    }
    raster.cursor = place.cursor;
}

}  // namespace qm
