// Page ends, plot sizes and what a page starts with.
#include "interpreter/pages.h"

#include <gtest/gtest.h>

#include "tests/interpreter/ops_table.h"
#include "tests/interpreter/plot_reader.h"

namespace qm {
namespace {

TEST(Pages, Ends) {
    const std::vector<std::string> ended{"Line 0 0 0 0", "EndPage 1", "SetColor 0x000000",
                                         "SetPatternLength 8 0xFFFFFFFF"};
    // clang-format off
    ExpectOperations({
        {"PG", "PD;PG;", ended},
        {"PG twice", "PD;PG1;PG;PG;", ended},
        {"NR", "PD;NR5;", ended},
        {"nothing drawn", "PG;NR;PU5,5;PG;", {}},
        {"a line outside the window still counts", "IW0,0,1,1;PU5,5;PD6,6;PG;",
         {"EndPage 1", "SetColor 0x000000", "SetPatternLength 8 0xFFFFFFFF"}},
        {"frame advance", "IP0,40,1,1;FR100.9;FR-30;FR;",
         {"SetFrameOffset 140", "SetFrameOffset 110"}},
        {"BP hides its name", "BP1,\"PD1,1;\",2,1;PD;", {"Line 0 0 0 0"}},
        {"BP without a name", "BP1;PD;", {"Line 0 0 0 0"}},
        {"BP ends at another byte", "BPINSP1;", PenSelected(1, "0x000000")},
        {"BP ends at a digit", "BP2 7,3;PD;", {"Line 0 0 0 0"}},
    });
    // clang-format on
    EXPECT_NE(Ops("PD;PG;PD;").find("result 2"), std::string::npos);
}

TEST(Pages, PlotSize) {
    const struct {
        const char* plot;
        std::int32_t length;
        bool landscape;
        std::int32_t offset;
    } rows[] = {
        {"PS2032,1016;", 2032, true, -600},
        {"PS1016,2032;", 1016, false, 0},
        {"PS1016,0;", 1016, true, -300},
        {"PS-32768,5;", 0, true, 0},
        {"@PJL SET RESOLUTION=600\nPS2032,1016;", 2032, true, -1200},
    };
    for (const auto& row : rows) {
        PlotReader reader(row.plot);
        reader.Interpret();
        EXPECT_EQ(reader.State().page.plotLength, row.length) << row.plot;
        EXPECT_EQ(reader.State().page.plotLandscape, row.landscape) << row.plot;
        EXPECT_EQ(reader.State().page.rasterYOffset, row.offset) << row.plot;
    }
}

}  // namespace
}  // namespace qm
