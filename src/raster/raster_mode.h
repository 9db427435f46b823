// Raster mode: the loop that reads raster escapes until the plot returns to vectors.
#pragma once

namespace qm {

class HPGLRead;

// Reads from the current byte on until raster mode is left or the input is over. `keepPen` is the
// flag of ESC % 1 A: the raster position starts at the pen's, else at the last raster position.
void RunRasterMode(HPGLRead& reader, bool keepPen);

}  // namespace qm
