// OwnPicture: the dots of a page that is one picture, as they are: drawn anew they would grow by a
// dot a side each time that a saved page is saved again. Test: tests/cli/qmplot_test.cpp.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "render/page_writers.h"

namespace qm {

// The page as a packed bitmap; nothing unless the page stands upright and shows one picture alone,
// of `bits` (1, 8 or 24) a dot and as many dots as `dpi` asks for. What is higher than wide comes
// turned by 90 degrees to the right, and so does what is as high as wide. Throws std::bad_alloc.
std::optional<std::vector<std::uint8_t>> OwnPicture(const PageSource& page, int dpi, int bits);

// A picture as wide as high with its last column twice, any other as it is: readers of HP-RTL turn
// squares (docs/unsupported.md). 1, 8 or 24 bits a dot.
std::vector<std::uint8_t> WidenedSquare(std::vector<std::uint8_t> packed);

}  // namespace qm
