// See picture.h.
#include "raster/picture.h"

#include <memory>
#include <utility>

#include "common/numbers.h"
#include "common/units.h"
#include "interpreter/envelopes.h"
#include "interpreter/pages.h"
#include "interpreter/pen_motion.h"
#include "interpreter/reading.h"
#include "raster/rows/raster_state.h"

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
PictureFormat FormatOf(std::int32_t pixelFormat, bool byPlane) {
    if (pixelFormat == kPlanesOfThree) return {8, kThreePlanes};
    if (byPlane && pixelFormat == kPlanesOfFour) return {8, kFourPlanes};
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

// The negative of a bitmap: its colour table, or without one its pixels.
void Invert(const GlobalBlock& block) {
    const GlobalView view(block.Get());
    const auto bitmap = PackedBitmapView::Parse(view.Data(), view.Size());
    if (!bitmap) return;
    const auto pixels = static_cast<std::size_t>(bitmap->Pixels() - view.Data());
    const bool table = bitmap->Bits() <= 8;
    const std::size_t from = table ? pixels - sizeof(PaletteEntry) * bitmap->ColourCount() : pixels;
    const std::size_t to = table ? pixels : pixels + bitmap->PixelBytes();
    for (std::size_t i = from; i < to; ++i) {
        const bool reserved = table && (i - from) % 4 == 3;
        if (!reserved) view.Data()[i] = static_cast<std::uint8_t>(~view.Data()[i]);
    }
}

void SendBitmap(const RasterState& raster, CRTLRaster& picture, const Placement& place,
                std::int32_t rasterOperation, Output& out) {
    picture.SetColours(PictureColours(raster.palette, picture.BitsPerPixel()));
    GlobalBlock bitmap = picture.MakeBitmap(place.angle);
    if (!bitmap) return;
    if (rasterOperation == kNotSource) {
        Invert(bitmap);
        rasterOperation = kSourceCopy;
    }
    out.Raster(place.box, bitmap.Detach(), rasterOperation);
}

}  // namespace

CRTLRaster* OpenPicture(RasterState& raster, const PageState& page, bool byPlane) {
    if (raster.picture || !raster.documentMode) return raster.picture.get();
    PictureFrame& frame = raster.frame;
    if (frame.sourceWidth == 0) {
        const double inches = page.plotWidth / kUnitsPerInch;
        frame.sourceWidth = RoundToInt32(inches * frame.resolution);
    }
    const PictureFormat format = FormatOf(raster.pixelFormat, byPlane);
    raster.picture = std::make_unique<CRTLRaster>(frame.sourceWidth, frame.sourceHeight,
                                                  format.bits, format.planes, &raster.budget);
    raster.planeIndex = 0;
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
    const Placement place = PlacePicture(
        raster.frame, picture->RowCount(), raster.cursor,
        {drawing.coordinates.rotation, page.plotLandscape, job.jobLanguageHPGL, raster.turn});
    const std::int32_t operation = drawing.lines.MergeOpcode;
    if (place.visible && !LeavesNoMark(operation, drawing.reading)) {
        SendBitmap(raster, *picture, place, operation, drawing.out);
    }
    raster.cursor = place.cursor;
}

}  // namespace qm
