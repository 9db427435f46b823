// See picture.h.
#include "raster/picture.h"

#include <cmath>
#include <utility>

#include "common/units.h"
#include "interpreter/hpgl_read.h"
#include "raster/rows/placement.h"
#include "raster/rows/rtl_raster.h"

namespace qm {

void PictureDeleter::operator()(CRTLRaster* picture) const { delete picture; }

namespace {

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
bool PicturesAreOff(const JobState& job) { return job.jobLanguagePCL && !job.jobLanguageHPGL; }

Placement Place(const HPGLRead& reader, const CRTLRaster& picture) {
    const RasterState& raster = reader.raster;
    PlacementInput in;
    in.resolution = raster.resolution;
    in.sourceWidth = raster.sourceWidth;
    in.rows = picture.RowCount();
    in.destinationWidth = raster.destinationWidth;
    in.destinationHeight = raster.destinationHeight;
    in.offsetA = raster.positionA;
    in.offsetB = raster.positionB;
    in.plotRotation = reader.coordinates.rotation;
    in.orientation = reader.page.plotLandscape;
    in.jobHeader = reader.job.jobLanguageHPGL;
    in.turn = raster.turn;
    in.mergeMode = reader.lines.MergeOpcode;
    return PlacePicture(in);
}

void SendBitmap(HPGLRead& reader, CRTLRaster& picture, const Placement& place) {
    picture.SetColours(PictureColours(reader.raster.palette, picture.BitsPerPixel()));
    GlobalBlock bitmap = picture.MakeBitmap(place.angle);
    if (!bitmap) return;
    reader.page.pageEmpty = false;
    reader.Raster(place.x0, place.y0, place.x1, place.y1, bitmap.Detach(), 0,
                  reader.lines.MergeOpcode);
}

}  // namespace

CRTLRaster* OpenPicture(HPGLRead& reader, bool byPlane) {
    RasterState& raster = reader.raster;
    if (raster.picture || !reader.documentMode) return raster.picture.get();
    if (raster.sourceWidth == 0) {
        const double inches = reader.page.plotWidth / kUnitsPerInch;
        raster.sourceWidth = RoundToInt32(inches * raster.resolution);
    }
    const PictureFormat format = FormatOf(raster.pixelFormat, byPlane);
    raster.picture.reset(new CRTLRaster(raster.sourceWidth, raster.sourceHeight, format.bits,
                                        format.planes, &raster.budget));
    raster.planeIndex = 0;
    return raster.picture.get();
}

void FinishPicture(HPGLRead& reader) {
    RasterState& raster = reader.raster;
    // Taken out of the state first: it is gone however this ends.
    const auto picture = std::move(raster.picture);
    raster.currentRow = 0;
    raster.planeIndex = 0;
    raster.rowBuffer = {};
    if (!picture || !picture->HasRows() || PicturesAreOff(reader.job)) return;
    const Placement place = Place(reader, *picture);
    if (place.visible) SendBitmap(reader, *picture, place);
    raster.positionA = place.offsetA;
    raster.positionB = place.offsetB;
}

}  // namespace qm
