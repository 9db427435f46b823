// Line types, line attributes, merge control.
#include "interpreter/attributes/lines.h"

#include <cmath>

#include "tests/interpreter/ops_table.h"

namespace qm {
namespace {

TEST(Lines, PredefinedTypes) {
    // clang-format off
    ExpectOperations({
        {"type 0", "LT0;", {"SetLineStyle 2", "SetPatternLength 8 0xFFFFFFFF"}},
        {"type 1", "LT1;", {"SetLineStyle 2", "SetPatternLength 8 0x88888888"}},
        {"type 8", "LT8;", {"SetLineStyle 3", "SetPatternLength 8 0xFF5AFF5A"}},
        {"type 9 is solid", "LT9;", {"SetPatternLength 8 0xFFFFFFFF"}},
        {"negative types draw as positive ones", "LT-2;",
         {"SetLineStyle 1", "SetPatternLength 8 0xF0F0F0F0"}},
        {"only the pattern differs", "LT2;LT3;",
         {"SetLineStyle 1", "SetPatternLength 8 0xF0F0F0F0", "SetPatternLength 8 0xF8F8F8F8"}},
        {"the length is the fourth number, rounded up", "LT2,50,0,1.01;",
         {"SetLineStyle 1", "SetPatternLength 9 0xF0F0F0F0"}},
        {"the filter compares the stored length with the mask", "LT9,1,1,-1;LT9;LT9;",
         {"SetPatternLength -8 0xFFFFFFFF"}},
    });
    // clang-format on
}

TEST(Lines, AbsentTypeAndNinetyNine) {
    // clang-format off
    ExpectOperations({
        {"LT; is solid", "LT4;LT;", {"SetLineStyle 3", "SetPatternLength 8 0xFAFAFAFA",
         "SetLineStyle 0", "SetPatternLength 8 0xFFFFFFFF"}},
        {"LT99 after LT; brings the missing number", "LT;LT99;",
         {"SetPatternLength 8 0xFFFFFFFF", "SetLineStyle -32768", "SetPatternLength 8 0xFFFFFFFF"}},
        {"LT99 before any LT;", "LT4;LT99;", {"SetLineStyle 3", "SetPatternLength 8 0xFAFAFAFA",
         "SetLineStyle 0", "SetPatternLength 8 0xFFFFFFFF"}},
        {"LT-99 is only a large type", "LT;LT-99;",
         {"SetPatternLength 8 0xFFFFFFFF", "SetPatternLength 8 0xFFFFFFFF"}},
    });
    // clang-format on
}

TEST(Lines, UserDefinedTypes) {
    std::string many = "UL2";
    std::string nineteen = "SetLineType 19 :";
    for (int i = 1; i <= 25; ++i) {
        many += "," + std::to_string(i);
        if (i <= 19) nineteen += " " + std::to_string(i);
    }
    // clang-format off
    ExpectOperations({
        {"as given", "UL1,4,2.9,4,2;LT1;", {"SetLineType 4 : 4 2 4 2"}},
        {"stretched to millimetres", "UL1,4,2,4,2;LT1,10,1;", {"SetLineType 4 : 133 66 133 66"}},
        {"mode 0 does not stretch", "UL1,4,2;LT1,10,0;", {"SetLineType 2 : 4 2"}},
        {"a length of 0 does not stretch", "UL1,4,2;LT1,0,1;", {"SetLineType 2 : 4 2"}},
        {"gaps that sum to 0 do not stretch", "UL1,4,-4;LT1,10,1;", {"SetLineType 2 : 4 -4"}},
        {"the index loses its sign", "UL-1,7;LT1;", {"SetLineType 1 : 7"}},
        {"8 is the last", "UL8,7;LT8;", {"SetLineType 1 : 7"}},
        {"without gaps: defined and empty", "UL1;LT1;", {"SetLineType 0 :"}},
        {"nineteen gaps at most", many + ";LT2;", {nineteen}},
        {"indexes above 8 are dropped with their gaps", "UL9,1,2;UL32767,1;UL-32767,3;LT9;",
         {"SetPatternLength 8 0xFFFFFFFF"}},
        {"UL; undefines all", "UL1,4;UL;LT1;", {"SetLineStyle 2", "SetPatternLength 8 0x88888888"}},
        {"the number counts as the style sent last", "UL2,4;LT2;LT0;LT2;LT5;", {"SetLineType 1 : 4",
         "SetPatternLength 8 0xFFFFFFFF", "SetLineType 1 : 4", "SetLineStyle 3",
         "SetPatternLength 8 0xFFCCFFCC"}},
    });
    // clang-format on
}

TEST(Lines, AttributesAndMergeControl) {
    // clang-format off
    ExpectOperations({
        {"LA; is flat and mitered", "LA;", {"SetLineAttributes 0x200"}},
        {"square and beveled", "LA1,2,2,5;", {"SetLineAttributes 0x1100"}},
        {"round ends", "LA1,4;", {"SetLineAttributes 0x0"}},
        {"a missing value is round", "LA1;", {"SetLineAttributes 0x0"}},
        {"other kinds are read over", "LA3,9,7,1,2,5;", {"SetLineAttributes 0x1200"}},
        {"kinds are kept", "LA2,5;LA1,2;LA;",
         {"SetLineAttributes 0x1200", "SetLineAttributes 0x1100", "SetLineAttributes 0x200"}},
        {"other joins are round", "LA2,6;", {"SetLineAttributes 0x200"}},
        {"MC; copies", "MC;", {"SetDrawMode 13"}},
        {"MC1 masks", "MC1;", {"SetDrawMode 9"}},
        {"MC1,252 copies", "MC1,252;", {"SetDrawMode 13"}},
        {"MC0 reads no opcode", "MC0,168;", {"SetDrawMode 13"}},
        {"opcode 170 draws no lines", "MC1,170;PD10,0;MC;PD20,0;",
         {"SetDrawMode 13", "SetDrawMode 13", "Line 10 0 20 0"}},
        {"PP and PT take their number along", "PP1PT0.3PD5,0;", {"Line 0 0 5 0"}},
    });
    // clang-format on
}

TEST(Lines, ClampWidth) {
    EXPECT_EQ(ClampWidth(-1e300), 0);
    EXPECT_EQ(ClampWidth(0.99), 0);
    EXPECT_EQ(ClampWidth(9999.99), 9999);
    EXPECT_EQ(ClampWidth(1e300), 10000);
    EXPECT_EQ(ClampWidth(std::nan("")), 0);
    EXPECT_EQ(ClampTruncated(5.0, 20), 20);
}

}  // namespace
}  // namespace qm
