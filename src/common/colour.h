// Colour: red, green and blue bytes, and the 32-bit value 0x00BBGGRR in which the interpreter, the
// builder and the host's interfaces carry one (as Windows' COLORREF does). Tests:
// tests/common/numbers_test.cpp.
#pragma once

#include <cstdint>

namespace qm {

struct Colour {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    // From 0x00BBGGRR; the highest byte is not looked at.
    static constexpr Colour FromBgr(std::uint32_t bgr) {
        return {static_cast<std::uint8_t>(bgr & 0xFF), static_cast<std::uint8_t>(bgr >> 8 & 0xFF),
                static_cast<std::uint8_t>(bgr >> 16 & 0xFF)};
    }
    constexpr std::uint32_t ToBgr() const {
        return std::uint32_t{red} | std::uint32_t{green} << 8 | std::uint32_t{blue} << 16;
    }
};

constexpr bool operator==(Colour a, Colour b) {
    return a.red == b.red && a.green == b.green && a.blue == b.blue;
}
constexpr bool operator!=(Colour a, Colour b) { return !(a == b); }

inline constexpr Colour kWhiteColour{255, 255, 255};

}  // namespace qm
