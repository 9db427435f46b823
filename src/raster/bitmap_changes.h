// What is done to the finished bitmap of a picture: its negative, and turning it upside down.
//
// FinishPicture (picture.cpp) calls them. Tests: tests/interpreter/reading_test.cpp.
#pragma once

#include "platform/global_block.h"

namespace qm {

// The negative of the packed bitmap in `block`: its colour table, or without one its pixels. A
// block that is no bitmap stays as it is.
void Invert(const GlobalBlock& block);

// Turns the packed bitmap in `block` by 180 degrees. A block that is no bitmap, or has another
// depth than 1, 4, 8 and 24, stays as it is.
void TurnOver(const GlobalBlock& block);

}  // namespace qm
