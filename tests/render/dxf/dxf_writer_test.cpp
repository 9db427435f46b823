// DXF of small drawings: entities, looks, tables; the rules that a file must keep; what other
// programs say to it where they are installed.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include "render/dxf/colour_index.h"
#include "render/dxf/group_codes.h"
#include "render/page_writers.h"
#include "tests/host/host_test.h"
#include "tests/render/memory_sink.h"

namespace {

using namespace qm;

std::string Dxf(const DisplayList& list, double rotation = 0.0) {
    PageSource page;
    page.drawing = &list;
    page.rotation = rotation;
    MemorySink sink;
    WriteDxf(page, PageOptions(), sink);
    return sink.text;
}

struct Pair {
    int code = 0;
    std::string value;
};
using Record = std::vector<Pair>;  // from a pair of code 0 up to the next one

std::vector<Record> Records(const std::string& dxf) {
    std::vector<Record> records;
    std::istringstream lines(dxf);
    for (std::string code, value; std::getline(lines, code);) {
        EXPECT_TRUE(std::getline(lines, value)) << "a code without value";
        if (code == "0") records.emplace_back();
        if (records.empty()) throw std::runtime_error("begins with " + code);
        records.back().push_back({std::stoi(code), value});
    }
    return records;
}

std::string ValueOf(const Record& record, int code) {
    for (const Pair& pair : record) {
        if (pair.code == code) return pair.value;
    }
    return {};
}

// The records of a section or, by "LAYER", those of one kind.
std::vector<Record> Section(const std::vector<Record>& all, const std::string& name) {
    std::vector<Record> found;
    bool inside = false;
    for (const Record& record : all) {
        const std::string& kind = record[0].value;
        if (kind == "ENDSEC") inside = false;
        if (inside || kind == name) found.push_back(record);
        if (kind == "SECTION" && record[1].value == name) inside = true;
    }
    return found;
}

// "LINE 8=Pen 0|10=0|20=0|...", a record a line, without handles and class names.
std::string Shown(const std::vector<Record>& records) {
    std::string text;
    for (const Record& record : records) {
        text += record[0].value;
        char separator = ' ';
        for (std::size_t i = 1; i < record.size(); ++i) {
            const int code = record[i].code;
            if (code == 5 || code == 100 || code == 330 || code == 390) continue;
            text += separator + std::to_string(code) + '=' + record[i].value;
            separator = '|';
        }
        text += '\n';
    }
    return text;
}

std::string Entities(const DisplayList& list, double rotation = 0.0) {
    return Shown(Section(Records(Dxf(list, rotation)), "ENTITIES"));
}

struct Row {
    const char* name;
    const char* plot;
    const char* dxf;
};

void PrintTo(const Row& row, std::ostream* out) { *out << row.name; }

// clang-format off
const Row kEntities[] = {
    {"line in millimetres", "PU5,-5;PD15,1;",
     "LINE 8=Pen 1|10=0.125|20=-0.125|30=0|11=0.375|21=0.025|31=0\n"},
    {"chain", "PU5,-5;PD15,-5,15,7;",
     "LWPOLYLINE 8=Pen 1|90=3|70=0|10=0.125|20=-0.125|10=0.375|20=-0.125|10=0.375|20=0.175\n"},
    {"chain that comes home", "PU0,0;PD40,0,40,40,0,0;",
     "LWPOLYLINE 8=Pen 1|90=3|70=1|10=0|20=0|10=1|20=0|10=1|20=1\n"},
    {"largest coordinates", "PU-2147483648,2147483647;PD2147483647,-2147483648;",
     "LINE 8=Pen 1|10=-53687091.2|20=53687091.175|30=0|11=53687091.175|21=-53687091.2|31=0\n"},
    {"colours and weights that differ from the layer's",
     "SP1;PW0.35;PU0,0;PD40,0;PW0.5;PC1,255,34,51;PU;PD0,0;",
     "LINE 8=Pen 1|10=0|20=0|30=0|11=1|21=0|31=0\n"
     "LINE 8=Pen 1|62=240|420=16720435|370=50|10=1|20=0|30=0|11=0|21=0|31=0\n"},
    {"lines wider than any weight are as wide as they are", "PW4;PD40,0;",
     "LWPOLYLINE 8=Pen 1|90=2|70=0|43=4|10=0|20=0|10=1|20=0\n"},
    {"dashes go on at corners", "LT2;PD40,0,40,40;",
     "LWPOLYLINE 8=Pen 1|6=Plot 1|90=3|70=128|10=0|20=0|10=1|20=0|10=1|20=1\n"},
    {"circle and whole arc", "PU40,80;CI-40;PU400,0;AA0,0,360;",
     "CIRCLE 8=Pen 1|10=1|20=2|30=0|40=1\nCIRCLE 8=Pen 1|10=0|20=0|30=0|40=10\n"},
    {"arcs run counter-clockwise, without dots at their ends",
     "PU400,0;AA0,0,90;PU0,400;AA0,0,-90;",
     "ARC 8=Pen 1|10=0|20=0|30=0|40=10|50=0|51=90\nARC 8=Pen 1|10=0|20=0|30=0|40=10|50=0|51=90\n"},
    {"dots that no line covers", "PU3,3;PD;PU39,40;PD;PU40,40;PD80,80;",
     "POINT 8=Pen 1|10=0.075|20=0.075|30=0\n"
     "LINE 8=Pen 1|10=1|20=1|30=0|11=2|21=2|31=0\n"},
    {"area with a hole", "PM0;PD40,0,40,40;PM1;PU20,10;PD22,10,22,12;PM2;FP;",
     "HATCH 8=Pen 1|10=0|20=0|30=0|210=0|220=0|230=1|2=SOLID|70=1|71=0|91=2|"
     "92=3|72=0|73=1|93=3|10=0|20=0|10=1|20=0|10=1|20=1|97=0|"
     "92=18|72=0|73=1|93=3|10=0.5|20=0.25|10=0.55|20=0.25|10=0.55|20=0.3|97=0|75=0|76=1|98=1|10=0|20=0\n"},
    {"area of a pattern in the shade of its ink",
     "RF4,4,1,0,0,0,1;FT11,4;PM0;PD40,0,40,40;PM2;FP;PU0,0;PD40,0;",
     "HATCH 8=Pen 1|10=0|20=0|30=0|210=0|220=0|230=1|2=SOLID|70=1|71=0|91=1|"
     "92=3|72=0|73=1|93=3|10=0|20=0|10=1|20=0|10=1|20=1|97=0|75=0|76=1|98=1|10=0|20=0\n"
     "LINE 8=Pen 1|62=7|10=0|20=0|30=0|11=1|21=0|31=0\n"},
    {"nothing to fill", "PM0;PD40,0;PM2;FP;PU0,0;PD40,0;",
     "LINE 8=Pen 1|10=0|20=0|30=0|11=1|21=0|31=0\n"},
    {"pen that draws nothing", "MC1,170;PU0,0;PD9,9;MC1,252;PU0,0;PD40,0;",
     "LINE 8=Pen 1|10=0|20=0|30=0|11=1|21=0|31=0\n"},
    {"texts over their strokes", "PU10,20;LB-\003DI0,1;PU10,20;LB--\003",
     "LINE 8=Pen 1|10=0.5|20=2|30=0|11=1.5|21=2|31=0\n"
     "TEXT 8=Texts|62=7|10=0.5|20=2|30=0|40=0.1|1=-|50=0|72=5|11=1.5|21=2|31=0\n"
     "LINE 8=Pen 1|10=-1.25|20=0.75|30=0|11=-1.25|21=1.75|31=0\n"
     "LINE 8=Pen 1|10=-1.225|20=2.85|30=0|11=-1.225|21=3.85|31=0\n"
     "TEXT 8=Texts|62=7|10=-1.225|20=0.75|30=0|40=0.025|1=--|50=90|72=5|11=-1.225|21=3.85|31=0\n"},
};
// clang-format on

class DxfEntity : public HostTest, public testing::WithParamInterface<Row> {};

TEST_P(DxfEntity, IsWritten) {
    const auto pages = Pages(GetParam().plot);
    ASSERT_EQ(pages.size(), 1U);
    EXPECT_EQ(Entities(pages[0].Drawing()), GetParam().dxf);
}

INSTANTIATE_TEST_SUITE_P(All, DxfEntity, testing::ValuesIn(kEntities));

// What plots cannot say, embedding programs can.
TEST(DxfWriter, DrawsEllipsesAndDiscs) {
    const auto arc = [](const ArcShape& shape, double rotation) {
        DisplayList list;
        list.AppendArc(shape);
        return Entities(list, rotation);
    };
    EXPECT_EQ(arc({{0, 0}, 80, 40, 0.0F, 360.0F}, 0.0),
              "ELLIPSE 8=Pen 0|10=0|20=0|30=0|11=2|21=0|31=0|40=0.5|41=0|42=6.2832\n");
    EXPECT_EQ(arc({{0, 0}, 40, 80, 0.0F, 90.0F}, 0.0),
              "ELLIPSE 8=Pen 0|10=0|20=0|30=0|11=0|21=2|31=0|40=0.5|41=4.7124|42=6.2832\n");
    EXPECT_EQ(arc({{0, 0}, -40, 40, 0.0F, 90.0F}, 90.0),
              "ARC 8=Pen 0|10=1|20=1|30=0|40=1|50=180|51=270\n");
    DisplayList disc;
    disc.AppendCircle({40, 40}, 40, true);
    EXPECT_EQ(Entities(disc),
              "HATCH 8=Pen 0|10=0|20=0|30=0|210=0|220=0|230=1|2=SOLID|70=1|71=0|91=1|92=3|72=1|"
              "73=1|93=2|10=0|20=1|42=1|10=2|20=1|42=1|97=0|75=0|76=1|98=1|10=0|20=0\n");
}

TEST(DxfWriter, TurnsThePageToWhereNothingIsBelowZero) {
    DisplayList list;
    list.AppendLine({0, 0}, {400, 40});
    const struct {
        double rotation;
        const char* dxf;
    } rows[] = {
        {0.0, "10=0|20=0|30=0|11=10|21=1|31=0\n"},
        {90.0, "10=1|20=0|30=0|11=0|21=10|31=0\n"},
        {180.0, "10=10|20=1|30=0|11=0|21=0|31=0\n"},
        {-90.0, "10=0|20=10|30=0|11=1|21=0|31=0\n"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Entities(list, row.rotation), std::string("LINE 8=Pen 0|") + row.dxf);
    }
}

TEST(DxfWriter, NumbersColours) {
    const struct {
        std::uint32_t bgr;
        int index;
        bool exact;
    } rows[] = {
        {0x000000, 7, true},  {0xFFFFFF, 255, true}, {0x0000FF, 1, true},  {0xFF0000, 5, true},
        {0x003FFF, 20, true}, {0xAABFFF, 21, true},  {0x566081, 25, true}, {0x4F4F35, 139, false},
        {0x010101, 7, false}, {0x828282, 253, true}, {0x0000FE, 1, false},
    };
    for (const auto& row : rows) {
        const dxf::IndexedColour colour = dxf::IndexOf(row.bgr);
        EXPECT_EQ(colour.index, row.index) << std::hex << row.bgr;
        EXPECT_EQ(colour.exact, row.exact) << std::hex << row.bgr;
    }
}

TEST(DxfWriter, EscapesTexts) {
    EXPECT_EQ(dxf::EscapedValue("a\\b^\n100%%c"), "a\\b^  100%%%%c");
    EXPECT_EQ(dxf::EscapedValue("\\U+0041 \xC3\xBC\xE2\x82\xAC\xF0\x9F\x98\x80"),
              "\\U+005CU+0041 \\U+00FC\\U+20AC?");
}

// --------------------------------------------------------------------------------------- the file

constexpr char kDrawing[] =
    "IN;SP1;PW0.5;PU0,0;PD900,0;UL1,10,0,5,5;LT1;PU0,90;PD90,90,90,180;LT4;PU0,0;PD70,80;LT;SP2;"
    "PC2,9,99,199;PU0,300;PD;PU200,200;CI100;PU400,0;AA0,0,90;SP3;PM0;PD40,0,40,40;PM1;PU20,10;"
    "PD22,10,22,12;PM2;FP;PU900,300;WG200,30,80;PU0,500;LBPlan \xFC\003PU0,900;PD9,9;";

class DxfFile : public HostTest {
  protected:
    std::string Text() { return Dxf(Pages(kDrawing).at(0).Drawing()); }
};

TEST_F(DxfFile, NamesLayersAndLineTypes) {
    const auto records = Records(Text());
    EXPECT_EQ(Shown(Section(records, "LAYER")),
              "LAYER 2=0|70=0|62=7|6=Continuous|370=-3\n"
              "LAYER 2=Pen 1|70=0|62=7|6=Continuous|370=50\n"
              "LAYER 2=Pen 2|70=0|62=152|420=615367|6=Continuous|370=50\n"
              "LAYER 2=Pen 3|70=0|62=3|6=Continuous|370=0\n"
              "LAYER 2=Texts|70=1|62=8|6=Continuous|290=0|370=-3\n");
    const std::string types = Shown(Section(records, "LTYPE"));
    EXPECT_NE(types.find("LTYPE 2=Plot 1|70=0|3=|72=65|73=3|40="), std::string::npos) << types;
}

// Handles are unique and below the next one, names are known, tables count their entries, every
// entity has its layer.
TEST_F(DxfFile, KeepsTheRulesOfTheFormat) {
    std::set<std::string> handles;
    std::map<std::string, std::set<std::string>> names;
    std::string sections;
    unsigned long long highest = 0;
    long announced = -1;
    long entries = 0;
    const auto records = Records(Text());
    for (const Record& record : records) {
        const std::string& kind = record[0].value;
        if (kind == "SECTION") sections += ValueOf(record, 2) + ' ';
        if (kind == "TABLE") announced = std::stol(ValueOf(record, 70));
        EXPECT_TRUE(kind != "ENDTAB" || announced == entries) << handles.size();
        const std::string handle = ValueOf(record, kind == "DIMSTYLE" ? 105 : 5);
        if (kind != "SECTION" && !handle.empty()) {
            EXPECT_TRUE(handles.insert(handle).second) << handle;
            highest = std::max(highest, std::stoull(handle, nullptr, 16));
            names[kind].insert(ValueOf(record, 2));
        }
        entries = kind == "TABLE" ? 0 : entries + 1;
    }
    EXPECT_EQ(sections, "HEADER CLASSES TABLES BLOCKS ENTITIES OBJECTS ");
    EXPECT_EQ(records.back()[0].value, "EOF");
    // $HANDSEED is the only handle of the header.
    EXPECT_GT(std::stoull(ValueOf(records[0], 5), nullptr, 16), highest);
    for (const Record& entity : Section(records, "ENTITIES")) {
        EXPECT_EQ(names["LAYER"].count(ValueOf(entity, 8)), 1U) << ValueOf(entity, 8);
        const std::string type = ValueOf(entity, 6);
        EXPECT_TRUE(type.empty() || names["LTYPE"].count(type) == 1) << type;
    }
    for (const Record& record : records) {
        for (const int code : {330, 340, 350, 390}) {
            const std::string to = ValueOf(record, code);
            EXPECT_TRUE(to.empty() || to == "0" || handles.count(to) == 1) << code << ' ' << to;
        }
    }
}

#ifndef _WIN32
class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "dxf-XXXXXX").string();
        if (mkdtemp(name.data()) != nullptr) path = name;
    }
    ~TemporaryFolder() { std::filesystem::remove_all(path); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    std::filesystem::path path;
};

int Shell(const std::string& command) { return std::system(command.c_str()); }

TEST_F(DxfFile, IsAcceptedByEzdxf) {
    if (Shell("/usr/bin/python3 -c 'import ezdxf' 2>/dev/null") != 0) {
        GTEST_SKIP() << "python3-ezdxf is not installed";
    }
    const TemporaryFolder folder;
    const std::string name = folder.path / "plan.dxf";
    std::ofstream(name) << Text();
    EXPECT_EQ(Shell("/usr/bin/python3 -c \"import ezdxf; d = ezdxf.readfile('" + name +
                    "'); a = d.audit(); k = [e.dxftype() for e in d.modelspace()]; "
                    "assert not a.errors and not a.fixes, (a.errors, a.fixes); "
                    "assert d.units == 4 and k.count('HATCH') == 2 and k.count('ARC') == 1, k; "
                    "assert d.modelspace().query('TEXT')[0].dxf.text.startswith('Plan ')\""),
              0);
}

TEST_F(DxfFile, IsPrintedByLibreCad) {
    if (Shell("which librecad >/dev/null 2>&1") != 0) GTEST_SKIP() << "librecad is not installed";
    const TemporaryFolder folder;
    std::ofstream(folder.path / "plan.dxf") << Text();
    const std::string in = "cd " + folder.path.string() + " && ";
    EXPECT_EQ(Shell(in + "HOME=$PWD QT_QPA_PLATFORM=offscreen timeout 60 librecad dxf2pdf -a "
                         "-o plan.pdf plan.dxf >log 2>&1 && test -s plan.pdf"),
              0);
}
#endif

}  // namespace
