// The 255 numbered colours of CAD programs. Test: tests/render/dxf/dxf_writer_test.cpp.
#pragma once

#include <cstdint>

namespace qm::dxf {

struct IndexedColour {
    int index = 7;      // 1 to 255
    bool exact = true;  // the index says all; else the true colour has to stand beside it
};

// The numbered colour next to 0x00BBGGRR. Black is number 7 and nothing beside it, which programs
// show black on light paper and white on a dark screen; white is 255, which stays white.
IndexedColour IndexOf(std::uint32_t bgr);
// 0x00RRGGBB (group code 420) of 0x00BBGGRR.
std::int64_t TrueColour(std::uint32_t bgr);

}  // namespace qm::dxf
