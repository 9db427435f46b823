// The replay script: what its lines mean, and what it says about lines that mean nothing.
#include "common/tool_error.h"
#include "replay/replay_line.h"
#include "tests/export/exported.h"

namespace qm {
namespace {

TEST(ReplayScript, LinesAndValues) {
    const std::string expected = VectorText("AppendText 1 2 \"#\\\"\\\\\"\nAppendLine 0 0 1 1");
    EXPECT_EQ(expected, "PUPA1,2;\r\nLB#\"\\\003;\r\nPU0,0PD1,1;\r\n");
    EXPECT_EQ(VectorText("# nothing\n\n\t AppendText\t1 0x2 \"#\\x22\\\\\"# label\r\n"
                         "AppendLine 0 0 1 1#x"),
              expected);
    EXPECT_EQ(VectorText("DefineFillPattern 1 2 1 000000ff0000FF00\nAppendFillStyle 2 1\n"
                         "AppendRectangle 0 0 9 9 true")
                  .substr(0, 11),
              "RF1,2,1,1,1");
    // A last line without an end, and a sink without one.
    EXPECT_EQ(Exported("object 1203 7\nAppendPen 1").bytes, "BPINSP1;TR0;\r\nLT0;\r\nPU;PG;");
    // Attributes are the structure's while a sink is open; some methods take whatever a host gives.
    EXPECT_EQ(VectorText("attribute NodeID\nAppendDib 1 : 2,3 \"x\"\nAppendLine 0 0 1 1"),
              "\r\nPG;\r\nPU0,0PD1,1;\r\n");
    // The end of the document's structure does not end the document.
    EXPECT_EQ(Exported("end\nEndObject\nattribute NodeID").bytes,
              "BPINSP1;TR0;\r\n\r\nPG;\r\nPU;PG;");
}

TEST(ReplayScript, UnreadableScriptsSayWhere) {
    const std::string sink = "object 1203\n";
    // clang-format off
    const struct {
        std::string script;
        const char* message;
    } rows[] = {
        {"frob 1", "1: no such call: frob"},
        {"\n\nAppendPen 1", "3: the open object has no AppendPen"},
        {"object 1206\nAppendArc3 0 0 1 1 0 0 0", "2: the open object has no AppendArc3"},
        {sink + "object 1203", "2: the sink of the last object is still open, an end is missing"},
        {sink + "end 1", "2: end: the end of the line expected, \"1\" found"},
        {"object 1204\nfrob", "2: no such call: frob"},
        {sink + "AppendPen", "2: AppendPen NUMBER: a 32-bit integer expected, the line ends"},
        {sink + "AppendPen 1 2", "2: AppendPen NUMBER: the end of the line expected, \"2\" found"},
        {sink + "AppendPen 1.5", "2: AppendPen NUMBER: a 32-bit integer expected, \"1.5\" found"},
        {sink + "AppendPen 0x1g", "2: AppendPen NUMBER: a 32-bit integer expected, \"0x1g\" found"},
        {sink + "AppendPen 2147483648",
         "2: AppendPen NUMBER: a 32-bit integer expected, \"2147483648\" found"},
        {sink + "AppendCircle 1 2 3 maybe",
         "2: AppendCircle CX CY R FILLED: true or false expected, \"maybe\" found"},
        {sink + "AppendText 1 2 word",
         "2: AppendText X Y \"TEXT\": a string in quotes expected, \"word\" found"},
        {sink + "AppendText 1 2 \"word", "2: the closing quote of a string is missing"},
        {sink + "AppendText 1 2 \"\\n\"", "2: a backslash in a string stands before \", \\ or xHH"},
        {sink + "AppendText 1 2 \"a\"b", "2: a blank is missing behind a string"},
        {sink + "AppendPolygon 2 true : 0,0",
         "2: AppendPolygon COUNT FILLED : X,Y ...: 2 points expected, 1 found"},
        {sink + "AppendPolygon 1 true 0,0",
         "2: AppendPolygon COUNT FILLED : X,Y ...: a colon expected, \"0,0\" found"},
        {sink + "AppendPolygon 1 true : 0;0",
         "2: AppendPolygon COUNT FILLED : X,Y ...: a point X,Y expected, \"0;0\" found"},
        {sink + "AppendPolyPolygon 2 true 1 : 0,0",
         "2: AppendPolyPolygon RINGS FILLED COUNT ... : X,Y ...: a 32-bit integer expected, \":\" "
         "found"},
        {sink + "DefineFillPattern 1 9 2 000000",
         "2: DefineFillPattern INDEX WIDTH HEIGHT HEX: at least 4 hexadecimal bytes expected, "
         "\"000000\" found"},
        {"object 1202\nAddScanline1 0 0 1 1 0",
         "2: AddScanline1 TYPE START LINES BYTESPERLINE HEX: pairs of hexadecimal digits expected, "
         "\"0\" found"},
        {"object 1202\nAddScanline1 0 0 2147483647 2147483647 00", "2: more than 2 GiB of data"},
        {"object 1202\nCreateRasterStorage 1 1 1 0 1 1 1 00", "2: CreateRasterStorage W H BITS "
         "COMPRESSION DPIX DPIY N BBGGRR ...: at least 3 hexadecimal bytes expected, \"00\" found"},
        {"attribute NodeID\nsetting UserDPI 1.0", "2: settings stand in front of the document"},
        {"setting UserDPI", "1: setting NAME VALUE: a value expected, the line ends"},
        {"pen 1 - - -", "1: a pen stands behind the pentable it belongs to"},
    };
    // clang-format on
    for (const auto& row : rows) {
        try {
            Exported(row.script);
            ADD_FAILURE() << row.script;
        } catch (const ToolError& error) {
            EXPECT_EQ(error.what(), std::string("test:") + row.message);
            EXPECT_EQ(error.Status(), kExitUsage);
        }
    }
    EXPECT_EQ(LiveObjectCount(), 0);
}

}  // namespace
}  // namespace qm
