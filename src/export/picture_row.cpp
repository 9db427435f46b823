// See picture_row.h.
#include "export/picture_row.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "common/packed_bitmap.h"

namespace qm {
namespace {

constexpr std::array<std::uint8_t, 256> MirroredBytes() {
    std::array<std::uint8_t, 256> mirrored{};
    for (unsigned byte = 0; byte < 256; ++byte) {
        unsigned bits = 0;
        for (unsigned bit = 0; bit < 8; ++bit) bits |= (byte >> bit & 1) << (7 - bit);
        mirrored[byte] = static_cast<std::uint8_t>(bits);
    }
    return mirrored;
}
constexpr std::array<std::uint8_t, 256> kMirrored = MirroredBytes();

// Mirrored bytes from the last to the first begin with the row's unused bits; the shift drops them.
void TurnBits(const std::uint8_t* from, std::size_t bytes, unsigned unused, std::uint8_t* to) {
    for (std::size_t i = 0; i < bytes; ++i) {
        const unsigned here = kMirrored[from[bytes - 1 - i]];
        const unsigned next = i + 1 < bytes ? kMirrored[from[bytes - 2 - i]] : 255;
        to[i] = static_cast<std::uint8_t>((here << 8 | next) >> (8 - unused));
    }
}

}  // namespace

std::size_t PictureRowBytes(std::int32_t width, int bits) {
    return static_cast<std::size_t>(PackedRowBytes(width, bits));
}

void MakePictureRow(const std::uint8_t* from, std::int32_t width, int bits, bool turned,
                    std::uint8_t* to) {
    const std::size_t bytes = PictureRowBytes(width, bits);
    if (turned && bits == 1) {
        TurnBits(from, bytes, static_cast<unsigned>(bytes * 8 - static_cast<std::size_t>(width)),
                 to);
    } else if (turned) {
        // Reversing the bytes reverses the pixels and, of 24-bit ones, the components as well.
        std::reverse_copy(from, from + bytes, to);
    } else if (bits == 24) {
        for (std::size_t i = 0; i < bytes; i += 3) {
            to[i] = from[i + 2];
            to[i + 1] = from[i + 1];
            to[i + 2] = from[i];
        }
    } else {
        std::memcpy(to, from, bytes);
    }
}

}  // namespace qm
