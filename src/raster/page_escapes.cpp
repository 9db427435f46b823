// Escapes for the page and the way pictures are put on it; see escape_table.h.
#include "interpreter/hpgl_read.h"
#include "raster/escape_table.h"

namespace qm::escapes {

// ESC*l#O: one field with MC; later vectors see it too.
void MergeMode(HPGLRead& reader, EscapeValue value) {
    if (value.number >= 0 && value.number <= 255) reader.lines.MergeOpcode = value.number;
}

// ESC E: ends the page when something was drawn on it.
// Quirk: an open picture stays open. It is finished later, on the next page and at the resolution
// and the position that this command sets; rows that still come overwrite it from its first row on.
void PrinterReset(HPGLRead& reader) {
    EndCurrentPage(reader);
    RasterState& raster = reader.raster;
    raster.resolution = 300;
    raster.pixelFormat = kOneBit;
    raster.positionA = 0;
    raster.positionB = 0;
    raster.destinationWidth = 0;
    raster.destinationHeight = 0;
    raster.planeIndex = 0;
    raster.currentRow = 0;
}

}  // namespace qm::escapes
