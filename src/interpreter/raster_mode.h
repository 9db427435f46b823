// Raster mode: the loop that reads raster escapes until the plot returns to vectors.
//
// The sequences that act stand in escape_table.cpp, one line each; their handlers in the files that
// escape_table.h names. Tests: tests/raster/raster_mode_test.cpp.
#pragma once

namespace qm {

class HPGLRead;

// Reads from the current byte on until raster mode is left or the input is over; a picture still
// open then is finished. `keepPen` is the flag of ESC % 1 A: the raster position starts at the
// pen's, else at the last raster position. Outside document mode everything is read and nothing is
// made.
void RunRasterMode(HPGLRead& reader, bool keepPen);

}  // namespace qm
