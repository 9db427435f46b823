// The raster sink, byte for byte, and the refusals of its storage.
#include "export/save_raster_data.h"
#include "tests/export/exported.h"

namespace qm {
namespace {

const char* const kReset = "attribute DirectionY true\nobject 1202\n";

std::string RasterBody(const std::string& calls) {
    const ExportResult result = Exported(kReset + calls + "\nend\n", ReplayFormat::kHprtl);
    EXPECT_EQ(result.messages, "");
    return Between(result.bytes, plot_text::kRasterHeader, plot_text::kRasterTrailer);
}

std::string Bytes(std::initializer_list<int> values) {
    std::string bytes;
    for (const int value : values) bytes += static_cast<char>(value);
    return bytes;
}

std::string Hex(const std::string& bytes) {
    static const char* const kDigits = "0123456789ABCDEF";
    std::string hex;
    for (const char byte : bytes) {
        hex += kDigits[static_cast<unsigned char>(byte) >> 4];
        hex += kDigits[static_cast<unsigned char>(byte) & 15];
    }
    return hex;
}

const std::string kBlackWhite = "\033*v0a0b0c0I\033*v255a255b255c1I";
const std::string kEnd = "\033*p1P\033*rC\033%1B";

TEST(RasterSink, OneBitLandscape) {
    // 100 x 50 at 100 dpi; row 0 is all ones, row 1 starts with A5, the rest is empty.
    std::string rows(26, '\xFF');
    rows.replace(13, 13, "\xA5" + std::string(12, '\0'));
    std::string expected =
        "PS1016,508;\r\nIP0,0,508,1016;SCSP1;\r\n"
        "PU;PA0,0;\033%1A\033*p0P\033*r100s50T\033*t720h360V\033*v6W" +
        Bytes({0, 1, 1, 8, 8, 8}) + kBlackWhite + "\033*r3A" + "\033*b2m2W" + Bytes({244, 255}) +
        "\033*b2m4W" + Bytes({0, 0xA5, 245, 0});
    for (int y = 2; y < 50; ++y) expected += "\033*b2m2W" + Bytes({244, 0});
    EXPECT_EQ(
        RasterBody("CreateRasterStorage 100 50 1 0 100 100 0\nAddScanline1 0 0 2 13 " + Hex(rows)),
        expected + kEnd);
}

TEST(RasterSink, EightBitIsTurnedUnlessWider) {
    std::string palette;
    for (int i = 0; i < 256; ++i) {
        const std::string colour = i == 0 ? "3a2b1c" : i == 1 ? "6a5b4c" : "0a0b0c";
        palette += "\033*v" + colour + std::to_string(i) + "I";
    }
    // Square, 2 x 2: turned by 180 degrees and placed right of a box of 3 dots.
    EXPECT_EQ(RasterBody("CreateRasterStorage 2 2 8 0 100 72 2 010203 040506\n"
                         "AddScanline1 5 1 1 2 0304\nAddScanline1 5 0 1 2 0102"),
              "PS20,20;\r\nIP0,0,20,20;SCSP1;\r\n"
              "PU;PA30,0;\033%1A\033*p0P\033*r2s2T\033*t14h14V\033*v6W" +
                  Bytes({0, 1, 8, 8, 8, 8}) + palette + "\033*r3A" +
                  "\033*b0m2W\4\3\033*b0m2W\2\1" + kEnd);
}

TEST(RasterSink, PortraitPosition) {
    const std::string body = RasterBody("CreateRasterStorage 50 100 24 0 100 100 0\n");
    EXPECT_EQ(body.substr(0, 49), "PS508,1016;\r\nIP0,0,1016,508;SCSP1;\r\nPU;PA518,0;\033%");
}

TEST(RasterSink, TwentyFourBits) {
    // Blue, green, red come in; red, green, blue go out. Short rows are black to the right.
    EXPECT_EQ(RasterBody("CreateRasterStorage 3 2 24 0 300 300 0\n"
                         "AddScanline1 1 0 1 9 010203040506070809\nAddScanline1 1 1 1 3 0A0B0C"),
              "PS10,7;\r\nIP0,0,7,10;SCSP1;\r\n"
              "PU;PA0,0;\033%1A\033*p0P\033*r3s2T\033*t7h4V\033*v18W" +
                  Bytes({0, 3, 8, 8, 8, 8, 0, 255, 0, 255, 0, 255, 0, 0, 0, 0, 0, 0}) +
                  "\033*r3A\033*b0m9W" + Bytes({3, 2, 1, 6, 5, 4, 9, 8, 7}) + "\033*b2m6W" +
                  Bytes({2, 12, 11, 10, 251, 0}) + kEnd);
}

TEST(RasterSink, OtherDepthsEndInRasterMode) {
    for (const std::string bits : {"4", "16", "32"}) {
        EXPECT_EQ(RasterBody("CreateRasterStorage 2 1 " + bits +
                             " 0 1016 1 0\n"
                             "AddScanline1 2 0 1 1 FF"),
                  "PS2,1;\r\nIP0,0,1,2;SCSP1;\r\n"
                  "PU;PA0,0;\033%1A\033*p0P\033*r2s1T\033*t1h0V")
            << bits;
    }
}

TEST(RasterSink, VectorExportDropsPictures) {
    const ExportResult result = Exported(
        "object 1202\nCreateRasterStorage 2 2 8 0 0 0 0\nAddScanline1 5 0 1 2 0102\nend\n");
    EXPECT_EQ(result.bytes, "BPINSP1;TR0;\r\nPU;PG;");
    EXPECT_EQ(result.messages, "");
}

TEST(RasterSink, RowsOfThePrivateHandoverAreWrittenAsTheyCome) {
    const auto stream = MakeObject<RecordingStream>();
    ExportSettings settings;
    settings.stream = ComPtr<IStream>(stream.Get());
    settings.rasterMode = true;
    const auto sink = MakeObject<CQmSaveRasterData>(settings);
    for (const PictureHead& whole : {PictureHead{2, 2, 24, 300, {}}, {3, 2, 4, 300, {}}}) {
        EXPECT_EQ(sink->BeginPicture(whole), S_FALSE);
    }
    EXPECT_EQ(sink->AddRow(nullptr), E_FAIL);
    EXPECT_TRUE(stream->Writes().empty());
    const std::string dots = Bytes({1, 2, 3, 4, 5, 6, 7, 8, 9});
    const auto* const row = reinterpret_cast<const BYTE*>(dots.data());
    ASSERT_EQ(sink->BeginPicture({3, 1, 24, 300, {}}), S_OK);
    EXPECT_EQ(sink->AddRow(row), S_OK);
    EXPECT_EQ(stream->Writes().back(), Bytes({3, 2, 1, 6, 5, 4, 9, 8, 7}));
    EXPECT_EQ(sink->AddRow(row), E_FAIL);
    EXPECT_EQ(sink->EndObject(), S_OK);
    EXPECT_EQ(stream->Bytes(), RasterBody("CreateRasterStorage 3 1 24 0 300 300 0\n"
                                          "AddScanline1 1 0 1 9 010203040506070809"));
    ASSERT_EQ(sink->BeginPicture({3, 1, 24, 300, {}}), S_OK);
    EXPECT_EQ(sink->EndObject(), E_FAIL) << "a row is missing";
}

// What is refused, and that a refusal leaves no picture behind where there was none before.
TEST(RasterSink, Refusals) {
    const std::string made = "CreateRasterStorage 4 2 8 0 100 100 0\n";
    const std::vector<ScriptRow> rows = {
        {"no storage", "", "3: EndObject returned E_FAIL"},
        {"rows without storage", "AddScanline1 0 0 1 1 00\n", "3: AddScanline1 returned E_FAIL"},
        {"depth 2", "CreateRasterStorage 1 1 2 0 1 1 0\n",
         "3: CreateRasterStorage returned E_FAIL"},
        {"depth 257", "CreateRasterStorage 1 1 257 0 1 1 0\n",
         "3: CreateRasterStorage returned E_FAIL"},
        {"dpi 0", "CreateRasterStorage 1 1 8 0 0 1 0\n", "3: CreateRasterStorage returned E_FAIL"},
        {"dpi below 0", "CreateRasterStorage 1 1 8 0 -1 1 0\n",
         "3: CreateRasterStorage returned E_FAIL"},
        {"no width", "CreateRasterStorage 0 1 8 0 1 1 0\n",
         "3: CreateRasterStorage returned E_INVALIDARG"},
        {"negative height", "CreateRasterStorage 1 -1 8 0 1 1 0\n",
         "3: CreateRasterStorage returned E_INVALIDARG"},
        {"too large", "CreateRasterStorage 2147483647 2147483647 32 0 1 1 0\n",
         "3: CreateRasterStorage returned E_OUTOFMEMORY"},
        {"first row above", made + "AddScanline1 5 -1 1 4 00000000\n",
         "4: AddScanline1 returned E_INVALIDARG"},
        {"last row below", made + "AddScanline1 5 1 2 4 0000000000000000\n",
         "4: AddScanline1 returned E_INVALIDARG"},
        {"far below", made + "AddScanline1 5 2147483647 2 4 0000000000000000\n",
         "4: AddScanline1 returned E_INVALIDARG"},
        {"negative count", made + "AddScanline1 5 0 -1 4\n",
         "4: AddScanline1 returned E_INVALIDARG"},
        {"negative length", made + "AddScanline1 5 0 1 -4\n",
         "4: AddScanline1 returned E_INVALIDARG"},
    };
    for (const ScriptRow& row : rows) {
        const ExportResult result = Exported(kReset + row.script + "end\n", ReplayFormat::kHprtl);
        EXPECT_EQ(result.messages.substr(0, result.messages.find('\n')), "test:" + row.expected)
            << row.name;
        EXPECT_EQ(result.status, 1) << row.name;
    }
}

TEST(RasterSink, RowsAreCutAndRewritten) {
    const std::string start = "CreateRasterStorage 4 1 8 0 1016 1 0\n";
    const auto row = [&](const std::string& calls) {
        const std::string body = RasterBody(start + calls);
        const std::size_t from = body.find("\033*r3A") + 5;
        return body.substr(from, body.find("\033*p1P") - from);
    };
    EXPECT_EQ(row("AddScanline1 5 0 1 6 010203040506"), "\033*b0m4W\1\2\3\4");
    EXPECT_EQ(row("AddScanline1 5 0 1 4 01020304\nAddScanline1 5 0 1 2 0909"),
              "\033*b0m4W" + Bytes({9, 9, 0, 0}));
    EXPECT_EQ(row("AddScanline1 5 0 1 0"), "\033*b2m2W" + Bytes({253, 0}));
    // A new storage starts anew; what is not implemented changes nothing.
    EXPECT_EQ(row("AddScanline1 5 0 1 4 01020304\n" + start +
                  "AddScanline2 5 0 1 4 01020304\n"
                  "StartPolyClipRegion 1 2 true\nAppendPolyClipRegion 1 : 1,1"),
              "\033*b2m2W" + Bytes({253, 0}));
}

}  // namespace
}  // namespace qm
