// Rows into bitmaps: every depth and angle against a pixel-by-pixel model.
#include "raster/rows/bitmap_rows.h"

#include <gtest/gtest.h>

#include <random>

#include "common/packed_bitmap.h"
#include "tests/common/hex_text.h"

namespace qm {
namespace {

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

// One bit of a picture's padding is set, as in rows from a plot.
TEST(BitmapRows, PicturesFollowTheTable) {
    std::mt19937 random(7);
    for (const int bits : {1, 4, 8, 24}) {
        for (const std::int32_t side : {5, 201}) {
            const std::size_t stride = Stride(side, bits);
            Picture picture{side, side * 2 / 3, bits, {}};
            picture.rows.resize(stride * static_cast<std::size_t>(picture.height));
            for (auto& byte : picture.rows) byte = static_cast<std::uint8_t>(random());
            for (const int angle : {0, 90, 180, 270}) {
                const bool quarter = angle == 90 || angle == 270;
                const std::int32_t width = quarter ? picture.height : side;
                for (const std::int64_t band : {200, 64, 13, 1}) {
                    const Bytes bitmap = Turned(picture, angle, band);
                    int wrong = 0;
                    for (std::int32_t k = 0; k < side + picture.height - width; ++k) {
                        for (std::int32_t i = 0; i < width; ++i) {
                            wrong += PixelAt(bitmap, Stride(width, bits), bits, i, k) !=
                                     Expected(picture, angle, k, i);
                        }
                    }
                    EXPECT_EQ(wrong, 0) << bits << " bits, " << angle << " degrees, " << band;
                }
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
    const std::pair<int, const char*> rows[] = {{kThreePlanes, "01020400000000000007"},
                                                {kFourPlanes, "01020400000000000007"},
                                                {kEightPlanes, "0102040810204080 00FF"}};
    for (const auto& [kind, indexes] : rows) {
        Bytes merged(10, 99);
        MergePlaneRow(planes.data(), merged.data(), 10, kind);
        EXPECT_EQ(merged, FromHex(indexes)) << kind;
    }
}

}  // namespace
}  // namespace qm
