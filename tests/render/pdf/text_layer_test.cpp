// Searchable texts and the strokes that show them: order, direction, letters by reference.
#include <gtest/gtest.h>

#include "tests/render/pdf/pdf_reader.h"

namespace {

using namespace qm;

// Two pages of the same drawing.
PdfReader TwoPages(const DisplayList& list, double rotation = 0.0) {
    PageSource page = SourceOf(list);
    page.rotation = rotation;
    return Pdf({page, page});
}

std::string Texts(const DisplayList& list, double rotation = 0.0) {
    const std::string content = TwoPages(list, rotation).Content();
    const std::size_t at = content.find("BT\n");
    return at == std::string::npos ? "" : content.substr(at, content.rfind("EMC") - at);
}

// A letter V.
void AppendLetter(DisplayList& list, std::int32_t x, std::int32_t y) {
    list.AppendLine({x, y + 36}, {x + 10, y});
    list.AppendLine({x + 10, y}, {x + 20, y + 36});
}

TEST(TextLayer, ReadsFromTopToBottom) {
    DisplayList list;
    list.AppendLine({0, 0}, {900, 900});
    list.AppendText({{0, 100}, {120, 136}}, "lower");
    list.AppendText({{500, 300}, {620, 336}}, "right");
    list.AppendText({{0, 305}, {120, 341}}, "(\xC3\xA9)\\");
    list.AppendText({{200, 335}, {220, 341}}, "\"");  // a low box of the same line
    EXPECT_EQ(Texts(list),
              "BT\n50 0 0 50 0 305 Tm\n/F0 1 Tf\n(\\(\x80\\)\\\\)Tj\n"
              "33.3 0 0 8.3 200 335 Tm\n(\")Tj\n"
              "40 0 0 50 500 300 Tm\n(right)Tj\n"
              "40 0 0 50 0 100 Tm\n(lower)Tj\nET\n");
    // Upside down, the lower one comes first.
    EXPECT_NE(Texts(list, 180.0).find("(lower)Tj\n40 0 0 50 500"), std::string::npos);
}

TEST(TextLayer, TheTallestTextMakesTheLine) {
    DisplayList list;
    list.AppendLine({0, 0}, {900, 900});
    list.AppendText({{500, 300}, {600, 310}}, "third");
    list.AppendText({{300, 280}, {400, 309}}, "second");
    list.AppendText({{0, 275}, {100, 290}}, "first");
    const std::string texts = Texts(list);
    EXPECT_LT(texts.find("(first)"), texts.find("(second)")) << texts;
    EXPECT_LT(texts.find("(second)"), texts.find("(third)")) << texts;
}

TEST(TextLayer, RunsAsItsLettersDo) {
    DisplayList list;
    AppendLetter(list, 100, 0);
    AppendLetter(list, 0, 0);
    list.AppendText({{0, 0}, {120, 36}}, "ab");
    list.AppendText({{200, 0}, {236, 120}}, "up");
    AppendLetter(list, 300, 100);
    AppendLetter(list, 300, 0);
    list.AppendText({{300, 0}, {320, 136}}, "cd");
    const std::string texts = Texts(list);
    EXPECT_NE(texts.find("-100 0 0 -50 120 36 Tm\n/F0 1 Tf\n(ab)Tj"), std::string::npos) << texts;
    EXPECT_NE(texts.find("0 100 -50 0 236 0 Tm\n(up)Tj"), std::string::npos);
    EXPECT_NE(texts.find("0 -113.3 27.8 0 300 136 Tm\n(cd)Tj"), std::string::npos);
}

TEST(TextLayer, LeavesOutWhatCannotBeRead) {
    DisplayList list;
    list.AppendLine({0, 0}, {900, 900});
    list.AppendText({{0, 0}, {100, 36}}, "");
    list.AppendText({{0, 0}, {100, 36}}, "\xFF\xC3");
    list.AppendText({{INT32_MAX, INT32_MAX}, {INT32_MIN, INT32_MIN}}, "nothing");
    EXPECT_EQ(Texts(list), "");
}

TEST(TextFonts, MapCodesToUnicode) {
    DisplayList list;
    list.AppendLine({0, 0}, {900, 900});
    list.AppendText({{0, 0}, {100, 36}}, "B\xC3\xA9\xF0\x9F\x98\x80");
    const PdfReader reader = TwoPages(list);
    EXPECT_EQ(reader.Count("/Subtype/Type3"), 1);
    EXPECT_EQ(reader.Count("/FirstChar 66/LastChar 129/"), 1);
    std::string streams;
    for (const auto& [number, object] : reader.objects) streams += object.stream;
    const char* codes = "3 beginbfchar\n<42><0042>\n<80><00E9>\n<81><D83DDE00>\nendbfchar";
    EXPECT_NE(streams.find(codes), std::string::npos);
}

TEST(GlyphShapes, LettersThatComeBackAreForms) {
    DisplayList list;
    list.AppendValue(RecordKind::kLineWidth, 3);
    for (std::int32_t i = 0; i < 3; ++i) {
        AppendLetter(list, 0, 100 * i);
        AppendLetter(list, 30, 100 * i);
        list.AppendText({{0, 100 * i}, {50, 100 * i + 36}}, "VV");
    }
    const PdfReader reader = TwoPages(list);
    EXPECT_EQ(reader.Count("/Subtype/Form"), 1);
    EXPECT_EQ(reader.Find("/Subtype/Form").stream, "0 0 m\n10 -36 l\n20 0 l\nS");
    // Four times as strokes, then a row by reference; on the next page at once.
    EXPECT_NE(reader.Content(0).find("30 136 m\n40 100 l\n50 136 l\nS\n"
                                     "q\n1 0 0 1 0 236 cm/a Do\n1 0 0 1 30 0 cm/a Do\nQ\n"),
              std::string::npos)
        << reader.Content(0);
    EXPECT_NE(reader.Content(1).find("3 w\n1 J\n1 j\nq\n1 0 0 1 0 36 cm/a Do\n"),
              std::string::npos);
    EXPECT_EQ(reader.Count("/XObject<</a "), 2);
}

TEST(GlyphShapes, StrokesOutsideTheTextStayStrokes) {
    DisplayList list;
    for (std::int32_t i = 0; i < 9; ++i) {
        AppendLetter(list, 0, 100 * i);
        list.AppendText({{500, 0}, {550, 36}}, "VV");
    }
    EXPECT_EQ(TwoPages(list).Count("/Subtype/Form"), 0);
}

}  // namespace
