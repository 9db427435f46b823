// Is it a plot? The rows are the traps of the detection pass.
#include <gtest/gtest.h>

#include "tests/interpreter/plot_reader.h"

namespace qm {
namespace {

using namespace std::string_literals;

TEST(Detect, Table) {
    const std::string framing = "\xCD\xCA\x10\x02"s + std::string(17, 'f');
    const struct {
        const char* name;
        std::string data;
        int expected;
    } rows[] = {
        {"six mnemonics", "IN;SP1;PU0,0;PD100,0;PA0,0;PU;", 1},
        {"five mnemonics", "IN;SP1;PU0,0;PD100,0;PA0,0;", 0},
        {"lower case", "in;sp1;pu0,0;pd100,0;pa0,0;pu;", 1},
        {"empty", "", 0},
        {"text", "In the beginning of spring the pads put up papers.", 0},
        {"an unknown pair breaks the run", "INSPPUXXPDPAPUIN", 0},
        {"a letter and a blank break the run", "INSPPU P PDPAPU", 0},
        {"a letter and @ do not", "INSPPUX@;PDPAPU", 1},
        {"brackets break the run", "INSPPU[PDPAPU", 0},
        {"pairs with a handler only do not count", "BZBRPPBZBRPP", 0},
        {"pairs without a handler count", "ASCAEWFSGMAS", 1},
        {"five control bytes end it", "\1\2\3\4\5INSPPUPDPAPU", 0},
        {"... behind letters too", "A\1B\2C\3D\4E\5INSPPUPDPAPU", 0},
        {"four do not", "\1\2\3\4INSPPUPDPAPU", 1},
        {"tabs are control bytes", "\t\t\t\t\tINSPPUPDPAPU", 0},
        {"vertical tabs are not", "\v\v\v\v\vINSPPUPDPAPU", 1},
        {"line feeds do not count", std::string(100, '\n') + "INSPPUPDPAPU", 1},
        {"a high byte ends it", "INSPPU\xE4PDPAPU", 0},
        {"a lone 0xCD does not", "INSPPU\xCD PDPAPU", 1},
        {"escapes count but do not decide", "\033E\033E\033E\033E\033E\033E", 1},
        {"... when an unknown pair stands anywhere", ";XX\033E\033E\033E\033E\033E\033E", 0},
        {"PE hides its data", ";PE\x7F\xFF{[;PE;PE;PE;PE;PE;", 1},
        {"comments hide their text", "CO\"XX YY\"INSPPUPDPAPU", 1},
        {"CO eats one byte", "COXINSPPUPDPAPU", 1},
        {"framing header alone", framing, 1},
        {"framing header and rubbish", framing + "ABRACADABRA\xFF", 1},
        {"a PJL line", "@PJL XX=YY\nINSPPUPDPAPU", 1},
        {"NULs", std::string(100000, '\0'), 0},
        {"escapes only", std::string(50000, '\033'), 1},
    };
    for (const auto& row : rows) EXPECT_EQ(PlotReader(row.data).Detect(), row.expected) << row.name;
}

TEST(Detect, ReadsOnlyAsFarAsItNeeds) {
    PlotReader reader("INSPPUPDPAPUREST" + std::string(200, ' '));
    EXPECT_EQ(reader.Detect(), 1);
    EXPECT_EQ(reader.Read(4), "REST");
}

}  // namespace
}  // namespace qm
