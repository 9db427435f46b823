// See picture_writer.h.
#include "export/picture_writer.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

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
Int PositionX(const PictureHead& picture, const PicturePlacement& placement) {
    if (placement.landscape) return 0;
    return TruncateToInt32((picture.width + 1.0) / placement.dpi * kUnitsPerInch);
}

Int Decipoints(std::int32_t pixels, int dpi) {
    return TruncateToInt32(static_cast<double>(pixels) / dpi * kDecipointsPerInch);
}

void AddPalette(TextSequence& texts, const std::vector<PaletteEntry>& palette) {
    Int number = 0;
    for (const PaletteEntry entry : palette) {
        if (!texts.Going()) return;
        texts.Add(plot_text::kPaletteEntry, Int{entry.red}, Int{entry.green}, Int{entry.blue},
                  number++);
    }
}

std::string_view Bytes(const std::vector<std::uint8_t>& buffer, std::size_t size) {
    return {reinterpret_cast<const char*>(buffer.data()), size};
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

PictureWriter::PictureWriter(const PlotOutput& output, const PictureHead& head,
                             const PicturePlacement& placement)
    : output_(output),
      head_(head),
      placement_(placement),
      row_(PictureRowBytes(head.width, head.bits)),
      packed_(PackBitsBound(row_.size())) {}

bool PictureWriter::Takes(int bits) noexcept { return FindDepth(bits) != nullptr; }

HRESULT PictureWriter::Begin() noexcept {
    texts_.Add(plot_text::kPicturePosition, PositionX(head_, placement_), 0)
        .Add(plot_text::kEnterRasterMode)
        .Add(plot_text::kPushPalette)
        .Add(plot_text::kSourceSize, head_.width, head_.height)
        .Add(plot_text::kDestinationSize, Decipoints(head_.width, placement_.dpi),
             Decipoints(head_.height, placement_.dpi));

    // Quirk: the plot stays in raster mode behind a picture of another depth.
    const Depth* depth = FindDepth(head_.bits);
    if (depth == nullptr) return texts_.Going() ? S_FALSE : texts_.Status();

    texts_.Add(plot_text::kConfigureImage, static_cast<Int>(depth->description.size()))
        .Add(depth->description);
    AddPalette(texts_, head_.palette);
    return texts_.Add(plot_text::kStartRaster).Status();
}

// Packed when that is shorter.
HRESULT PictureWriter::AddRow(const std::uint8_t* row) noexcept {
    if (!texts_.Going()) return texts_.Status();
    // Quirk: whatever is not wider than high is turned by 180 degrees, squares too.
    MakePictureRow(row, head_.width, head_.bits, !placement_.landscape, row_.data());
    const std::size_t size = PackBits(row_.data(), row_.size(), packed_.data());
    if (size < row_.size()) {
        texts_.Add(plot_text::kPackedRow, static_cast<Int>(size)).Add(Bytes(packed_, size));
    } else {
        texts_.Add(plot_text::kPlainRow, static_cast<Int>(row_.size()))
            .Add(Bytes(row_, row_.size()));
    }
    return texts_.Status();
}

HRESULT PictureWriter::End() noexcept {
    return texts_.Add(plot_text::kPopPalette).Add(plot_text::kEndRaster).Status();
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
