// The picture of raster mode from its set-up at the first transfer to its place on the page.
//
// Tests: tests/raster/raster_mode_test.cpp.
#pragma once

namespace qm {

class CRTLRaster;
struct Drawing;
struct JobState;
struct PageState;
struct RasterState;

// The open picture; the first transfer of a picture opens it, in document mode only. Null outside
// document mode. `byPlane`: the transfer is one plane (ESC*b#V).
CRTLRaster* OpenPicture(RasterState& raster, const PageState& page, const Drawing& drawing,
                        bool byPlane);

// Closes the open picture, if there is one, hands its bitmap to the Raster operation and moves the
// raster position past it. Nothing is handed over for pictures without rows, those that leave no
// mark, and in jobs whose header names a language without raster pictures.
void FinishPicture(RasterState& raster, const JobState& job, const PageState& page,
                   Drawing& drawing);

}  // namespace qm
