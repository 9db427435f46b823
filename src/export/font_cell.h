// Height of a font's character cell, measured as the system measures it. Test:
// tests/export/vector_test.cpp.
#pragma once

#include <windows.h>

#include <optional>

namespace qm {

struct FontCell {
    // Of the upright "A", in the units of the description's height; nothing when a call failed.
    std::optional<LONG> height;
    // Direction of the text, tenths of a degree counter-clockwise.
    LONG escapement = 0;
};

// `description` holds the 60 bytes of a LOGFONTA, aligned or not; it is measured without its
// escapement, which would turn the cell.
FontCell MeasureFont(const BYTE* description) noexcept;

}  // namespace qm
