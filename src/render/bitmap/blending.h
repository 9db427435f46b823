// Blending: how a colour changes a dot, mixed by coverage and combined by raster operations, which
// are exact operations on the bits of the colours. Test: tests/render/bitmap/page_painter_test.cpp.
#pragma once

#include <cstdint>

namespace qm::bitmap {

// Binary operations of pen (or source) and paper as four bits: bit 2 * p + d is the result for pen
// bit p and paper bit d. 12 is the pen alone, 10 the paper alone.
inline constexpr unsigned kCopyPen = 12;
inline constexpr unsigned kKeepPaper = 10;

// Of a draw mode, which numbers them from 1 to 16; other numbers copy the pen.
inline unsigned OperationOfDrawMode(std::int32_t drawMode) {
    return drawMode >= 1 && drawMode <= 16 ? static_cast<unsigned>(drawMode - 1) : kCopyPen;
}

// Of a ternary operation (0 to 255) of a picture: where it asks for a pattern, the picture is one.
// 0 is "none given" and copies.
inline unsigned OperationOfPicture(std::int32_t rasterOperation) {
    const auto code = static_cast<unsigned>(rasterOperation & 0xFF);
    return code == 0 ? kCopyPen : (code >> 6 & 3) << 2 | (code & 3);
}

// Colours are 0x00RRGGBB.
inline std::uint32_t Combine(unsigned operation, std::uint32_t pen, std::uint32_t paper) {
    const std::uint32_t result =
        ((operation & 1) != 0 ? ~pen & ~paper : 0) | ((operation & 2) != 0 ? ~pen & paper : 0) |
        ((operation & 4) != 0 ? pen & ~paper : 0) | ((operation & 8) != 0 ? pen & paper : 0);
    return result & 0xFFFFFF;
}

// Whether the operation with this pen gives one colour on any paper, which it writes to `colour`.
inline bool IgnoresPaper(unsigned operation, std::uint32_t pen, std::uint32_t& colour) {
    colour = Combine(operation, pen, 0);
    return colour == Combine(operation, pen, 0xFFFFFF);
}

// `coverage` (0 to 255) of `colour`, the rest of `paper`; exact at both ends.
inline std::uint32_t Mix(std::uint32_t paper, std::uint32_t colour, unsigned coverage) {
    const std::uint32_t part = coverage + (coverage >> 7);
    const std::uint32_t rest = 256 - part;
    const std::uint32_t outer =
        ((colour & 0xFF00FF) * part + (paper & 0xFF00FF) * rest + 0x800080) >> 8 & 0xFF00FF;
    const std::uint32_t green =
        ((colour & 0x00FF00) * part + (paper & 0x00FF00) * rest + 0x008000) >> 8 & 0x00FF00;
    return outer | green;
}

// 0x00BBGGRR of the plot as 0x00RRGGBB.
inline std::uint32_t DotColour(std::uint32_t colour) {
    return (colour & 0xFF) << 16 | (colour & 0xFF00) | (colour >> 16 & 0xFF);
}

}  // namespace qm::bitmap
