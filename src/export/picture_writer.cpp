// See picture_writer.h.
#include "export/picture_writer.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>
#include <vector>

#include "common/numbers.h"
#include "common/units.h"
#include "export/pack_bits.h"
#include "export/plot_text.h"

namespace qm {
namespace {

using namespace std::string_view_literals;

// The depths that HP-RTL gets, each with its image description (Configure Image Data): colour space
// RGB, pixel encoding (1 indexed, 3 direct by pixel), bits of an index, bits of each primary, and
// for direct colours the white and the black of each primary as big-endian 16-bit numbers.
struct Depth {
    int bits;
    std::string_view description;
};
constexpr Depth kDepths[] = {
    {1, "\0\1\1\10\10\10"sv},
    {8, "\0\1\10\10\10\10"sv},
    {24, "\0\3\10\10\10\10\0\377\0\377\0\377\0\0\0\0\0\0"sv},
};

const Depth* FindDepth(int bits) {
    for (const Depth& depth : kDepths) {
        if (depth.bits == bits) return &depth;
    }
    return nullptr;
}

// Where the pen stands, in plotter units.
// Quirk: a turned picture starts at the right end of a box one dot wider than it is.
Int PositionX(const PackedBitmapView& picture, const PicturePlacement& placement) {
    if (placement.landscape) return 0;
    return TruncateToInt32((picture.Width() + 1.0) / placement.dpi * kUnitsPerInch);
}

Int Decipoints(std::int32_t pixels, int dpi) {
    return TruncateToInt32(static_cast<double>(pixels) / dpi * kDecipointsPerInch);
}

void AddPalette(TextSequence& texts, const PackedBitmapView& picture) {
    const std::uint32_t count = PackedColourCount(picture.Bits());
    for (std::uint32_t i = 0; i < count && texts.Going(); ++i) {
        const PaletteEntry entry = picture.Colour(i);
        texts.Add(plot_text::kPaletteEntry, Int{entry.red}, Int{entry.green}, Int{entry.blue},
                  static_cast<Int>(i));
    }
}

std::string_view Bytes(const std::vector<std::uint8_t>& buffer, std::size_t size) {
    return {reinterpret_cast<const char*>(buffer.data()), size};
}

// All rows from the top, or of a turned picture from the bottom, each packed when that is shorter.
void AddRows(TextSequence& texts, const PackedBitmapView& picture, bool turned) {
    std::vector<std::uint8_t> row(PictureRowBytes(picture.Width(), picture.Bits()));
    std::vector<std::uint8_t> packed(PackBitsBound(row.size()));
    const std::int32_t height = picture.Height();
    for (std::int32_t y = 0; y < height && texts.Going(); ++y) {
        MakePictureRow(picture.RowFromTop(turned ? height - 1 - y : y), picture.Width(),
                       picture.Bits(), turned, row.data());
        const std::size_t size = PackBits(row.data(), row.size(), packed.data());
        if (size < row.size()) {
            texts.Add(plot_text::kPackedRow, static_cast<Int>(size)).Add(Bytes(packed, size));
        } else {
            texts.Add(plot_text::kPlainRow, static_cast<Int>(row.size()))
                .Add(Bytes(row, row.size()));
        }
    }
}

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

HRESULT WritePicture(const PlotOutput& output, const PackedBitmapView& picture,
                     const PicturePlacement& placement) {
    TextSequence texts(output);
    texts.Add(plot_text::kPicturePosition, PositionX(picture, placement), 0)
        .Add(plot_text::kEnterRasterMode)
        .Add(plot_text::kPushPalette)
        .Add(plot_text::kSourceSize, picture.Width(), picture.Height())
        .Add(plot_text::kDestinationSize, Decipoints(picture.Width(), placement.dpi),
             Decipoints(picture.Height(), placement.dpi));

    // Quirk: the plot stays in raster mode behind a picture of another depth.
    const Depth* depth = FindDepth(picture.Bits());
    if (depth == nullptr) return texts.Going() ? S_FALSE : texts.Status();

    texts.Add(plot_text::kConfigureImage, static_cast<Int>(depth->description.size()))
        .Add(depth->description);
    AddPalette(texts, picture);
    texts.Add(plot_text::kStartRaster);
    // Quirk: whatever is not wider than high is turned by 180 degrees, squares too.
    AddRows(texts, picture, !placement.landscape);
    return texts.Add(plot_text::kPopPalette).Add(plot_text::kEndRaster).Status();
}

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
