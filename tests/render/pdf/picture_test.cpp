// Pictures in PDF files: depth, colours, clear white, rows from the top.
#include <gtest/gtest.h>

#include "common/packed_bitmap.h"
#include "tests/render/pdf/pdf_reader.h"

namespace {

using namespace qm;

struct PictureCase {
    const char* name;
    int bits;
    std::vector<PaletteEntry> colours;  // blue first
    std::vector<std::uint8_t> rows;     // two of 3 dots, the bottom one first, padded
    int operation;                      // 252: white is clear, 204: it is not
    const char* entries;
    std::string stream;
    const char* content;
};

const PaletteEntry kWhite{255, 255, 255, 0};
const PaletteEntry kBlack{};
const PaletteEntry kRed{0, 0, 255, 0};
constexpr const char* kPlain = "q\n40 0 0 20 -5 7 cm\n/I1 Do\nQ\n";

// clang-format off
const PictureCase kPictures[] = {
    {"one bit, clear white: a stencil in the other colour", 1, {kWhite, kRed},
     {0x40, 0, 0, 0, 0xA0, 0, 0, 0}, 252, "/BitsPerComponent 1/ImageMask true/Decode[1 0]",
     "\xA0\x40", "1 0 0 rg\nq\n40 0 0 20 -5 7 cm\n/I1 Do\nQ\n"},
    {"one bit, white second", 1, {kBlack, kWhite}, {0x40, 0, 0, 0, 0xA0, 0, 0, 0}, 252,
     "/BitsPerComponent 1/ImageMask true/Filter", "\xA0\x40", kPlain},
    {"one bit, white covers", 1, {kWhite, kRed}, {0x40, 0, 0, 0, 0xA0, 0, 0, 0}, 204,
     "/BitsPerComponent 1/ColorSpace[/Indexed/DeviceRGB 1<FFFFFFFF0000>]/Filter", "\xA0\x40",
     kPlain},
    {"four bits, two whites become one", 4, {kRed, kWhite, kBlack, kWhite},
     {0x01, 0x20, 0, 0, 0x31, 0x30, 0, 0}, 252, "]/Mask[1 1]", std::string("\x11\x10\x01\x20"),
     kPlain},
    {"24 bits: differences to the left, red first", 24, {},
     {1, 2, 3, 4, 6, 8, 255, 255, 255, 0, 0, 0, 9, 9, 9, 9, 9, 9, 9, 9, 9, 0, 0, 0}, 252,
     "/BitsPerComponent 8/ColorSpace/DeviceRGB/Mask[255 255 255 255 255 255]/DecodeParms"
     "<</Predictor 15/Colors 3/Columns 3>>",
     std::string("\1\11\11\11\0\0\0\0\0\0", 10) + "\1\3\2\1\5\4\3\xF7\xF9\xFB", kPlain},
    {"16 bits become 24", 16, {}, {0, 0x7C, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}, 204,
     "/BitsPerComponent 8/ColorSpace/DeviceRGB/DecodeParms",
     std::string("\1\0\0\0\0\0\0\0\0\0\1\xFF\0\0\1\0\0\0\0\0", 20), kPlain},
};
// clang-format on

// A bitmap of 3 x 2 dots.
std::vector<std::uint8_t> Bitmap(int bits, std::vector<PaletteEntry> colours = {},
                                 const std::vector<std::uint8_t>& dots = {}) {
    std::vector<std::uint8_t> bitmap(*PackedBitmapSize(3, 2, bits));
    colours.resize(PackedColourCount(bits));
    std::copy(dots.begin(), dots.end(),
              WritePackedHeader(bitmap.data(), 3, 2, bits, colours.data()));
    return bitmap;
}

TEST(PdfPictures, KeepTheirDepth) {
    for (const PictureCase& row : kPictures) {
        SCOPED_TRACE(row.name);
        const auto bitmap = Bitmap(row.bits, row.colours, row.rows);
        DisplayList list;
        list.AppendRectangle({{0, 0}, {9, 9}}, true);
        list.AppendPicture({{35, 7}, {-5, 27}}, row.operation, {bitmap.data(), bitmap.size()});
        const PdfReader reader = Pdf(list);
        const PdfReader::Object& picture = reader.Find("/Subtype/Image/Width 3/Height 2");
        EXPECT_NE(picture.value.find(row.entries), std::string::npos) << picture.value;
        EXPECT_EQ(picture.stream, row.stream);
        EXPECT_EQ(reader.Content(),
                  "/OC/L0 BDC\n0 0 9 9 re\nf*\n" + std::string(row.content) + "EMC\n");
    }
}

TEST(PdfPictures, OnBarePaperNeedNoMaskAndWithoutAreaOrBitsAreLeftOut) {
    const auto block = Bitmap(24);
    DisplayList list;
    for (const std::int32_t x : {0, 10, 15}) {
        list.AppendPicture({{x, 0}, {x + 10, 10}}, 252, {block.data(), block.size()});
    }
    list.AppendPicture({{0, 0}, {9, 9}}, 252, {block.data(), 3});
    list.AppendPicture({{0, 0}, {9, 0}}, 252, {block.data(), block.size()});
    const PdfReader reader = Pdf(list);
    EXPECT_EQ(reader.Count("/Subtype/Image"), 3);
    EXPECT_EQ(reader.Count("/Mask["), 1);  // the one that lies over the second
}

}  // namespace
