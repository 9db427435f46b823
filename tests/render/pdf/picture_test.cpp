// Pictures in PDF files: depth, colours, clear white, rows from the top.
#include <gtest/gtest.h>

#include "common/packed_bitmap.h"
#include "host/display_list.h"
#include "render/page_writers.h"
#include "tests/render/memory_sink.h"
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

void PrintTo(const PictureCase& row, std::ostream* out) { *out << row.name; }

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

class PdfPictures : public testing::TestWithParam<PictureCase> {};

TEST_P(PdfPictures, KeepTheirDepth) {
    const PictureCase& row = GetParam();
    std::vector<std::uint8_t> bitmap(*PackedBitmapSize(3, 2, row.bits));
    std::vector<PaletteEntry> colours = row.colours;
    colours.resize(PackedColourCount(row.bits));
    std::uint8_t* const rows = WritePackedHeader(bitmap.data(), 3, 2, row.bits, colours.data());
    std::copy(row.rows.begin(), row.rows.end(), rows);
    DisplayList list;
    list.AppendRectangle({{0, 0}, {9, 9}}, true);
    list.AppendPicture({{35, 7}, {-5, 27}}, row.operation, {bitmap.data(), bitmap.size()});
    PageSource page;
    page.drawing = &list;
    MemorySink sink;
    WritePdf({page}, {}, sink);
    const PdfReader reader(sink.text);
    const PdfReader::Object& picture = reader.Find("/Subtype/Image/Width 3/Height 2");
    EXPECT_NE(picture.value.find(row.entries), std::string::npos) << picture.value;
    EXPECT_EQ(picture.stream, row.stream);
    EXPECT_EQ(reader.Content(),
              "/OC/L0 BDC\n0 0 9 9 re\nf*\n" + std::string(row.content) + "EMC\n");
}

INSTANTIATE_TEST_SUITE_P(PdfWriter, PdfPictures, testing::ValuesIn(kPictures));

TEST(PdfPictures, OnBarePaperNeedNoMask) {
    std::vector<std::uint8_t> block(*PackedBitmapSize(3, 2, 24));
    WritePackedHeader(block.data(), 3, 2, 24, nullptr);
    DisplayList list;
    for (const std::int32_t x : {0, 10, 15}) {
        list.AppendPicture({{x, 0}, {x + 10, 10}}, 252, {block.data(), block.size()});
    }
    PageSource page;
    page.drawing = &list;
    MemorySink sink;
    WritePdf({page}, {}, sink);
    const PdfReader reader(sink.text);
    EXPECT_EQ(reader.Count("/Subtype/Image"), 3U);
    EXPECT_EQ(reader.Count("/Mask["), 1U);  // the one that lies over the second
}

TEST(PdfPictures, WithoutAreaOrBitsAreLeftOut) {
    const std::uint8_t noBitmap[] = {1, 2, 3};
    DisplayList list;
    list.AppendLine({0, 0}, {9, 9});
    list.AppendPicture({{0, 0}, {9, 9}}, 252, {noBitmap, 3});
    std::vector<std::uint8_t> bitmap(*PackedBitmapSize(3, 2, 1));
    WritePackedHeader(bitmap.data(), 3, 2, 1, nullptr);
    list.AppendPicture({{0, 0}, {9, 0}}, 252, {bitmap.data(), bitmap.size()});
    PageSource page;
    page.drawing = &list;
    MemorySink sink;
    WritePdf({page}, {}, sink);
    EXPECT_EQ(PdfReader(sink.text).Count("/Subtype/Image"), 0U);
}

}  // namespace
