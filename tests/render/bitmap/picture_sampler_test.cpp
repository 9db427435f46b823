// Pictures in bands: the ways to draw them against each other.
#include "render/bitmap/picture_sampler.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <vector>

namespace qm::bitmap {
namespace {

using Bytes = std::vector<std::uint8_t>;
using ColourAt = std::function<std::uint32_t(std::int32_t x, std::int32_t y)>;

constexpr std::uint32_t kColours[] = {0xFFFFFF, 0x204060, 0x000000, 0xFF8001};

// A picture of those of kColours that its depth can name; with more than 8 bits any colours.
Bytes PictureOf(std::int32_t width, std::int32_t height, int bits, const ColourAt& colourAt) {
    Bytes block(*PackedBitmapSize(width, height, bits));
    PaletteEntry palette[256] = {};
    for (std::size_t i = 0; i < 4; ++i) palette[i] = EntryOf(kColours[i]);
    std::uint8_t* const rows = WritePackedHeader(block.data(), width, height, bits, palette);
    for (std::int32_t y = 0; y < height; ++y) {
        std::uint8_t* const row = rows + PackedStride(width, bits) * (height - 1 - y);
        for (std::int32_t x = 0; x < width; ++x) {
            const std::uint32_t colour = colourAt(x, y);
            std::uint8_t* const at = row + std::ptrdiff_t{x} * bits / 8;
            std::uint32_t index = 0;
            while (bits <= 8 && kColours[index] != colour) ++index;
            if (bits <= 8)
                *at = static_cast<std::uint8_t>(*at | index << (8 - bits - x * bits % 8));
            for (int i = 0; bits > 8 && i < 3; ++i) {
                at[i] = static_cast<std::uint8_t>(colour >> 8 * i);
            }
        }
    }
    return block;
}

struct Place {
    const char* name;
    Matrix toPicture;
};
// From a page of 40 x 30 dots to a picture of 100 x 70.
const Place kPlaces[] = {
    {"reduced", {2.5, 0.0, 0.0, 2.4, -4.4, 1.7}},
    {"reduced a little", {1.3, 0.0, 0.0, 1.1, 0.0, 0.0}},
    {"mirrored", {-2.6, 0.0, 0.0, -2.2, 101.0, 69.5}},
    {"lying", {0.0, 2.3, 3.1, 0.0, -1.25, -2.5}},
    {"lying mirrored", {0.0, -1.9, -2.7, 0.0, 90.0, 66.0}},
    {"enlarged", {0.7, 0.0, 0.0, 0.6, -2.0, 1.0}},
    {"enlarged, lying", {0.0, 0.5, -0.6, 0.0, 30.0, 3.0}},
    {"turned", {1.6, 0.9, -0.9, 1.6, 20.0, 3.0}},
};

// The colours of a page whose dots were those of paperAt before.
std::vector<std::uint32_t> Drawn(const Bytes& picture, const Matrix& toPicture, PictureLook look,
                                 const ColourAt& paperAt) {
    Band band(40, 30);
    band.Start(0, 30);
    for (int i = 0; i < 1200; ++i) band.Row(0)[i].colour = paperAt(i % 40, i / 40);
    const auto view = PackedBitmapView::Parse(picture.data(), picture.size());
    DrawPicture(*view, toPicture, look, band, band.Bounds());
    std::vector<std::uint32_t> colours(1200);
    for (std::size_t i = 0; i < 1200; ++i) colours[i] = band.Row(0)[i].colour;
    return colours;
}

ColourAt Everywhere(std::uint32_t colour) {
    return [colour](std::int32_t, std::int32_t) { return colour; };
}

// Numbers without a pattern, the same in each run.
std::uint32_t Noise(std::int32_t x, std::int32_t y) {
    std::minstd_rand next(static_cast<std::uint32_t>(x * 1009 + y * 9176 + 1));
    return static_cast<std::uint32_t>(next() >> 7);
}

TEST(PictureSampler, DepthsLookAlike) {
    for (const std::uint32_t colours : {2U, 4U}) {
        const auto at = [&](std::int32_t x, std::int32_t y) {
            return kColours[Noise(x, y) % colours];
        };
        for (const Place& place : kPlaces) {
            for (const PictureLook look : {PictureLook{}, {12, true}, {8, false}, {6, true}}) {
                const auto as = [&](int bits) {
                    return Drawn(PictureOf(100, 70, bits, at), place.toPicture, look,
                                 Everywhere(0xE0FFC0));
                };
                const std::vector<std::uint32_t> expected = as(24);
                EXPECT_NE(expected, std::vector<std::uint32_t>(1200, 0xE0FFC0)) << place.name;
                for (const int bits : {1, 2, 4, 8, 32}) {
                    if (bits == 1 && colours > 2) continue;
                    EXPECT_EQ(as(bits), expected) << place.name << " " << bits << look.operation;
                }
            }
        }
    }
}

// Also where its neighbours are of other paper, and from place to place.
TEST(PictureSampler, ADotAsksForItsOwnPaperAlone) {
    const std::uint32_t papers[] = {0xFFFFFF, 0x123456};
    const auto paperAt = [&](std::int32_t x, std::int32_t y) { return papers[Noise(x, y) % 2]; };
    const Bytes picture =
        PictureOf(100, 70, 24, [](auto x, auto y) { return kColours[Noise(x, y) % 4]; });
    for (const Place& place : kPlaces) {
        for (const PictureLook look : {PictureLook{}, {12, true}, {8, false}, {6, true}}) {
            const auto mixed = Drawn(picture, place.toPicture, look, paperAt);
            for (const std::uint32_t paper : papers) {
                const auto plain = Drawn(picture, place.toPicture, look, Everywhere(paper));
                for (int i = 0; i < 1200; ++i) {
                    if (paperAt(i % 40, i / 40) != paper) continue;
                    EXPECT_EQ(mixed[static_cast<std::size_t>(i)],
                              plain[static_cast<std::size_t>(i)])
                        << place.name << look.operation;
                }
            }
        }
    }
}

// A quarter turn, a mirror and a matrix that is no exact one show the same dots elsewhere.
TEST(PictureSampler, DirectionsLookAlike) {
    const auto at = [](std::int32_t x, std::int32_t y) { return kColours[Noise(x, y) % 2]; };
    const auto turnedAt = [&](std::int32_t x, std::int32_t y) { return at(y, x); };
    for (const int bits : {1, 24}) {
        for (const double scale : {0.75, 1.5, 3.5}) {
            const auto drawn = [&](const Matrix& m, bool turned) {
                return Drawn(
                    turned ? PictureOf(70, 100, bits, turnedAt) : PictureOf(100, 70, bits, at), m,
                    {}, Everywhere(0xFFFFFF));
            };
            const auto upright = drawn({scale, 0.0, 0.0, scale, 0.0, 0.0}, false);
            EXPECT_EQ(drawn({0.0, scale, scale, 0.0, 0.0, 0.0}, true), upright) << bits << scale;
            EXPECT_EQ(drawn({scale, 1e-12, 1e-12, scale, 0.0, 0.0}, false), upright)
                << bits << scale;
            auto mirrored = drawn({-scale, 0.0, 0.0, -scale, 40 * scale, 30 * scale}, false);
            std::reverse(mirrored.begin(), mirrored.end());
            EXPECT_EQ(mirrored, upright) << bits << scale;
        }
    }
}

// More columns and rows than sums are kept of at once: a third is of one colour, the rest of
// another.
TEST(PictureSampler, OneDotTakesInAWholePicture) {
    const auto at = [](std::int32_t x, std::int32_t y) {
        return kColours[(x + y) % 3 == 0 ? 0 : 1];
    };
    for (const int bits : {1, 8, 24}) {
        const Bytes picture = PictureOf(6000, 300, bits, at);
        for (const Matrix& m : {Matrix{6000.0, 0.0, 0.0, 300.0, 0.0, 0.0},
                                Matrix{0.0, 300.0, 6000.0, 0.0, 0.0, 0.0}}) {
            EXPECT_EQ(Drawn(picture, m, {}, Everywhere(0x123456))[0], 0x6A8095U) << bits;
        }
    }
}

}  // namespace
}  // namespace qm::bitmap
