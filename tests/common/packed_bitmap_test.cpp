// Packed bitmaps: the header as bytes, the checks against lying headers, rows as colours.
#include "common/packed_bitmap.h"

#include <gtest/gtest.h>

#include <vector>

namespace qm {
namespace {

using Bytes = std::vector<std::uint8_t>;

// A zeroed bitmap of the given form with colour i of the table = {i, i + 1, i + 2}.
Bytes Make(std::int32_t width, std::int32_t height, int bits) {
    std::vector<PaletteEntry> palette(256);
    for (std::size_t i = 0; i < palette.size(); ++i) {
        const auto c = static_cast<std::uint8_t>(i);
        palette[i] = {c, static_cast<std::uint8_t>(c + 1), static_cast<std::uint8_t>(c + 2), 77};
    }
    Bytes block(PackedBitmapSize(width, height, bits).value());
    WritePackedHeader(block.data(), width, height, bits, palette.data());
    return block;
}

Bytes Rgb(const Bytes& block, std::int32_t y) {
    const auto view = PackedBitmapView::Parse(block.data(), block.size());
    if (!view) return {};
    Bytes rgb(static_cast<std::size_t>(view->Width()) * 3);
    view->RowToRgb(y, rgb.data());
    return rgb;
}

TEST(PackedBitmap, HeaderAndColourTableAreLittleEndianBytes) {
    const Bytes expected = {40, 0, 0, 0, 0x02, 0x01, 0, 0, 3,   0, 0, 0,              // 258 x 3
                            1,  0, 1, 0, 0,    0,    0, 0, 108, 0, 0, 0,              // 1 bit
                            0,  0, 0, 0, 0,    0,    0, 0, 2,   0, 0, 0, 2, 0, 0, 0,  // colours
                            0,  1, 2, 0, 1,    2,    3, 0};
    Bytes block = Make(258, 3, 1);
    EXPECT_EQ(block.size(), 48U + 36 * 3);
    block.resize(48);
    EXPECT_EQ(block, expected);
}

TEST(PackedBitmap, SizesBeyondTheLimitAreRefused) {
    EXPECT_EQ(PackedBitmapSize(3, 2, 24), 40U + 24);
    EXPECT_EQ(PackedBitmapSize(5, 1, 4), 40U + 64 + 4);
    EXPECT_FALSE(PackedBitmapSize(0, 1, 8));
    EXPECT_FALSE(PackedBitmapSize(1, -1, 8));
    EXPECT_FALSE(PackedBitmapSize(INT32_MAX, 2, 8));
    EXPECT_FALSE(PackedBitmapSize(INT32_MAX, INT32_MAX, 255));
}

TEST(PackedBitmap, LyingHeadersAreRefused) {
    const struct {
        const char* name;
        std::size_t offset;
        std::uint8_t value;
        bool accepted;
    } rows[] = {
        {"as made", 0, 40, true},
        {"short header", 0, 39, false},
        {"header longer than the block", 1, 1, false},
        {"width 0", 4, 0, false},
        {"one row wider than held", 4, 5, false},
        {"negative width", 7, 0x80, false},
        {"height 0", 8, 0, false},
        {"one row too many", 8, 3, false},
        {"height -2147483648", 11, 0x80, false},
        {"two planes", 12, 2, false},
        {"depth 0", 14, 0, false},
        {"depth 256 and more", 15, 1, false},
        {"deeper than held", 14, 32, false},
        {"compressed", 16, 1, false},
        {"full table by 0", 32, 0, true},
        {"more colours than held", 33, 2, false},
    };
    for (const auto& row : rows) {
        Bytes block = Make(4, 2, 8);
        block[row.offset] = row.value;
        EXPECT_EQ(PackedBitmapView::Parse(block.data(), block.size()).has_value(), row.accepted)
            << row.name;
    }
    const Bytes block = Make(4, 2, 8);
    EXPECT_FALSE(PackedBitmapView::Parse(block.data(), block.size() - 1));
    EXPECT_FALSE(PackedBitmapView::Parse(block.data(), 39));
    EXPECT_FALSE(PackedBitmapView::Parse(nullptr, 100));
}

TEST(PackedBitmap, RowsBecomeColoursAtEveryDepth) {
    const struct {
        int bits;
        std::int32_t width;
        Bytes stored;  // bytes of the last stored row, the top one
        Bytes rgb;
    } rows[] = {
        {1, 3, {0x40}, {2, 1, 0, 3, 2, 1, 2, 1, 0}},
        {2, 2, {0xE0}, {5, 4, 3, 4, 3, 2}},
        {4, 3, {0x12, 0xF0}, {3, 2, 1, 4, 3, 2, 17, 16, 15}},
        {8, 1, {200}, {202, 201, 200}},
        {16, 2, {0xFF, 0x7F, 0x00, 0x7C}, {255, 255, 255, 255, 0, 0}},
        {24, 1, {1, 2, 3}, {3, 2, 1}},
        {32, 1, {1, 2, 3, 4}, {3, 2, 1}},
        {5, 1, {0}, {255, 255, 255}},
    };
    for (const auto& row : rows) {
        Bytes block = Make(row.width, 2, row.bits);
        const auto stride = static_cast<std::size_t>(PackedStride(row.width, row.bits));
        std::copy(row.stored.begin(), row.stored.end(), block.end() - static_cast<long>(stride));
        EXPECT_EQ(Rgb(block, 0), row.rgb) << row.bits << " bits";
    }
}

TEST(PackedBitmap, ANegativeHeightTurnsTheRowOrder) {
    Bytes block = Make(1, 2, 24);
    block[40] = 9;  // blue of the first stored row
    EXPECT_EQ(Rgb(block, 1), (Bytes{0, 0, 9}));
    for (std::size_t i = 8; i < 12; ++i) block[i] = i == 8 ? 0xFE : 0xFF;
    EXPECT_EQ(Rgb(block, 0), (Bytes{0, 0, 9}));
}

TEST(PackedBitmap, ColoursBehindAShortTableAreBlack) {
    Bytes block = Make(1, 1, 8);
    block[32] = 2;
    block[33] = 0;
    const auto view = PackedBitmapView::Parse(block.data(), block.size());
    ASSERT_TRUE(view);
    EXPECT_EQ(view->Pixels() - block.data(), 48);
    EXPECT_EQ(view->Colour(1), (PaletteEntry{1, 2, 3, 0}));
    EXPECT_EQ(view->Colour(2), PaletteEntry{});
}

}  // namespace
}  // namespace qm
