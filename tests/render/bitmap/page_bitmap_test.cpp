// Pages as bitmaps: the colours that each depth keeps.
#include "render/bitmap/page_bitmap.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "common/packed_bitmap.h"
#include "common/tool_error.h"
#include "host/display_list.h"

namespace {

using namespace qm;

// A sheet of 64 x `height` dots, a dot a plotter unit, filled as `colourAt(x, y)` says.
template <typename ColourAt>
DisplayList Stripes(std::int32_t height, const ColourAt& colourAt) {
    DisplayList list;
    for (std::int32_t x = 0; x < 64; ++x) {
        for (std::int32_t y = 0; y < height; ++y) {
            list.AppendColour(RecordKind::kFillColour, colourAt(x, y));
            list.AppendRectangle({{x, y}, {x + 1, y + 1}}, true);
        }
    }
    return list;
}

class Bitmap : PictureSink {
  public:
    Bitmap(const DisplayList& list, int bits, BitmapBudget* budget = nullptr) {
        PageSource page;
        page.drawing = &list;
        PageOptions options;
        options.dpi = 1016.0;
        options.marginMillimetres = 0.0;
        options.budget = budget;
        DrawBitmap(page, options, bits, *this);
        EXPECT_EQ(missing_, 0);
        view_ = PackedBitmapView::Parse(bytes_.data(), bytes_.size());
    }
    const PackedBitmapView& View() const { return view_.value(); }
    // 0x00BBGGRR of the dot that holds the drawing's point, y up.
    std::uint32_t At(std::int32_t x, std::int32_t y) const {
        std::vector<std::uint8_t> rgb(std::size_t{3} * static_cast<std::size_t>(View().Width()));
        View().RowToRgb(View().Height() - 1 - y, rgb.data());
        const auto at = 3 * static_cast<std::size_t>(x);
        return rgb[at] | std::uint32_t{rgb[at + 1]} << 8 | std::uint32_t{rgb[at + 2]} << 16;
    }

  private:
    void Begin(const PictureHead& head) override {
        bytes_.resize(PackedBitmapSize(head.width, head.height, head.bits).value());
        WritePackedHeader(bytes_.data(), head.width, head.height, head.bits, head.palette.data());
        missing_ = height_ = head.height;
        stride_ = PackedStride(head.width, head.bits);
        rowBytes_ = PackedRowBytes(head.width, head.bits);
    }
    void Row(const std::uint8_t* row) override {
        // The bottom row comes last and stands first.
        --missing_;
        std::copy_n(row, rowBytes_, bytes_.end() - stride_ * (height_ - missing_));
    }

    std::int64_t stride_ = 0;
    std::int64_t rowBytes_ = 0;
    std::int64_t height_ = 0;
    std::int64_t missing_ = 0;  // rows
    std::vector<std::uint8_t> bytes_;
    std::optional<PackedBitmapView> view_;
};

std::uint32_t ManyColours(std::int32_t x, std::int32_t y) {
    return static_cast<std::uint32_t>(x * 4 + y * 0x1100 + 0x2F0000);
}

TEST(PageBitmap, DeepDotsKeepEveryColour) {
    const Bitmap bitmap(Stripes(5, ManyColours), 24);
    ASSERT_EQ(bitmap.View().Width(), 64);
    ASSERT_EQ(bitmap.View().Height(), 5);
    for (const std::int32_t x : {0, 1, 40, 63}) {
        EXPECT_EQ(bitmap.At(x, 0), ManyColours(x, 0));
        EXPECT_EQ(bitmap.At(x, 4), ManyColours(x, 4));
    }
    BitmapBudget few{WorkBudget(80)};
    EXPECT_EQ(Bitmap(Stripes(5, ManyColours), 24, &few).View().Width(), 32);
}

TEST(PageBitmap, ByteDotsKeepFewColoursAndRoundMany) {
    const Bitmap few(Stripes(4, ManyColours), 8);  // 256 of them
    EXPECT_EQ(few.View().Bits(), 8);
    EXPECT_EQ(few.At(0, 0), ManyColours(0, 0));
    EXPECT_EQ(few.At(63, 3), ManyColours(63, 3));
    const Bitmap many(Stripes(5, ManyColours), 8);
    // Multiples of 51, each the nearest: 0x2F is nearer to 0x33 than to 0, 0xFC to 0xFF.
    EXPECT_EQ(many.At(0, 0), 0x330000U);
    EXPECT_EQ(many.At(63, 4), 0x3333FFU);
}

TEST(PageBitmap, OneBitMixesByLightness) {
    constexpr std::uint32_t kColours[] = {0x000000, 0xFFFFFF, 0x808080, 0x0000FF};
    const Bitmap bitmap(Stripes(16, [&](std::int32_t x, std::int32_t) { return kColours[x / 16]; }),
                        1);
    ASSERT_EQ(bitmap.View().Bits(), 1);
    int white[4] = {};
    for (std::int32_t x = 0; x < 64; ++x) {
        for (std::int32_t y = 0; y < 16; ++y) white[x / 16] += bitmap.At(x, y) == 0xFFFFFF ? 1 : 0;
    }
    // Of 256 dots; red is 0.299 light.
    EXPECT_EQ(white[0], 0);
    EXPECT_EQ(white[1], 256);
    EXPECT_EQ(white[2], 128);
    EXPECT_EQ(white[3], 76);
}

TEST(PageBitmap, RefusesTooLargePages) {
    DisplayList list;
    list.AppendLine({0, 0}, {1016 * 1000, 0});
    EXPECT_THROW(Bitmap(list, 1), ToolError);
}

}  // namespace
