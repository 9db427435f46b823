// Packed bitmaps: the header as bytes, the checks against lying headers, rows as colours.
#include "common/packed_bitmap.h"

#include <gtest/gtest.h>

#include "tests/common/hex_text.h"

namespace qm {
namespace {

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
    const char* const expected =
        "28000000 02010000 03000000 0100 0100 00000000 6C000000 00*8 02000000 02000000"
        "00010200 01020300";
    Bytes block = Make(258, 3, 1);
    EXPECT_EQ(block.size(), 48U + 36 * 3);
    block.resize(48);
    EXPECT_EQ(block, FromHex(expected));
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
    Bytes three = Make(4, 2, 1);
    three[32] = 3;
    three.resize(three.size() + 4);
    EXPECT_FALSE(PackedBitmapView::Parse(three.data(), three.size())) << "more than the depth has";
}

TEST(PackedBitmap, RowsBecomeColoursAtEveryDepth) {
    // clang-format off
    const struct {
        int bits;
        std::int32_t width;
        const char* stored;  // bytes of the last stored row, the top one
        const char* rgb;
    } rows[] = {
        {1, 3, "40", "020100 030201 020100"},
        {2, 2, "E0", "050403 040302"},
        {4, 3, "12F0", "030201 040302 11100F"},
        {8, 1, "C8", "CAC9C8"},
        {16, 2, "FF7F 007C", "FFFFFF FF0000"},
        {24, 1, "010203", "030201"},
        {32, 1, "01020304", "030201"},
        {5, 1, "00", "FFFFFF"},
    };
    // clang-format on
    for (const auto& row : rows) {
        Bytes block = Make(row.width, 2, row.bits);
        const Bytes stored = FromHex(row.stored);
        std::copy(stored.begin(), stored.end(), block.end() - PackedStride(row.width, row.bits));
        EXPECT_EQ(Rgb(block, 0), FromHex(row.rgb)) << row.bits << " bits";
    }
}

TEST(PackedBitmap, ANegativeHeightTurnsTheRowOrder) {
    Bytes block = Make(1, 2, 24);
    block[40] = 9;  // blue of the first stored row
    EXPECT_EQ(Rgb(block, 1), (Bytes{0, 0, 9}));
    block[8] = 0xFE;
    std::fill_n(&block[9], 3, std::uint8_t{0xFF});
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
