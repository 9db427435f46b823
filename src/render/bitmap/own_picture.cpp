// See own_picture.h.
#include "render/bitmap/own_picture.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

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

constexpr std::int32_t kTurnedTogether = 64;  // rows, which share lines of the cache

// Columns of the picture from `first` on as rows of the copy, whose first dot is the lowest one of
// the column. `to` holds zeros.
void CopyColumns(const PackedBitmapView& picture, std::int32_t first, std::int32_t count,
                 std::size_t rowBytes, std::uint8_t* to) {
    const std::int32_t height = picture.Height();
    const std::size_t bytes = picture.Bits() == 24 ? 3 : 1;
    for (std::int32_t x = 0; x < height; ++x) {
        const std::uint8_t* const from = picture.RowFromTop(height - 1 - x);
        std::uint8_t* row = to;
        for (std::int32_t y = first; y < first + count; ++y, row += rowBytes) {
            if (picture.Bits() == 1) {
                const unsigned bit = static_cast<unsigned>(from[y / 8]) >> (7 - y % 8) & 1;
                row[x / 8] = static_cast<std::uint8_t>(row[x / 8] | bit << (7 - x % 8));
            } else {
                std::memcpy(row + bytes * static_cast<std::size_t>(x),
                            from + bytes * static_cast<std::size_t>(y), bytes);
            }
        }
    }
}

void GiveTurned(const PackedBitmapView& picture, PictureSink& sink) {
    const auto rowBytes =
        static_cast<std::size_t>(PackedRowBytes(picture.Height(), picture.Bits()));
    std::vector<std::uint8_t> rows(rowBytes * kTurnedTogether);
    for (std::int32_t y = 0; y < picture.Width(); y += kTurnedTogether) {
        const std::int32_t count = std::min(kTurnedTogether, picture.Width() - y);
        std::fill(rows.begin(), rows.end(), std::uint8_t{0});
        CopyColumns(picture, y, count, rowBytes, rows.data());
        for (std::int32_t i = 0; i < count; ++i) {
            sink.Row(rows.data() + rowBytes * static_cast<std::size_t>(i));
        }
    }
}

}  // namespace

bool DrawOwnPicture(const PageSource& page, int dpi, int bits, PictureSink& sink) {
    if (page.rotation != 0.0) return false;
    PictureFinder found;
    Play(*page.drawing, found);
    if (found.hasOthers || found.bitmap.size == 0) return false;
    const auto picture = PackedBitmapView::Parse(found.bitmap.data, found.bitmap.size);
    if (!picture || picture->Bits() != bits ||
        !HasDots(picture->Width(), found.box.a.x, found.box.b.x, page.unitsPerInch, dpi) ||
        !HasDots(picture->Height(), found.box.a.y, found.box.b.y, page.unitsPerInch, dpi)) {
        return false;
    }
    const bool turned = picture->Height() >= picture->Width();
    PictureHead head{picture->Width(), picture->Height(), bits, dpi, {}};
    if (turned) std::swap(head.width, head.height);
    for (std::uint32_t i = 0; i < PackedColourCount(bits); ++i) {
        head.palette.push_back(picture->Colour(i));
    }
    sink.Begin(head);
    if (turned) {
        GiveTurned(*picture, sink);
    } else {
        for (std::int32_t y = 0; y < head.height; ++y) sink.Row(picture->RowFromTop(y));
    }
    return true;
}

void SquareWidener::Begin(const PictureHead& head) {
    PictureHead widened = head;
    row_.clear();
    if (head.width == head.height) {
        ++widened.width;
        bits_ = head.bits;
        side_ = static_cast<std::size_t>(head.width);
        row_.resize(static_cast<std::size_t>(PackedRowBytes(widened.width, bits_)));
    }
    sink_.Begin(widened);
}

void SquareWidener::Row(const std::uint8_t* row) {
    if (row_.empty()) return sink_.Row(row);
    const std::size_t last = side_ - 1;
    if (bits_ == 1) {
        std::memcpy(row_.data(), row, last / 8 + 1);
        const unsigned dot = static_cast<unsigned>(row[last / 8]) >> (7 - last % 8) & 1;
        const unsigned others = row_[side_ / 8] & ~(0x80U >> side_ % 8);
        row_[side_ / 8] = static_cast<std::uint8_t>(others | dot << (7 - side_ % 8));
    } else {
        const std::size_t bytes = bits_ == 24 ? 3 : 1;
        std::memcpy(row_.data(), row, side_ * bytes);
        std::memcpy(row_.data() + side_ * bytes, row + last * bytes, bytes);
    }
    sink_.Row(row_.data());
}

}  // namespace qm
