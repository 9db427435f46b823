// The vector sinks, byte for byte.
#include <algorithm>

#include "export/vector_writer.h"
#include "tests/export/exported.h"

namespace qm {
namespace {

void ExpectTexts(const std::vector<ScriptRow>& rows,
                 const char* setup = "attribute DirectionY true", int type = 1203) {
    for (const ScriptRow& row : rows)
        EXPECT_EQ(VectorText(row.script, setup, type), row.expected) << row.name;
}

TEST(VectorSink, Primitives) {
    const std::vector<ScriptRow> rows = {
        {"point", "AppendPoint 3 -4", "PU3,-4PD3,-4;\r\n"},
        {"line", "AppendLine 0 0 100 7", "PU0,0PD100,7;\r\n"},
        {"rectangle", "AppendRectangle 1 2 3 4 false",
         "PU1,2PD;PA3,2;\r\nPA3,4;\r\nPA1,4;\r\nPA1,2;\r\n"},
        {"filled rectangle", "AppendRectangle 1 2 3 4 true",
         "PU1,2;PD;PM0\r\nPA3,2;\r\nPA3,4;\r\nPA1,4;\r\nPA1,2;\r\nPA1,2;PM2;FP;\r\n"},
        {"circle", "AppendCircle 5 6 7 false", "PU;PA5,6;CI7;"},
        {"filled circle", "AppendCircle 5 6 7 true", "PU;PA5,6;PM0;CI7;PM2;FP;"},
        {"polyline", "AppendPolygon 3 false : 0,0 100,0 0,100", "PU0,0PD;PA100,0;\r\nPA0,100;\r\n"},
        {"filled triangle", "AppendPolygon 3 true : 0,0 100,0 0,100",
         "PU0,0;PD;PM0\r\nPA100,0;\r\nPA0,100;\r\nPA0,0;PM2;FP;\r\n"},
        {"one point", "AppendPolygon 1 false : 8,9", "PU8,9PD;"},
        {"one filled point", "AppendPolygon 1 true : 8,9", "PU8,9;PD;PM0\r\nPA8,9;PM2;FP;\r\n"},
        {"no points", "AppendPolygon 0 true :\nAppendPolygon -1 false", ""},
        {"two rings", "AppendPolyPolygon 2 true 3 2 : 0,0 9,0 9,9 1,1 2,2",
         "PU0,0PM0PDPA9,0;\r\nPA9,9;\r\nPM1;PU1,1;PD;\r\nPA2,2;\r\nPM2;FP;\r\n"},
        {"two open rings", "AppendPolyPolygon 2 false 2 2 : 0,0 9,0 1,1 2,2",
         "PU0,0PD;PA9,0;\r\nPU1,1PD;PA2,2;\r\n"},
        {"empty rings are skipped", "AppendPolyPolygon 4 true 0 1 0 1 : 1,1 2,2",
         "PU1,1PM0PDPM1;PU2,2;PD;\r\nPM2;FP;\r\n"},
        {"only empty rings", "AppendPolyPolygon 1 true 0 :", ""},
    };
    ExpectTexts(rows);
    ExpectTexts(rows, "", 1206);
}

TEST(VectorSink, PenAndLineState) {
    // clang-format off
    const std::vector<ScriptRow> rows = {
        {"a fresh pen has type 0", "AppendPen 2", "LT0;\r\n"},
        {"a pen repeats the type", "AppendLineStyle 1\nAppendPen 2\nAppendLineStyle 0\nAppendPen 2",
         "LT2;\r\nLT2;\r\nLT;\r\nLT;\r\n"},
        {"styles", "AppendLineStyle 0\nAppendLineStyle 1\nAppendLineStyle 2\nAppendLineStyle 3\n"
         "AppendLineStyle 4\nAppendLineStyle 5\nAppendLineStyle -1",
         "LT;\r\nLT2;\r\nLT1;\r\nLT4;\r\nLT6;\r\nLT;\r\nLT;\r\n"},
        {"stipple resets the type", "AppendLineStyle 3\nAppendLineStipple 1 2\nAppendPen 0",
         "LT4;\r\nLT0;\r\n"},
        {"width names the pen", "AppendPen 3\nAppendLineWidth 14", "LT0;\r\nPW0.35,3;\r\n"},
        {"negative pens and widths", "AppendPen -3\nAppendLineWidth -14", "LT0;\r\nPW0.00,0;\r\n"},
        {"weights need a setting", "AppendLineWeight 35", ""},
        {"mode once", "AppendDrawMode 9\nAppendDrawMode 9", "MC1,168;"},
        {"modes", "AppendDrawMode 0\nAppendDrawMode 1\nAppendDrawMode 9\nAppendDrawMode 1",
         "MC;MC;MC1,168;MC;"},
        {"kept only", "AppendLayer 5\nAppendPolyFillMode 1\nAppendBezier 1 : 1,1\nEndObject", ""},
    };
    // clang-format on
    ExpectTexts(rows);
    ExpectTexts(rows, "", 1206);
}

TEST(VectorSink, ColoursUnderBothVocabularies) {
    const std::string drawn = "PC4,1,2,3;\r\nSP4;";
    const std::string white = "PC4,255,255,255;\r\nSP4;";
    EXPECT_EQ(VectorText("AppendPen 4\nAppendDrawColor1 1 2 3\nAppendDrawColor2 255\n"
                         "AppendDrawColor3\nAppendFillColor1 1 2 3\nAppendFillColor2 1\n"
                         "AppendFillColor3"),
              "LT0;\r\n" + drawn + white);
    EXPECT_EQ(VectorText("AppendPen 4\nAppendDrawColor 1 2 3\nAppendDrawColorBack\n"
                         "AppendFillColor 1 2 3\nAppendFillColorBack",
                         "", 1206),
              "LT0;\r\n" + drawn + white);
    EXPECT_EQ(VectorText("AppendDrawColor1 1 2 3\nAppendFillColor3", "setting MonoColor 0x030201"),
              "PC0,255,255,255;\r\nSP0;");
}

TEST(VectorSink, PenTable) {
    const std::string use = "setting UsePenTable true\nsetting UseLineWeights true\n";
    // clang-format off
    const struct Row {
        const char* name;
        std::string setup;
        const char* calls;
        const char* expected;
    } rows[] = {
        {"all given, inches", use + "pentable\npen 2 3 0x030201 0.5\nattribute PenTable",
         "AppendPen 2", "PW12.70,2;\r\nPC2,1,2,3;SP2;\r\nLT4;\r\n"},
        {"millimetres", use + "pentable Measurement true\npen 2 0 0 0.35\nattribute PenTable",
         "AppendPen 2", "PW0.35,2;\r\nPC2,0,0,0;SP2;\r\nLT;\r\n"},
        {"what the table gives is locked",
         use + "pentable\npen 2 3 0x030201 0.5\nattribute PenTable",
         "AppendPen 2\nAppendLineStyle 1\nAppendLineWidth 40\nAppendLineWeight 9\n"
         "AppendDrawColor1 7 8 9", "PW12.70,2;\r\nPC2,1,2,3;SP2;\r\nLT4;\r\n"},
        {"... but remembered for a pen without it; the width is not scaled", use +
         "attribute LpiX 2032.0\npentable\npen 2 3 0x030201 0.5\npen 3 - - -\n"
         "attribute PenTable",
         "AppendPen 2\nAppendLineStyle 1\nAppendLineWidth 40\nAppendDrawColor1 7 8 9\nAppendPen 3\n"
         "AppendLineWidth 40", "PW12.70,2;\r\nPC2,1,2,3;SP2;\r\nLT4;\r\n"
         "PW1.00,3;\r\nPC3,7,8,9;SP3;\r\nLT2;\r\nPW2.00,3;\r\n"},
        {"a style alone", use + "pentable\npen 2 3 - -\nattribute PenTable",
         "AppendPen 2\nAppendLineWeight 100",
         "PW0.00,2;\r\nPC2,0,0,0;SP2;\r\nLT4;\r\nPW1.00,2;\r\n"},
        {"an unknown pen", use + "pentable\npen 2 3 0 1.0\nattribute PenTable", "AppendPen 7",
         "PW0.00,7;\r\nPC7,0,0,0;SP7;\r\nLT;\r\n"},
        {"a table nobody asked to use", "pentable\npen 2 3 0 1.0\nattribute PenTable",
         "AppendPen 2", "LT0;\r\n"},
        {"no table", use + "attribute PenTable", "AppendPen 2", "LT0;\r\n"},
        {"something that is no table", use + "attribute PenTable 5", "AppendPen 2", "LT0;\r\n"},
    };
    // clang-format on
    for (const Row& row : rows)
        EXPECT_EQ(VectorText(row.calls, row.setup), row.expected) << row.name;
}

TEST(VectorSink, PenTableThatKnowsNoPens) {
    const auto stream = MakeObject<RecordingStream>();
    ExportSettings settings;
    settings.stream = stream;
    settings.usePenTable = true;
    settings.penTable = stream;
    EXPECT_EQ(VectorWriter(settings).SelectPen(2), S_OK);
    EXPECT_EQ(stream->Bytes(), "PW0.00,2;\r\nPC2,0,0,0;SP2;\r\nLT;\r\n");
}

TEST(VectorSink, Fills) {
    ExpectTexts({
        {"solid", "AppendFillStyle 0 5", "FT;"},
        {"hatches",
         "AppendFillStyle 2 0\nAppendFillStyle 2 1\nAppendFillStyle 2 2\nAppendFillStyle 2 3\n"
         "AppendFillStyle 2 4\nAppendFillStyle 2 5",
         "FT3,80,0;FT3,80,90;FT3,80,-45;FT3,80,45;FT4,80,90;FT4,80,45;"},
        {"a pattern is left open", "AppendFillStyle 3 12", "FT11,12"},
        {"the rest",
         "AppendFillStyle 2 6\nAppendFillStyle 2 -1\nAppendFillStyle 1 0\nAppendFillStyle -1 0",
         ""},
        {"set bits are paper", "DefineFillPattern 3 3 2 A0004000", "RF3,3,2,0,1,0,1,0,1;"},
        {"rows are padded to two bytes", "DefineFillPattern 1 9 2 00800000FF80",
         "RF1,9,2,1,1,1,1,1,1,1,1,0,1,1,1,1,1,1,1,1,1;"},
        {"no pixels", "DefineFillPattern 1 0 5\nDefineFillPattern 1 5 -1", "RF1,0,5;RF1,5,-1;"},
    });
}

TEST(VectorSink, Text) {
    ExpectTexts({
        {"label", "AppendText 10 20 \"a;b\"", "PUPA10,20;\r\nLBa;b\003;\r\n"},
        {"empty", "AppendText 0 0 \"\"", "PUPA0,0;\r\nLB\003;\r\n"},
        {"8-bit", "AppendText 0 0 \"\\xE4\u00fc\u20ac\"", "PUPA0,0;\r\nLB\xE4\xFC?\003;\r\n"},
        {"ends at a zero", "AppendText 0 0 \"a\\x00b\"", "PUPA0,0;\r\nLBa\003;\r\n"},
    });
}

#ifndef _WIN32  // there heights depend on the fonts that are installed
TEST(VectorSink, Fonts) {
    const std::vector<ScriptRow> rows = {
        {"a positive height is the cell", "AppendLogFont 400 0 \"Arial\"",
         "SI0.25,0.50;\r\nDI;\r\n"},
        {"a negative one the em", "AppendLogFont -2048 0 \"Arial\"", "SI1.43,2.86;\r\nDI;\r\n"},
        {"zero is 16", "AppendLogFont 0 0 \"\"", "SI0.01,0.02;\r\nDI;\r\n"},
        {"half a degree counts", "AppendLogFont 400 455 \"Arial\"",
         "SI0.25,0.50;\r\nDI0.70,0.71;\r\n"},
        {"quarter turns", "AppendLogFont 400 900 \"Arial\"\nAppendLogFont 400 1800 \"Arial\"",
         "SI0.25,0.50;\r\nDI-0.00,1.00;\r\nSI0.25,0.50;\r\nDI-1.00,-0.00;\r\n"},
    };
    ExpectTexts(rows);
    EXPECT_EQ(VectorText("AppendLogFont 400 0 \"Arial\"", "attribute LpiX 2032.0"),
              "SI0.50,1.00;\r\nDI;\r\n");
}
#endif

TEST(VectorSink, MappingOfThePrimitives) {
    // 300 dpi, y downward from 1001, the page starting at 10, -5.
    const char* const setup =
        "setting UserDPI 300.0\nattribute CropMinX 10.0\nattribute CropMinY -5.0\n"
        "attribute CropMaxY 995.0";
    // clang-format off
    ExpectTexts(
        {{"line", "AppendLine 10 -5 110 996", "PU0,3390PD338,0;\r\n"},
         {"radius without offset", "AppendCircle 10 996 100 false", "PU;PA0,0;CI338;"},
         {"text", "AppendText 11 995 \"\"", "PUPA3,3;\r\nLB\003;\r\n"},
         {"width", "AppendLineWidth 3", "PW0.25,0;\r\n"},},
        setup);
    // clang-format on
    // The double sink keeps fractions and never flips.
    ExpectTexts({{"line", "AppendLine 10.5 -5 110 996", "PU1,0PD338,3390;\r\n"},
                 {"radius", "AppendCircle 10 -5 0.6 false", "PU;PA0,0;CI2;"}},
                setup, 1206);
}

TEST(VectorSink, CoordinatesOutsideTheRangeWrapOrSaturate) {
    EXPECT_EQ(VectorText("AppendPoint 2147483647 -2147483648", "attribute CropMinX -1.0"),
              "PU-2147483648,-2147483648PD-2147483648,-2147483648;\r\n");
    EXPECT_EQ(VectorText("AppendCircle 1e300 nan inf false", "", 1206),
              "PU;PA-2147483648,-2147483648;CI-2147483648;");
}

TEST(VectorSink, ArcsAndEllipses) {
    const std::string flat = "attribute DirectionY true";
    // Two steps of 8.5 degrees; the end is drawn.
    EXPECT_EQ(VectorText("AppendArc3 0 0 1000 1000 0 0 17", flat),
              "PU1000,0PD;PA989,148;\r\nPA956,292;\r\n");
    // Less than a step is one, the other way round and turned.
    EXPECT_EQ(VectorText("AppendArc3 10 0 1000 500 90 90 -5", flat), "PU-490,0PD;PA-488,87;\r\n");
    // A full turn, however it is said, has 60 steps and closes.
    const std::string circle = VectorText("AppendEllipse 0 0 1000 1000 0 false", flat);
    EXPECT_EQ(VectorText("AppendArc3 0 0 1000 1000 0 0 0", flat), circle);
    EXPECT_EQ(VectorText("AppendArc3 0 0 1000 1000 0 0 360", flat), circle);
    EXPECT_EQ(VectorText("AppendArc 0 0 1000 1000 0 0 0", "", 1206).substr(0, 11), "PU1000,0PD;");
    EXPECT_EQ(std::count(circle.begin(), circle.end(), '\n'), 60);
    EXPECT_EQ(circle.substr(circle.size() - 11), "PA1000,0;\r\n");
    for (int start = 0; start < 360; start += 10) {
        const std::string turn =
            VectorText("AppendArc 0 0 1000 1000 0 " + std::to_string(start) + " 360", "", 1206);
        const std::string first = turn.substr(2, turn.find("PD") - 2);
        EXPECT_EQ(turn.substr(turn.rfind("PA") + 2), first + ";\r\n");
    }
    const std::string filled = VectorText("AppendEllipse 0 0 9 5 0.5 true", "", 1206);
    EXPECT_EQ(filled.substr(filled.size() - 10), ";PM2;FP;\r\n");
}

TEST(VectorSink, BadArraysAreRefused) {
    const ExportResult result = Exported(
        "object 1203\n"
        "AppendPolyPolygon 2 true 3 2 : 0,0 9,0 9,9 1,1\n"
        "AppendPolyPolygon 2 false 3 -2 : 0,0 9,0 9,9 1,1\n"
        "AppendPolyPolygon 0 true :\nGetInterfaceVersion\nend\n");
    EXPECT_EQ(result.bytes, "BPINSP1;TR0;\r\nPU;PG;");
    EXPECT_EQ(result.messages,
              "test:2: AppendPolyPolygon returned E_INVALIDARG\n"
              "test:3: AppendPolyPolygon returned E_INVALIDARG\n");
}

// Each text is one write; a pattern is one write a pixel.
TEST(VectorSink, WritesAreWholeTexts) {
    const ExportResult result = Exported(
        "object 1203\nAppendPolygon 2 true : 1,-2 3,-4\nDefineFillPattern 1 2 1 8000\n"
        "AppendText 1 -1 \"x\"\nend\n");
    const std::vector<std::string> expected = {"BPINSP1;TR0;\r\n",
                                               "PU1,2;PD;PM0\r\n",
                                               "PA3,4;\r\n",
                                               "PA1,2;PM2;FP;\r\n",
                                               "RF1,2,1",
                                               ",0",
                                               ",1",
                                               ";",
                                               "PUPA1,1;\r\n",
                                               "LBx\003;\r\n",
                                               "PU;PG;"};
    EXPECT_EQ(result.writes, expected);
}

}  // namespace
}  // namespace qm
