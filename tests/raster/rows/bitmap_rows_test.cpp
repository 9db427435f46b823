// Rows into bitmaps: hand-worked small pictures for every depth and angle, large ones against a
// pixel-by-pixel model.
#include "raster/rows/bitmap_rows.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "common/packed_bitmap.h"

namespace qm {
namespace {

using Bytes = std::vector<std::uint8_t>;

struct Picture {
    std::int32_t width;
    std::int32_t height;
    int bits;
    Bytes rows;  // padded to 4 bytes, top row first
};

std::size_t Stride(std::int64_t width, int bits) {
    return static_cast<std::size_t>(PackedStride(width, bits));
}

// The bitmap's rows after turning `picture` in bands of `bandRows` rows.
Bytes Turned(const Picture& picture, int angle, std::int64_t bandRows) {
    const bool quarter = angle == 90 || angle == 270;
    const std::int32_t width = quarter ? picture.height : picture.width;
    const std::int32_t height = quarter ? picture.width : picture.height;
    Bytes bitmap(Stride(width, picture.bits) * static_cast<std::size_t>(height), 0);
    const BitmapTarget target{bitmap.data(), picture.width, picture.height, picture.bits};
    Bytes source = picture.rows;
    const std::size_t stride = Stride(picture.width, picture.bits);
    for (std::int64_t first = 0; first < picture.height; first += bandRows) {
        const std::int64_t count = std::min<std::int64_t>(bandRows, picture.height - first);
        const RowBand band{source.data() + static_cast<std::size_t>(first) * stride, stride, first,
                           count};
        if (angle == 0) {
            CopyUpright(target, band);
        } else {
            EXPECT_EQ(RotateRows(target, band, angle), 1);
        }
    }
    return bitmap;
}

TEST(BitmapRows, SmallPicturesByHand) {
    // 10 x 3: row 0 = 1100000001, row 1 = 1000000000, row 2 = 0100000001, with dirty padding.
    const Picture bits{10, 3, 1, {0xC0, 0x7F, 9, 9, 0x80, 0x3F, 9, 9, 0x40, 0x40, 9, 9}};
    const Bytes bits90 = {0xC0, 0, 0, 0, 0xA0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,    0, 0, 0,
                          0,    0, 0, 0, 0,    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xA0, 0, 0, 0};
    const Picture nibbles{5, 2, 4, {0x12, 0x34, 0x5F, 9, 0x67, 0x89, 0xAF, 9}};
    const Picture indexes{5, 2, 8, {1, 2, 3, 4, 5, 9, 9, 9, 6, 7, 8, 9, 10, 9, 9, 9}};
    const Picture colours{2, 2, 24, {1, 2, 3, 4, 5, 6, 99, 99, 7, 8, 9, 10, 11, 12, 99, 99}};
    // clang-format off
    const struct {
        const char* name;
        const Picture& picture;
        int angle;
        Bytes expected;
    } rows[] = {
        {"1 bit, 0", bits, 0, {0x40, 0x40, 0, 0, 0x80, 0, 0, 0, 0xC0, 0x40, 0, 0}},
        {"1 bit, 90", bits, 90, bits90},
        {"1 bit, 180", bits, 180, {0x80, 0xC0, 0, 0, 0x00, 0x40, 0, 0, 0x80, 0x80, 0, 0}},
        {"1 bit, 270 as 90", bits, 270, bits90},
        {"4 bits, 0", nibbles, 0, {0x67, 0x89, 0xA0, 0, 0x12, 0x34, 0x50, 0}},
        {"4 bits, 90", nibbles, 90,
         {0x16, 0, 0, 0, 0x27, 0, 0, 0, 0x38, 0, 0, 0, 0x49, 0, 0, 0, 0x5A, 0, 0, 0}},
        {"4 bits, 180 without the fifth", nibbles, 180, {0x43, 0x21, 0, 0, 0x98, 0x76, 0, 0}},
        {"4 bits, 270 reversed", nibbles, 270,
         {0x5A, 0, 0, 0, 0x49, 0, 0, 0, 0x38, 0, 0, 0, 0x27, 0, 0, 0, 0x16, 0, 0, 0}},
        {"8 bits, 0", indexes, 0, {6, 7, 8, 9, 10, 0, 0, 0, 1, 2, 3, 4, 5, 0, 0, 0}},
        {"8 bits, 90", indexes, 90, {1, 6, 0, 0, 2, 7, 0, 0, 3, 8, 0, 0, 4, 9, 0, 0, 5, 10, 0, 0}},
        {"8 bits, 180", indexes, 180, {5, 4, 3, 2, 1, 0, 0, 0, 10, 9, 8, 7, 6, 0, 0, 0}},
        {"8 bits, 270 without the last column", indexes, 270,
         {1, 6, 0, 0, 2, 7, 0, 0, 3, 8, 0, 0, 4, 9, 0, 0, 0, 0, 0, 0}},
        {"24 bits, 0", colours, 0, {9, 8, 7, 12, 11, 10, 0, 0, 3, 2, 1, 6, 5, 4, 0, 0}},
        {"24 bits, 90", colours, 90, {3, 2, 1, 9, 8, 7, 0, 0, 6, 5, 4, 12, 11, 10, 0, 0}},
        {"24 bits, 180", colours, 180, {6, 5, 4, 3, 2, 1, 0, 0, 12, 11, 10, 9, 8, 7, 0, 0}},
        {"24 bits, 270 without the last column", colours, 270,
         {3, 2, 1, 9, 8, 7, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    };
    // clang-format on
    for (const auto& row : rows) {
        EXPECT_EQ(Turned(row.picture, row.angle, 100), row.expected) << row.name;
        EXPECT_EQ(Turned(row.picture, row.angle, 1), row.expected) << row.name << ", row by row";
    }
}

// One pixel of padded rows, its bytes in stored order.
unsigned PixelAt(const Bytes& rows, std::size_t stride, int bits, std::int64_t x, std::int64_t y) {
    const std::size_t row = static_cast<std::size_t>(y) * stride;
    if (bits >= 8) {
        unsigned value = 0;
        const auto bytes = static_cast<std::size_t>(bits / 8);
        for (std::size_t i = 0; i < bytes; ++i) {
            value = value * 256 + rows[row + static_cast<std::size_t>(x) * bytes + i];
        }
        return value;
    }
    const std::int64_t bit = x * bits;
    const unsigned byte = rows[row + static_cast<std::size_t>(bit / 8)];
    return (byte >> (8 - bits - bit % 8)) & ((1U << bits) - 1);
}

// The tables of the angles, pixel by pixel: what stored row k, pixel i of the bitmap shows.
unsigned Expected(const Picture& picture, int angle, std::int64_t k, std::int64_t i) {
    std::int64_t x = k;
    std::int64_t y = i;
    if (angle == 0 || angle == 180) {
        x = angle == 0 ? i : picture.width - 1 - i;
        y = angle == 0 ? picture.height - 1 - k : k;
        if (angle == 180 && picture.bits == 4) {
            if (i >= picture.width / 2 * 2) return 0;
            x = picture.width / 2 * 2 - 1 - i;
        }
    } else if (angle == 270 && picture.bits == 4) {
        x = picture.width - 1 - k;
    } else if (angle == 270 && picture.bits >= 8 && k == picture.width - 1) {
        return 0;
    }
    const unsigned value =
        PixelAt(picture.rows, Stride(picture.width, picture.bits), picture.bits, x, y);
    if (picture.bits != 24) return value;
    return (value >> 16) | (value & 0xFF00U) | ((value & 0xFFU) << 16);
}

TEST(BitmapRows, LargePicturesFollowTheTable) {
    std::mt19937 random(7);
    for (const int bits : {1, 4, 8, 24}) {
        const std::size_t stride = Stride(201, bits);
        Picture picture{201, 133, bits, Bytes(stride * 133)};
        for (auto& byte : picture.rows) byte = static_cast<std::uint8_t>(random());
        for (const int angle : {0, 90, 180, 270}) {
            const bool quarter = angle == 90 || angle == 270;
            const std::int32_t width = quarter ? 133 : 201;
            for (const std::int64_t band : {133, 64, 13}) {
                const Bytes bitmap = Turned(picture, angle, band);
                int wrong = 0;
                for (std::int32_t k = 0; k < 334 - width; ++k) {
                    for (std::int32_t i = 0; i < width; ++i) {
                        wrong += PixelAt(bitmap, Stride(width, bits), bits, i, k) !=
                                 Expected(picture, angle, k, i);
                    }
                }
                EXPECT_EQ(wrong, 0) << bits << " bits, " << angle << " degrees, bands of " << band;
            }
        }
    }
}

TEST(BitmapRows, RefusedAnglesAndOtherDepthsWriteNothing) {
    Bytes source(16, 0xFF);
    Bytes bitmap(64, 0);
    const RowBand band{source.data(), 4, 0, 4};
    EXPECT_EQ(RotateRows({nullptr, 4, 4, 8}, band, 90), 0);
    EXPECT_EQ(RotateRows({bitmap.data(), 4, 4, 8}, band, 45), 0);
    EXPECT_EQ(RotateRows({bitmap.data(), 4, 4, 8}, band, 0), 0);
    EXPECT_EQ(RotateRows({bitmap.data(), 4, 4, 2}, band, 90), 1);
    EXPECT_EQ(RotateRows({bitmap.data(), 4, 4, 2}, band, 180), 1);
    EXPECT_EQ(bitmap, Bytes(64, 0));
}

TEST(BitmapRows, PlanesBecomeIndexes) {
    // Ten pixels; plane p has its bit set at pixel p and at pixel 9.
    Bytes planes(16, 0);
    for (std::size_t p = 0; p < 8; ++p) {
        planes[2 * p] = static_cast<std::uint8_t>(0x80U >> p);
        planes[2 * p + 1] = 0x40;
    }
    const struct {
        int kind;
        Bytes expected;
    } rows[] = {
        {kThreePlanes, {1, 2, 4, 0, 0, 0, 0, 0, 0, 7}},
        {kFourPlanes, {1, 2, 4, 0, 0, 0, 0, 0, 0, 7}},
        {kEightPlanes, {1, 2, 4, 8, 16, 32, 64, 128, 0, 255}},
    };
    for (const auto& row : rows) {
        Bytes merged(10, 99);
        MergePlaneRow(planes.data(), merged.data(), 10, row.kind);
        EXPECT_EQ(merged, row.expected) << row.kind;
    }
}

}  // namespace
}  // namespace qm
