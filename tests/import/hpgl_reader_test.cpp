// The document builder: what each drawing operation says to the host, and what a page end leaves.
#include "import/hpgl_reader.h"

#include <cstring>
#include <functional>

#include "common/packed_bitmap.h"
#include "platform/global_block.h"
#include "tests/import/import_fixture.h"

namespace qm {
namespace {

using Work = std::function<void(HPGLReader&)>;

// What `work` makes the builder say, from the first page's block to the end of the last page,
// without the calls that every page has.
std::vector<std::string> Built(const Work& work) {
    std::vector<std::string> lines;
    TraceHost host([&lines](std::string_view line) {
        for (const char* usual :
             {" created", " 1203 ", "TransparentColor", "EndOfData", "IsEmpty", "\"NodeID\"",
              "\"Loaded\"", "\"Lpi", "\"DirectionY\"", "\"Layers\"", "\"PenTable\""}) {
            if (line.find(usual) != std::string_view::npos) return S_OK;
        }
        lines.emplace_back(line);
        return S_OK;
    });
    HPGLReader reader(MemoryStream(""));
    reader.BeginDocument(host.MakeDocument(), CreatePage(kFirstBlock), nullptr);
    work(reader);
    LONG pages = 0;
    EXPECT_EQ(reader.FinishLastPage(pages), S_OK);
    lines.push_back("pages " + std::to_string(pages));
    return lines;
}

// A 2 x 1 picture of one bit in a block with room behind it, as the system may hand out.
HGLOBAL SmallPicture() {
    const PaletteEntry palette[] = {{255, 255, 255, 0}, {0, 0, 0, 0}};
    GlobalBlock block = GlobalBlock::Allocate(*PackedBitmapSize(2, 1, 1) + 16);
    *WritePackedHeader(GlobalView(block.Get()).Data(), 2, 1, 1, palette) = 0x80;
    return block.Detach();
}

struct Row {
    const char* name;
    Work work;
    std::vector<std::string> lines;
};
void PrintTo(const Row& row, std::ostream* out) { *out << row.name; }

class BuilderTest : public testing::TestWithParam<Row> {};
TEST_P(BuilderTest, Says) { EXPECT_EQ(Built(GetParam().work), GetParam().lines); }

const std::int32_t kOneRing[] = {3};

// clang-format off
INSTANTIATE_TEST_SUITE_P(Operations, BuilderTest, testing::Values(
    Row{"a negative pen is pen 0, one above 255 is none",
        [](HPGLReader& r) { r.SetPen(-5); r.SetPen(256); r.SetPen(INT32_MAX); r.Line(0, 0, 1, 1); },
        {"block1 AppendLayer 0", "block1 AppendPen 0", "block1 AppendLine 0 0 1 1",
         "document AddChild \"Page 1\" container1 0", "layers1 AddLayer 0 \"Layer no.: 0\" 0x000000 1",
         "pentable1 AddPen 0 0xFFFFFFFF -1.0 0xFFFFFFFF",
         "container1 PutAttribute \"Default\" true 0", "pages 1"}},
    Row{"a layer keeps the colour of its first use",
        [](HPGLReader& r) { r.SetColor(0x123456); r.SetPen(255); r.SetColor(1); r.SetPen(255); r.Circle(1, 2, 3); },
        {"block1 AppendDrawColor1 86 52 18", "block1 AppendFillColor1 86 52 18",
         "block1 AppendLayer 255", "block1 AppendPen 255",
         "block1 AppendDrawColor1 1 0 0", "block1 AppendFillColor1 1 0 0",
         "block1 AppendLayer 255", "block1 AppendPen 255", "block1 AppendCircle 1 2 3 0",
         "document AddChild \"Page 1\" container1 0", "layers1 AddLayer 255 \"Layer no.: 255\" 0x123456 1",
         "pentable1 AddPen 255 0xFFFFFFFF -1.0 0xFFFFFFFF",
         "container1 PutAttribute \"Default\" true 0", "pages 1"}},
    Row{"the frame offset moves shapes and pictures, not clip regions, and wraps",
        [](HPGLReader& r) {
            r.SetFrameOffset(100);
            r.Line(1, 2, 3, INT32_MIN);
            r.Rectangle(1, 2, 3, 4);
            r.FilledRectangle(1, 2, 3, 4);
            r.Circle(0, 0, 7);
            EXPECT_NE(r.Arc(0, 0, 7, 0.0, 3.14159265), 0);
            r.BeginRasterClip(0, 0, 5, 6);
            r.Raster(9, 8, 7, 110, SmallPicture(), 1, 252);
            r.EndRasterClip();
        },
        {"block1 AppendLine 1 -98 3 2147483548", "block1 AppendRectangle 1 -98 3 -96 0",
         "block1 AppendRectangle 1 -98 3 -96 1", "block1 AppendCircle 0 -100 7 0",
         "block1 AppendArc3 0 -100 7 7 0.0 180.0",
         "block1 AppendClipRegion 5 : 0,0 5,0 5,6 0,6 0,0",
         "block1 AppendDib 7 -92 9 10 52 252 2x1x1 crc32=0F04182A", "block1 EndClipRegion",
         "document AddChild \"Page 1\" container1 0", "container1 PutAttribute \"Default\" true 0",
         "container1 PutAttribute \"UseBitmapPrinting\" true 0", "pages 1"}},
    Row{"points are moved in place",
        [](HPGLReader& r) {
            PointI triangle[] = {{0, 5}, {10, 5}, {10, 15}};
            r.SetFrameOffset(5);
            r.FilledPolygon(3, triangle);
            r.Polyline(2, triangle);
            r.FilledPolyPolygon(triangle, kOneRing, 1);
            r.Polyline(0, nullptr);
        },
        {"block1 AppendPolygon 3 1 : 0,0 10,0 10,10", "block1 AppendPolygon 2 0 : 0,-5 10,-5",
         "block1 AppendPolyPolygon 1 3 3 1 : 0,-10 10,-10 10,5", "block1 AppendPolygon 0 0 :",
         "document AddChild \"Page 1\" container1 0", "container1 PutAttribute \"Default\" true 0", "pages 1"}},
    Row{"a label's box holds its lines and polygons after the offset, and ends with it",
        [](HPGLReader& r) {
            PointI stroke[] = {{-7, 3}, {2, 40}};
            r.SetFrameOffset(10);
            r.BeginLabelExtent("A\xFC", 0.0, 100, 0);
            r.Line(0, 0, 5, 20);
            r.Polyline(2, stroke);
            r.Circle(1000, 1000, 1);
            r.Rectangle(0, 0, 2000, 2000);
            r.EndLabelExtent("A\xFC");
            r.Line(0, 0, 9000, 0);
            r.BeginLabelExtent("", 0.0, 100, 0);
            r.EndLabelExtent("");
        },
        {"block1 AppendLine 0 -10 5 10", "block1 AppendPolygon 2 0 : -7,-7 2,30",
         "block1 AppendCircle 1000 990 1 0", "block1 AppendRectangle 0 -10 2000 1990 0",
         "block1 AppendTextElement -7 -10 5 30 0 0 0 \"A\\xFC\"", "block1 AppendLine 0 -10 9000 -10",
         "block1 AppendTextElement 2147483647 2147483647 -2147483648 -2147483648 0 0 0 \"\"",
         "document AddChild \"Page 1\" container1 0", "container1 PutAttribute \"Default\" true 0",
         "container1 PutAttribute \"SearchAble\" true 0", "pages 1"}},
    Row{"state alone leaves the page empty",
        [](HPGLReader& r) {
            const std::int32_t gaps[] = {40, 20};
            const std::uint8_t bits[] = {0xAA, 0x00};
            r.SetPatternLength(8, 0xFFFFFFFF);
            r.SetLineType(2, gaps);
            r.SetLineType(0, nullptr);
            r.SetLineAttributes(0x1100);
            r.DefineFillPattern(1, 8, 1, 2, bits);
            r.SetFillType(3, 1);
            r.SetDrawMode(9);
            r.SetLineStyle(-32768);
            r.SetLineWidth(14);
        },
        {"block1 AppendLineDash 2 : 40 20", "block1 AppendLineDash 0 :", "block1 AppendLineAttributes 0x1100",
         "block1 DefineFillPattern 1 8 1 2 : AA00", "block1 AppendFillStyle 3 1", "block1 AppendDrawMode 9",
         "block1 AppendLineStyle -32768", "block1 AppendLineWidth 14", "pages 0"}},
    Row{"a picture that cannot be locked is none",
        [](HPGLReader& r) { r.Raster(0, 0, 1, 1, nullptr, 0, 252); },
        {"pages 0"}}));

INSTANTIATE_TEST_SUITE_P(Pages, BuilderTest, testing::Values(
    Row{"pages start clean, but a searchable document stays one",
        [](HPGLReader& r) {
            r.SetPen(3);
            r.SetFrameOffset(50);
            r.BeginLabelExtent("", 0.0, 0, 0);
            r.Raster(0, 0, 1, 1, SmallPicture(), 0, 204);
            r.EndPage(1);
            r.Line(0, 0, 1, 1);
        },
        {"block1 AppendLayer 3", "block1 AppendPen 3", "block1 AppendDib 0 -50 1 -49 52 204 2x1x1 crc32=0F04182A",
         "document AddChild \"Page 1\" container1 0", "layers1 AddLayer 3 \"Layer no.: 3\" 0x000000 1",
         "pentable1 AddPen 3 0xFFFFFFFF -1.0 0xFFFFFFFF", "container1 PutAttribute \"Default\" true 0",
         "container1 PutAttribute \"UseBitmapPrinting\" true 0", "container1 PutAttribute \"SearchAble\" true 0",
         "block2 AppendLine 0 0 1 1", "document AddChild \"Page 2\" container2 0",
         "container2 PutAttribute \"SearchAble\" true 0", "pages 2"}},
    Row{"empty pages are counted, so that no page is the default one",
        [](HPGLReader& r) { r.EndPage(1); r.EndPage(2); r.Line(0, 0, 1, 1); r.EndPage(3); },
        {"block3 AppendLine 0 0 1 1", "document AddChild \"Page 3\" container3 0", "pages 3"}}));
// clang-format on

TEST(Builder, WithoutAHostNothingHappens) {
    HPGLReader reader{MemoryStream("")};
    PointI triangle[] = {{0, 5}, {10, 5}, {10, 15}};
    reader.SetColor(1);
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
        EXPECT_EQ(reader->ReadData(bytes, 8), 0U);
        EXPECT_EQ(reader->SeekData(-2, 2), 4U);
        EXPECT_EQ(reader->SeekData(1, 7), 1U);
    }
}

}  // namespace
}  // namespace qm
