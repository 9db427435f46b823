// PictureHandover: what our host gives our own raster sink row by row, where the sink's interface
// lets rows come in any order and so has to keep all of them.
//
// The sink answers to it (export/save_raster_data.h), the embedded host asks for it
// (host/document_walker.cpp). Nobody else needs to know it: any other host, and any other sink,
// makes or gets the calls of IQmSaveRasterData. Test: tests/export/raster_test.cpp.
#pragma once

#include <qmfilter.h>

#include "common/picture_sink.h"

namespace qm {

struct PictureHandover : IUnknown {
    // Takes the place of CreateRasterStorage; IQmSaveRasterData::EndObject ends the picture. S_OK
    // when rows may follow, else the failure of a write, or S_FALSE for a picture that the sink
    // wants whole: nothing has happened then.
    virtual HRESULT STDMETHODCALLTYPE BeginPicture(const PictureHead& head) noexcept = 0;
    // Takes the place of AddScanline1: the next row from the top. The status of its writes; E_FAIL
    // without a picture, or for a row below the last.
    virtual HRESULT STDMETHODCALLTYPE AddRow(const BYTE* row) noexcept = 0;
};

}  // namespace qm

__CRT_UUID_DECL(qm::PictureHandover, 0x6e7c5b1a, 0x0f2d, 0x4c55, 0x9a, 0x41, 0x7d, 0x5e, 0x20, 0xc3,
                0x81, 0x14)
