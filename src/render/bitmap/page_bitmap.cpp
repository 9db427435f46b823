#include "render/bitmap/page_bitmap.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "common/numbers.h"
#include "host/packed_bytes.h"
#include "render/bitmap/colour_table.h"
#include "render/bitmap/page_bands.h"

namespace qm::bitmap {

namespace {

// -------------------------------------------------------------------------------- 8 bits a dot

constexpr unsigned kCubeSide = 6;
constexpr unsigned kCubeStep = 255 / (kCubeSide - 1);

unsigned CubeLevel(std::uint32_t component) {
    return ((component & 255) + kCubeStep / 2) / kCubeStep;
}

std::uint8_t CubeIndex(std::uint32_t dot) {
    return static_cast<std::uint8_t>(
        (CubeLevel(dot >> 16) * kCubeSide + CubeLevel(dot >> 8)) * kCubeSide + CubeLevel(dot));
}

std::vector<PaletteEntry> CubePalette() {
    std::vector<PaletteEntry> palette(ColourTable::kMost);
    for (unsigned i = 0; i < kCubeSide * kCubeSide * kCubeSide; ++i) {
        const auto level = [](unsigned value) {
            return static_cast<std::uint8_t>(value % kCubeSide * kCubeStep);
        };
        palette[i] = {level(i), level(i / kCubeSide), level(i / kCubeSide / kCubeSide), 0};
    }
    return palette;
}

// --------------------------------------------------------------------------------- 1 bit a dot

// Thresholds of ordered dithering: bit by bit from the mixed bits of x and y, the finest ones first
// (Bayer), so that the dots of each lightness lie as far apart as possible.
unsigned Threshold(std::int32_t x, std::int32_t y) {
    const auto column = static_cast<unsigned>(x);
    const auto row = static_cast<unsigned>(y);
    unsigned threshold = 0;
    for (unsigned bit = 0; bit < 3; ++bit) {
        threshold = threshold << 2 | ((column ^ row) >> bit & 1) << 1 | (row >> bit & 1);
    }
    return threshold;  // 0 to 63
}

// Weights of the components in lightness: ITU-R BT.601.
bool IsWhite(std::uint32_t dot, std::int32_t x, std::int32_t y) {
    const std::uint32_t lightness =
        (299 * (dot >> 16 & 255) + 587 * (dot >> 8 & 255) + 114 * (dot & 255)) / 1000;
    return lightness * 64 > Threshold(x, y) * 255 + 127;
}

// ---------------------------------------------------------------------------------------- rows

// Rows of indices, packed until all colours are known. What is drawn of a plot repeats itself, so
// they take a hundredth of their size, more or less.
class IndexRows {
  public:
    explicit IndexRows(std::size_t width)
        : width_(width), open_(width * std::max<std::size_t>(1, kPieceBytes / width)) {}

    std::uint8_t* Next() {
        if (used_ == open_.size()) Close();
        used_ += width_;
        return open_.data() + used_ - width_;
    }
    // take(row) for each row so far, which it may change for itself.
    template <typename Take>
    void ForEachRow(const Take& take) {
        std::vector<std::uint8_t> rows;
        for (const Piece& piece : pieces_) {
            rows.resize(open_.size());
            Unpack(piece.data(), piece.size(), rows.data(), rows.size());
            Hand(rows, rows.size(), take);
        }
        Hand(open_, used_, take);
    }

  private:
    using Piece = std::vector<std::uint8_t>;
    static constexpr std::size_t kPieceBytes = std::size_t{1} << 18;

    void Close() {
        room_.resize(MaxPackedBytes(open_.size()));
        const std::size_t size = Pack(open_.data(), open_.size(), room_.data());
        pieces_.emplace_back(room_.begin(), room_.begin() + static_cast<std::ptrdiff_t>(size));
        used_ = 0;
    }
    template <typename Take>
    void Hand(std::vector<std::uint8_t>& rows, std::size_t size, const Take& take) const {
        for (std::size_t at = 0; at < size; at += width_) take(rows.data() + at);
    }

    std::size_t width_;
    std::vector<std::uint8_t> open_;  // the last rows, as they are
    std::size_t used_ = 0;            // bytes of them
    std::vector<std::uint8_t> room_;  // of Pack
    std::vector<Piece> pieces_;       // of as many rows as `open_` has room for
};

class RowWriter {
  public:
    RowWriter(const PageRaster& raster, int bits, std::int32_t dpi, PictureSink& sink)
        : width_(raster.width), head_{raster.width, raster.height, bits, dpi, {}}, sink_(sink) {
        if (bits == 8) {
            indices_.emplace(static_cast<std::size_t>(width_));
            return;
        }
        row_.resize(static_cast<std::size_t>(PackedRowBytes(width_, bits)));
        if (bits == 1) head_.palette = {{0, 0, 0, 0}, {255, 255, 255, 0}};
        sink_.Begin(head_);
    }

    void Take(const Band& band) {
        for (std::int32_t y = band.Top(); y < band.Bottom(); ++y) {
            const BandDot* const dots = band.Row(y);
            if (indices_) {
                KeepIndices(dots);
                continue;
            }
            if (head_.bits == 1) {
                MakeBits(dots, y);
            } else {
                MakeColours(dots);
            }
            sink_.Row(row_.data());
        }
    }
    void Finish() {
        if (!indices_) return;
        if (!cube_) {
            head_.palette.resize(ColourTable::kMost);
            const auto& colours = colours_.Colours();
            std::transform(colours.begin(), colours.end(), head_.palette.begin(), EntryOf);
        } else {
            head_.palette = CubePalette();
        }
        sink_.Begin(head_);
        // Rows above the first that the table had no number for name colours of the table.
        std::array<std::uint8_t, ColourTable::kMost> inCube{};
        const auto& colours = colours_.Colours();
        std::transform(colours.begin(), colours.end(), inCube.begin(), CubeIndex);
        std::int32_t y = 0;
        indices_->ForEachRow([&](std::uint8_t* row) {
            if (cube_ && y++ < numbered_) {
                std::transform(row, row + width_, row,
                               [&](std::uint8_t number) { return inCube[number]; });
            }
            sink_.Row(row);
        });
    }

  private:
    void MakeBits(const BandDot* dots, std::int32_t y) {
        std::fill(row_.begin(), row_.end(), std::uint8_t{0});
        for (std::int32_t x = 0; x < width_; ++x) {
            if (!IsWhite(dots[x].colour, x, y)) continue;
            std::uint8_t& byte = row_[static_cast<std::size_t>(x / 8)];
            byte = static_cast<std::uint8_t>(byte | 0x80U >> (x % 8));
        }
    }
    void KeepIndices(const BandDot* dots) {
        std::uint8_t* const row = indices_->Next();
        for (std::int32_t x = 0; x < width_ && !cube_; ++x) {
            const std::size_t number = colours_.NumberOf(dots[x].colour);
            cube_ = number == ColourTable::kMost;
            row[x] = static_cast<std::uint8_t>(number);
        }
        if (!cube_) {
            ++numbered_;
            return;
        }
        std::transform(dots, dots + width_, row,
                       [](const BandDot& dot) { return CubeIndex(dot.colour); });
    }
    void MakeColours(const BandDot* dots) {
        std::uint8_t* row = row_.data();
        const BandDot* const last = dots + width_ - 1;
        // A whole word is stored for each dot, of which the next replaces the last byte.
        for (; dots != last; ++dots, row += 3) {
            const std::uint32_t colour = dots->colour;
            for (unsigned byte = 0; byte < 4; ++byte) {
                row[byte] = static_cast<std::uint8_t>(colour >> (8 * byte));
            }
        }
        for (unsigned byte = 0; byte < 3; ++byte) {
            row[byte] = static_cast<std::uint8_t>(last->colour >> (8 * byte));
        }
    }

    std::int32_t width_;
    PictureHead head_;
    PictureSink& sink_;
    std::vector<std::uint8_t> row_;  // of 1 and 24 bits
    std::optional<IndexRows> indices_;
    ColourTable colours_;
    std::int32_t numbered_ = 0;  // rows that name colours of the table
    bool cube_ = false;          // the other rows, since the table is full
};

}  // namespace

}  // namespace qm::bitmap

namespace qm {

void DrawBitmap(const PageSource& page, const PageOptions& options, int bits, PictureSink& sink) {
    using namespace bitmap;
    PageOptions drawing = options;
    drawing.smooth = bits == 24;
    const PageRaster raster = FittingRaster(page, drawing, "HP-RTL");
    RowWriter writer(raster, bits, std::max(1, RoundToInt32(drawing.dpi)), sink);
    DrawBands(
        page, drawing, raster, [&](const Band& band) { writer.Take(band); },
        BandBytesFor(page, drawing, raster));
    writer.Finish();
}

}  // namespace qm
