// See own_picture.h.
#include "render/bitmap/own_picture.h"

#include <cmath>
#include <cstring>
#include <new>

#include "common/packed_bitmap.h"
#include "host/display_list_player.h"
#include "render/line_look.h"

namespace qm {

namespace {

class PictureFinder final : public DisplayListVisitor {
  public:
    void Lines(const DrawingStyle&, PointSpan) override { hasOthers = true; }
    void Rectangle(const DrawingStyle&, const BoxI&, bool) override { hasOthers = true; }
    void Circle(const DrawingStyle&, PointI, std::int32_t, bool) override { hasOthers = true; }
    void Arc(const DrawingStyle&, const ArcShape&) override { hasOthers = true; }
    void Polygon(const DrawingStyle&, PointSpan, bool) override { hasOthers = true; }
    void PolyPolygon(const DrawingStyle&, const Rings&, bool) override { hasOthers = true; }
    void Picture(const DrawingStyle&, const BoxI& at, std::int32_t operation,
                 ByteRun packedBitmap) override {
        const Blend blend = BlendOfPicture(operation);
        // On white paper the darker of both is the picture.
        if (blend != Blend::kNormal && blend != Blend::kDarken) hasOthers = true;
        if (bitmap.size > 0) hasOthers = true;
        box = Ordered(at);
        bitmap = packedBitmap;
    }

    bool hasOthers = false;
    BoxI box;
    ByteRun bitmap;
};

bool HasDots(std::int32_t dots, double from, double to, double unitsPerInch, int dpi) {
    return std::abs((to - from) / unitsPerInch * dpi - dots) < 1.0;
}

// Row and column of the copy become column and row from below of the picture.
void CopyTurned(const PackedBitmapView& picture, std::int32_t y, std::uint8_t* to) {
    const std::int32_t height = picture.Height();
    const std::size_t bytes = picture.Bits() == 24 ? 3 : 1;
    for (std::int32_t x = 0; x < height; ++x) {
        const std::uint8_t* const from = picture.RowFromTop(height - 1 - x);
        if (picture.Bits() == 1) {
            const unsigned bit = static_cast<unsigned>(from[y / 8]) >> (7 - y % 8) & 1;
            to[x / 8] = static_cast<std::uint8_t>(to[x / 8] | bit << (7 - x % 8));
        } else {
            std::memcpy(to + bytes * static_cast<std::size_t>(x),
                        from + bytes * static_cast<std::size_t>(y), bytes);
        }
    }
}

// Room for a picture of that size with the colours of another; its rows stand at the end.
std::vector<std::uint8_t> NewPicture(const PackedBitmapView& picture, std::int32_t width,
                                     std::int32_t height) {
    const auto size = PackedBitmapSize(width, height, picture.Bits());
    if (!size) throw std::bad_alloc();
    std::vector<std::uint8_t> packed(*size);
    PaletteEntry palette[256] = {};
    for (std::uint32_t i = 0; i < PackedColourCount(picture.Bits()); ++i) {
        palette[i] = picture.Colour(i);
    }
    WritePackedHeader(packed.data(), width, height, picture.Bits(), palette);
    return packed;
}

std::vector<std::uint8_t> CopyOf(const PackedBitmapView& picture, bool turned) {
    const std::int32_t width = turned ? picture.Height() : picture.Width();
    const std::int32_t height = turned ? picture.Width() : picture.Height();
    std::vector<std::uint8_t> packed = NewPicture(picture, width, height);
    const auto stride = static_cast<std::size_t>(PackedStride(width, picture.Bits()));
    for (std::int32_t y = 0; y < height; ++y) {
        std::uint8_t* const row =
            packed.data() + packed.size() - stride * static_cast<std::size_t>(y + 1);
        if (turned) {
            CopyTurned(picture, y, row);
        } else {
            std::memcpy(row, picture.RowFromTop(y), picture.RowBytes());
        }
    }
    return packed;
}

}  // namespace

std::optional<std::vector<std::uint8_t>> OwnPicture(const PageSource& page, int dpi, int bits) {
    if (page.rotation != 0.0) return std::nullopt;
    PictureFinder found;
    Play(*page.drawing, found);
    if (found.hasOthers || found.bitmap.size == 0) return std::nullopt;
    const auto picture = PackedBitmapView::Parse(found.bitmap.data, found.bitmap.size);
    if (!picture || picture->Bits() != bits ||
        !HasDots(picture->Width(), found.box.a.x, found.box.b.x, page.unitsPerInch, dpi) ||
        !HasDots(picture->Height(), found.box.a.y, found.box.b.y, page.unitsPerInch, dpi)) {
        return std::nullopt;
    }
    return CopyOf(*picture, picture->Height() >= picture->Width());
}

std::vector<std::uint8_t> WidenedSquare(std::vector<std::uint8_t> packed) {
    const auto picture = PackedBitmapView::Parse(packed.data(), packed.size());
    if (!picture || picture->Width() != picture->Height()) return packed;
    const int bits = picture->Bits();
    const std::int32_t side = picture->Width();
    std::vector<std::uint8_t> wide = NewPicture(*picture, side + 1, side);
    const auto stride = static_cast<std::size_t>(PackedStride(side + 1, bits));
    std::uint8_t* row = wide.data() + wide.size() - stride;
    const auto last = static_cast<std::size_t>(side) - 1;
    for (std::int32_t y = 0; y < side; ++y, row -= stride) {
        const std::uint8_t* const from = picture->RowFromTop(y);
        std::memcpy(row, from, picture->RowBytes());
        if (bits == 1) {
            const unsigned dot = static_cast<unsigned>(from[last / 8]) >> (7 - last % 8) & 1;
            const std::size_t next = last + 1;
            const unsigned others = row[next / 8] & ~(0x80U >> next % 8);
            row[next / 8] = static_cast<std::uint8_t>(others | dot << (7 - next % 8));
        } else {
            const std::size_t bytes = bits == 24 ? 3 : 1;
            std::memcpy(row + (last + 1) * bytes, from + last * bytes, bytes);
        }
    }
    return wide;
}

}  // namespace qm
