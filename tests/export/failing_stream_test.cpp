// Streams that stop taking bytes: whatever fits comes out whole, the rest is reported, nothing
// leaks.
#include "tests/export/exported.h"

namespace qm {
namespace {

const char* const kVectors =
    "setting UsePenTable true\npentable\npen 1 1 255 0.01\nattribute PenTable\n"
    "attribute NodeID\nobject 1203\n"
    "AppendPen 1\nAppendLine 0 0 5 5\nAppendPolygon 3 true : 0,0 1,0 1,1\n"
    "AppendPolyPolygon 2 true 2 2 : 0,0 1,0 1,1 2,2\nAppendPolyPolygon 2 false 1 1 : 0,0 1,0\n"
    "DefineFillPattern 1 2 2 80004000\nAppendFillStyle 3 1\nAppendEllipse 0 0 9 9 0 true\n"
    "AppendLogFont 40 10 \"Arial\"\nAppendText 1 1 \"abc\"\nend\n";

const char* const kPicture =
    "object 1202\nCreateRasterStorage 3 2 1 0 100 100 0\nAddScanline1 0 0 2 1 A040\nend\n";

void ExpectEveryLimitToBeReported(const std::string& script, ReplayFormat format, HRESULT full) {
    const ExportResult whole = Exported(script, format);
    ASSERT_EQ(whole.messages, "");
    for (std::size_t room = 0; room < whole.bytes.size(); ++room) {
        const ExportResult cut = Exported(script, format, room, full);
        EXPECT_EQ(cut.status, 1) << room;
        EXPECT_LE(cut.bytes.size(), room);
        // Whole texts in order, up to the first that did not fit.
        ASSERT_LT(cut.writes.size(), whole.writes.size());
        for (std::size_t i = 0; i < cut.writes.size(); ++i)
            ASSERT_EQ(cut.writes[i], whole.writes[i]) << room;
        EXPECT_GT(cut.bytes.size() + whole.writes[cut.writes.size()].size(), room);
        // The call that met the limit, and the trailer.
        EXPECT_NE(cut.messages.find("CloseDocument returned STG_E_MEDIUMFULL\n"), std::string::npos)
            << room;
    }
}

TEST(FailingStream, EveryLimitOfAVectorDocument) {
    ExpectEveryLimitToBeReported(kVectors, ReplayFormat::kHpgl, STG_E_MEDIUMFULL);
}

TEST(FailingStream, EveryLimitOfAPicture) {
    ExpectEveryLimitToBeReported(kPicture, ReplayFormat::kHprtl, STG_E_MEDIUMFULL);
}

// A stream that calls a short write a success.
TEST(FailingStream, ShortWritesCountAsFull) {
    ExpectEveryLimitToBeReported(kPicture, ReplayFormat::kHprtl, S_FALSE);
}

TEST(FailingStream, TheCallThatMetItReturnsTheStatus) {
    // Room for the header and the pen's three texts, then for the first text of a polygon.
    const std::string script =
        "object 1203\nAppendPen 1\nAppendPolygon 2 false : 0,0 1,1\n"
        "AppendPen 1\nend\n";
    EXPECT_EQ(Exported(script, ReplayFormat::kHpgl, 14 + 6 + 8).messages,
              "test:3: AppendPolygon returned STG_E_MEDIUMFULL\n"
              "test:4: AppendPen returned STG_E_MEDIUMFULL\n"
              "test:5: CloseDocument returned STG_E_MEDIUMFULL\n");
    // A picture's status comes with the end of its block, which still ends it.
    EXPECT_EQ(
        Exported(std::string(kPicture) + "object 1202\nend\n", ReplayFormat::kHprtl, 80).messages,
        "test:4: EndObject returned STG_E_MEDIUMFULL\n"
        "test:6: EndObject returned E_FAIL\n"
        "test:6: CloseDocument returned STG_E_MEDIUMFULL\n");
    EXPECT_EQ(Exported("", ReplayFormat::kHpgl, 3, E_ACCESSDENIED).messages,
              "test:0: CreateDocument returned 0x80070005\n"
              "test:0: CloseDocument returned 0x80070005\n");
}

}  // namespace
}  // namespace qm
