// The document builder: what each drawing operation says to the host, and what a page end leaves.
#include "import/hpgl_reader.h"

#include <zlib.h>

#include <cstring>
#include <iomanip>
#include <sstream>

#include "common/packed_bitmap.h"
#include "host/display_list_player.h"
#include "platform/global_block.h"
#include "tests/host/host_test.h"
#include "tests/import/import_fixture.h"

namespace qm {
namespace {

// `lines` without the calls that every page and document of one page has.
std::string Special(std::string_view lines) {
    std::istringstream all{std::string(lines)};
    std::string special;
    for (std::string line; std::getline(all, line);) {
        bool usual = false;
        for (const char* part : {" created",
                                 " 1203 ",
                                 "TransparentColor",
                                 "EndOfData",
                                 "IsEmpty",
                                 "\"NodeID\"",
                                 "\"Loaded\"",
                                 "\"Lpi",
                                 "\"DirectionY\"",
                                 "\"Layers\"",
                                 "\"PenTable\"",
                                 "LineStyle 0",
                                 "LineWidth 0",
                                 "result S_OK",
                                 "document ",
                                 "AddChild \"Page 1\"",
                                 "container1 PutAttribute \"Default\" true",
                                 "\"TotalNodes\" 1 2",
                                 "AddLayer 1 \"Layer no.: 1\" 0x000000 1",
                                 "AddPen 1 0xFFFFFFFF -1.0 0xFFFFFFFF"}) {
            usual = usual || line.find(part) != std::string::npos;
        }
        if (!usual) special += line + '\n';
    }
    return special;
}

struct Row {
    const char* name;
    const char* plot;
    const char* lines;
};

// clang-format off
const Row kRows[] = {
    {"a negative pen is pen 0", "SP-5;PD1,1;",
     "block1 AppendDrawColor1 0 0 0\nblock1 AppendFillColor1 0 0 0\nblock1 AppendLayer 0\n"
     "block1 AppendPen 0\nblock1 AppendLine 0 0 1 1\n"
     "layers1 AddLayer 0 \"Layer no.: 0\" 0x000000 1\n"
     "pentable1 AddPen 0 0xFFFFFFFF -1.0 0xFFFFFFFF\n"},
    {"a layer keeps the colour of its first use", "PC255,18,52,86;SP255;PC255,1;SP255;CI3;",
     "block1 AppendDrawColor1 18 52 86\nblock1 AppendFillColor1 18 52 86\nblock1 AppendLayer 255\n"
     "block1 AppendPen 255\nblock1 AppendDrawColor1 1 0 0\nblock1 AppendFillColor1 1 0 0\n"
     "block1 AppendDrawColor1 1 0 0\nblock1 AppendFillColor1 1 0 0\nblock1 AppendLayer 255\n"
     "block1 AppendPen 255\nblock1 AppendCircle 0 0 3 0\n"
     "layers1 AddLayer 255 \"Layer no.: 255\" 0x563412 1\n"
     "pentable1 AddPen 255 0xFFFFFFFF -1.0 0xFFFFFFFF\n"},
    {"the frame offset moves shapes and pictures, and wraps",
     "FR100;PU1,2;PD3,-2147483548;PU1,2;EA3,4;RA3,4;PU0,0;CI7;PU7,0;AR-7,0,180;\033%0A\033*t1016R"
     "\033*r8s3T\033*b1W\xF0\033*b1W\x0F\033*b1W\xAA\033%0B",
     "block1 AppendLine 1 -98 3 -2147483648\nblock1 AppendRectangle 1 -98 3 -96 0\n"
     "block1 AppendRectangle 1 -98 3 -96 1\nblock1 AppendCircle 0 -100 7 0\n"
     "block1 AppendLine 7 -100 7 -100\nblock1 AppendArc3 0 -100 7 7 0.0 180.0\n"
     "block1 AppendLine -7 -100 -7 -100\n"
     "block1 AppendDib -7 -100 0 -96 60 0 8x3x1 crc32=2FE77D21\n"
     "container1 PutAttribute \"UseBitmapPrinting\" true 0\n"},
    {"it moves points", "FR5;PU0,5;PM0;PD10,5,10,15;PM2;FP;EP;PU20,5;PM0;PD30,5,30,9;PM1;PU1,5;"
     "PD2,5,2,6;PM2;FP;",
     "block1 AppendPolygon 4 1 : 0,0 10,0 10,10 0,0\n"
     "block1 AppendPolygon 4 0 : 0,0 10,0 10,10 0,0\n"
     "block1 AppendPolyPolygon 2 4 3 7 1 : 20,0 30,0 30,4 20,0 1,0 2,0 2,1\n"},
    {"a label's box holds its strokes after the offset, and ends with it",
     "FR10;LB-\xA0\003PD9000,0;LB\n\003",
     "block1 AppendLine 10 50 50 50\nblock1 AppendTextElement 10 50 50 50 0 0 0 \"-\\xA0\"\n"
     "block1 AppendLine 168 -10 9000 -10\n"
     "block1 AppendTextElement 2147483647 2147483647 -2147483648 -2147483648 0 0 0 \"\"\n"
     "container1 PutAttribute \"SearchAble\" true 0\n"},
    {"state alone leaves the page empty",
     "UL2,40,20;LT2;LA1,2,2,5;RF1,8,1,0,1,0,1,0,1,0,1;FT11,1;MC1,168;LT;LT99;PW0.35;",
     "block1 AppendLineDash 2 : 40 20\nblock1 AppendLineAttributes 0x1100\n"
     "block1 DefineFillPattern 1 8 1 2 : AAFF\nblock1 AppendDrawMode 9\n"
     "block1 AppendLineStyle -32768\nblock1 AppendLineWidth 14\n"
     "contents PutAttribute \"TotalNodes\" 0 2\n"},
    {"fill styles", "FT11,1;PM0;PD9,0,9,9;PM2;FP;",
     "block1 AppendFillStyle 3 1\nblock1 AppendPolygon 4 1 : 0,0 9,0 9,9 0,0\n"
     "block1 AppendFillStyle 0 0\n"},
    {"pages start clean, but a searchable document stays one",
     "RO90;SP3;FR50;LB \003PD1,1;PG;RO;PD2,2;",
     "block1 AppendDrawColor1 0 255 0\nblock1 AppendFillColor1 0 255 0\nblock1 AppendLayer 3\n"
     "block1 AppendPen 3\n"
     "block1 AppendTextElement 2147483647 2147483647 -2147483648 -2147483648 0 0 0 \" \"\n"
     "block1 AppendLine 84 -50 1 -49\nlayers1 AddLayer 3 \"Layer no.: 3\" 0x00FF00 1\n"
     "pentable1 AddPen 3 0xFFFFFFFF -1.0 0xFFFFFFFF\n"
     "container1 PutAttribute \"SearchAble\" true 0\n"
     "container1 PutAttribute \"InitialRotation\" 90.0 0\nblock2 AppendDrawColor1 0 0 0\n"
     "block2 AppendFillColor1 0 0 0\nblock2 AppendLine 1 1 2 2\n"
     "contents AddChild \"Page 2\" container2 0\ncontainer2 PutAttribute \"SearchAble\" true 0\n"
     "contents PutAttribute \"TotalNodes\" 2 2\n"},
    {"empty pages are counted, so that no page is the default one",
     "IW0,0,1,1;PU5,5;PD6,6;PG;PU5,5;PD6,6;PG;IW;PD1,1;",
     "block2 AppendDrawColor1 0 0 0\nblock2 AppendFillColor1 0 0 0\n"
     "block3 AppendDrawColor1 0 0 0\nblock3 AppendFillColor1 0 0 0\nblock3 AppendLine 6 6 1 1\n"
     "contents AddChild \"Page 3\" container3 0\ncontents PutAttribute \"TotalNodes\" 3 2\n"},
};
// clang-format on

// What plots make the builder say behind the selection of pen 1; its layer and pen are usual.
TEST(Builder, Says) {
    for (const Row& row : kRows) {
        const std::string trace = Trace(PlotOf(row.plot));
        const std::string special = Special(trace.substr(trace.find("AppendPen 1\n") + 12));
        EXPECT_EQ(special, row.lines) << row.name;
    }
}

// A 2 x 1 picture of one bit in a block with room behind it, as the system may hand out.
HGLOBAL SmallPicture() {
    const PaletteEntry palette[] = {{255, 255, 255, 0}, {0, 0, 0, 0}};
    GlobalBlock block = GlobalBlock::Allocate(*PackedBitmapSize(2, 1, 1) + 16);
    *WritePackedHeader(GlobalView(block.Get()).Data(), 2, 1, 1, palette) = 0x80;
    return block.Detach();
}

const std::int32_t kOneRing[] = {3};

TEST(Builder, SaysWhatNoPlotMakesItSay) {
    std::string lines;
    const TraceHost host([&lines](std::string_view line) {
        lines.append(line).append("\n");
        return S_OK;
    });
    HPGLReader reader(MemoryStream(""));
    reader.BeginDocument(host.MakeDocument(), CreatePage(kFirstBlock), nullptr);
    lines.clear();
    reader.SetFrameOffset(100);
    reader.BeginRasterClip(0, 0, 5, 6);
    reader.Raster(9, 8, 7, 110, SmallPicture(), 1, 252);
    reader.Raster(0, 0, 1, 1, nullptr, 0, 252);
    reader.EndRasterClip();
    PointI stroke[] = {{-7, 3}, {2, 140}};
    reader.BeginLabelExtent("a", 0.0, 100, 0);
    reader.Polyline(2, stroke);
    reader.EndLabelExtent("a");
    reader.SetPen(256);
    reader.Polyline(0, nullptr);
    reader.DefineFillPattern(1, 8, 1, 0, nullptr);
    EXPECT_EQ(lines,
              "block1 AppendClipRegion 5 : 0,0 5,0 5,6 0,6 0,0\n"
              "block1 AppendDib 7 -92 9 10 52 252 2x1x1 crc32=0F04182A\nblock1 EndClipRegion\n"
              "block1 AppendPolygon 2 0 : -7,-97 2,40\n"
              "block1 AppendTextElement -7 -97 2 40 0 0 0 \"a\"\n"
              "block1 AppendPolygon 0 0 :\nblock1 DefineFillPattern 1 8 1 0 :\n");
}

// What our own host got, in the words of the trace; of pictures the checksum.
class Heard final : public DisplayListVisitor {
  public:
    void Lines(const DrawingStyle&, PointSpan points) override {
        for (std::size_t i = 1; i < points.count; ++i) {
            said << "block1 AppendLine " << points[i - 1].x << ' ' << points[i - 1].y << ' '
                 << points[i].x << ' ' << points[i].y << '\n';
        }
    }
    void Picture(const DrawingStyle&, const BoxI& box, std::int32_t operation,
                 ByteRun dib) override {
        const auto crc = crc32(0, dib.data, static_cast<uInt>(dib.size));
        said << "block1 AppendDib " << box.a.x << ' ' << box.a.y << ' ' << box.b.x << ' ' << box.b.y
             << ' ' << dib.size << ' ' << operation << " crc32=" << std::uppercase << std::hex
             << std::setw(8) << std::setfill('0') << crc << std::dec << '\n';
    }
    std::ostringstream said;
};

// The embedded host is given at once what others hear call by call.
TEST_F(HostTest, IsHandedWhatTheBuilderSays) {
    CoInitialize(nullptr);  // the class of the filter outlives the classes of a host
    for (const char* plot :
         {"PU9,9;LBfree\003", "IW10,0,150,60;PU9,9;LBcut\003", "FR5;PU1,1;LBlower\003",
          "FR7;PU1,1;\033%0A\033*t1016R\033*r8s3T\033*b1W\xF0\033*b1W\x0F\033*b1W\xAA\033%0B"}) {
        classes_.reset();  // the trace has a host of its own
        std::istringstream trace(Trace(PlotOf(plot)));
        classes_ = std::make_unique<HostClasses>();
        std::string expected;
        for (std::string line; std::getline(trace, line);) {
            if (line.find("AppendLine ") != line.npos) expected += line + '\n';
            if (const auto size = line.find(" 8x3x1"); size != line.npos) {
                expected += line.erase(size, 6) + '\n';
            }
        }
        Heard heard;
        Play(Pages(plot).at(0).Drawing(), heard);
        EXPECT_EQ(heard.said.str(), expected) << plot;
    }
    CoUninitialize();
}

TEST(Builder, WithoutAHostNothingHappens) {
    HPGLReader reader{MemoryStream("")};
    PointI triangle[] = {{0, 5}, {10, 5}, {10, 15}};
    reader.SetPen(1);
    reader.Line(0, 0, 1, 1);
    reader.FilledPolygon(3, triangle);
    reader.FilledPolyPolygon(triangle, kOneRing, 1);
    reader.EndLabelExtent("text");
    reader.SetLineType(1, kOneRing);
    reader.Raster(0, 0, 1, 1, SmallPicture(), 0, 0);  // freed all the same
    reader.EndPage(1);
    EXPECT_EQ(reader.ReportProgress(50), 1);
    LONG pages = 0;
    EXPECT_TRUE(FAILED(reader.FinishLastPage(pages)));
}

TEST(Builder, ReadsStreamsAndFilesAlike) {
    TemporaryFile file = TemporaryFile::Create(L"qmt");
    {
        const FileHandle target(CreateFileW(file.Path().c_str(), GENERIC_WRITE, 0, nullptr,
                                            CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
        DWORD written = 0;
        ASSERT_TRUE(WriteFile(target.Get(), "abcdef", 6, &written, nullptr));
    }
    HPGLReader fromFile(FileHandle::OpenForReading(file.Path().c_str()));
    HPGLReader fromStream{MemoryStream("abcdef")};
    fromStream.SeekData(0, 0);
    for (HPGLReader* reader : {&fromFile, &fromStream}) {
        char bytes[8] = {};
        EXPECT_EQ(reader->GetDataSize(), 6U);
        EXPECT_EQ(reader->ReadData(bytes, 4), 4U);
        EXPECT_EQ(reader->SeekData(-1, 1), 3U);
        EXPECT_EQ(reader->ReadData(bytes, 8), 3U);
        EXPECT_STREQ(bytes, "defd");
        EXPECT_EQ(reader->SeekData(-2, 2), 4U);
        EXPECT_EQ(reader->SeekData(1, 7), 1U);
    }
}

}  // namespace
}  // namespace qm
