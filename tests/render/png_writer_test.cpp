// PNG bytes are decoded again by zlib and compared; Base64 against the examples of RFC 4648.
#include "render/png_writer.h"

#include <gtest/gtest.h>

#include "render/base64_sink.h"
#include "tests/render/memory_sink.h"
#include "tests/render/png_reader.h"

namespace {

using namespace qm;

std::string PictureAsPng(const std::vector<std::uint8_t>& bitmap, bool whiteIsClear) {
    MemorySink sink;
    WritePicture(*PackedBitmapView::Parse(bitmap.data(), bitmap.size()), whiteIsClear, sink);
    return sink.text;
}

TEST(PngWriter, KeepsIndexedPicturesAsTheyAre) {
    std::vector<std::uint8_t> bitmap(*PackedBitmapSize(10, 2, 1));
    const PaletteEntry colours[] = {{255, 255, 255, 0}, {10, 20, 30, 0}};
    std::uint8_t* const rows = WritePackedHeader(bitmap.data(), 10, 2, 1, colours);
    rows[0] = 0x0F;  // the bottom row
    rows[4] = 0xA5;
    rows[5] = 0x80;
    auto chunks = PngChunks(PictureAsPng(bitmap, true));
    EXPECT_EQ(chunks["IHDR"], std::string("\0\0\0\x0a\0\0\0\2\1\3\0\0\0", 13));
    EXPECT_EQ(chunks["PLTE"], "\xff\xff\xff\x1e\x14\x0a");
    EXPECT_EQ(chunks["tRNS"], std::string("\0\xff", 2));
    EXPECT_EQ(Inflated(chunks["IDAT"], 6), std::string("\0\xa5\x80\0\x0f\0", 6));
    EXPECT_EQ(PngChunks(PictureAsPng(bitmap, false)).count("tRNS"), 0U);
}

TEST(PngWriter, TrueColoursAreRedFirstAndFiltered) {
    std::vector<std::uint8_t> bitmap(*PackedBitmapSize(2, 1, 24));
    std::uint8_t* const row = WritePackedHeader(bitmap.data(), 2, 1, 24, nullptr);
    const std::uint8_t dots[] = {1, 2, 3, 11, 22, 2};  // blue, green, red
    std::copy(std::begin(dots), std::end(dots), row);
    auto chunks = PngChunks(PictureAsPng(bitmap, true));
    EXPECT_EQ(chunks["IHDR"].substr(8), std::string("\x08\2\0\0\0", 5));
    EXPECT_EQ(chunks["tRNS"], std::string("\0\xff\0\xff\0\xff", 6));
    EXPECT_EQ(Inflated(chunks["IDAT"], 7), std::string("\1\3\2\1\xff\x14\x0a", 7));
}

TEST(PngWriter, LargePicturesAreSeveralChunks) {
    constexpr std::int32_t kSide = 700;
    PngHeader header;
    header.width = kSide;
    header.height = kSide;
    header.dotsPerInch = 254.0;
    MemorySink sink;
    PngWriter writer(header, sink);
    std::string expected;
    std::vector<std::uint8_t> row(3 * kSide);
    std::uint32_t noise = 1;
    for (std::int32_t y = 0; y < kSide; ++y) {
        for (std::uint8_t& byte : row) byte = static_cast<std::uint8_t>((noise *= 69069U) >> 24);
        writer.WriteRow(row.data());
        expected += '\1';
        for (std::size_t i = 0; i < row.size(); ++i) {
            expected += static_cast<char>(row[i] - (i < 3 ? 0 : row[i - 3]));
        }
    }
    writer.Finish();
    auto chunks = PngChunks(sink.text);
    EXPECT_EQ(chunks["pHYs"], std::string("\0\0\x27\x10\0\0\x27\x10\1", 9));
    EXPECT_TRUE(Inflated(chunks["IDAT"], expected.size()) == expected);
}

TEST(Base64, PadsAsTheStandardSays) {
    const std::pair<const char*, const char*> rows[] = {
        {"", ""},        {"f", "Zg=="},        {"fo", "Zm8="},
        {"foo", "Zm9v"}, {"foob", "Zm9vYg=="}, {"\xff\xfe\xfd", "//79"}};
    for (const auto& [bytes, text] : rows) {
        MemorySink sink;
        TextBuffer out(sink);
        Base64Sink base64(out);
        base64.Write(bytes);
        base64.Finish();
        out.Flush();
        EXPECT_EQ(sink.text, text);
    }
}

}  // namespace
