// What stands around plot commands: which bytes belong to it, what it says, and where the commands
// go on.
#include "interpreter/envelopes.h"

#include <gtest/gtest.h>

#include "tests/interpreter/ops_table.h"
#include "tests/interpreter/plot_reader.h"

namespace qm {
namespace {

using namespace std::string_literals;

// A dot that shows where interpretation goes on.
const std::string kDot = "PD;";
const std::vector<std::string> kDotDrawn{"Line 0 0 0 0"};

TEST(Envelopes, AreReadOverUpToTheNextCommand) {
    const std::string framing = "\xCD\xCA\x10\x02"s + std::string(17, 'f');
    ExpectOperations({
        {"PJL line", "@PJL SET X=\"PD;PD\";" + kDot, kDotDrawn},
        {"PJL line ends at ESC", "@PJL ENTER\033" + kDot, kDotDrawn},
        {"BEG block", "BEG PD1,1;PD E EN ENX END ENDM;" + kDot, kDotDrawn},
        {"BE is no command", "BE" + kDot, kDotDrawn},
        {"vendor block", "*OcePD1,1;**OceABCDEFG" + kDot, kDotDrawn},
        {"seven bytes behind its end", "*OcePD1,1;*OceABCDE;P" + kDot, kDotDrawn},
        {"vendor block with a false end", "*Oce *Oc*Oce1234567" + kDot, kDotDrawn},
        {"a star alone", "*Oc;" + kDot, kDotDrawn},
        {"framing header type 2", framing + kDot, kDotDrawn},
        {"framing header type 0", "\xCD\xCA\x10\0PPPPP\x02ppDD;;PDPDPD"s + kDot, kDotDrawn},
        {"framing header of another type", "\xCD\xCA\x10\x05"s + kDot, kDotDrawn},
        {"end marker", "\x1APLW" + kDot, {}},
        {"no end marker", "\x1APL" + kDot, kDotDrawn},
        {"nor one letter of it", "\x1A" + kDot, kDotDrawn},
        {"device controls that are complete",
         "\033.(\033.)\033.A\033.B\033.E\033.J\033.K\033.L\033.O\033.R\033.Y\033.Z" + kDot,
         kDotDrawn},
        {"device control with parameters", "\033.I81;;17:" + kDot, kDotDrawn},
        {"device control ended by its line", "\033.N;19\r" + kDot, kDotDrawn},
        {"HP-GL/2 entry", "\033%-1B" + kDot, kDotDrawn},
        {"universal exit", "\033%-12345X" + kDot, kDotDrawn},
        {"another final byte stays", "\033%0PD;", kDotDrawn},
        {"escape and blank", "\033* PD1,1;:" + kDot, kDotDrawn},
        {"unfinished envelope", "BEG PD", {}},
    });
}

TEST(Envelopes, PjlLinesTellResolutionAndLanguage) {
    struct Row {
        const char* line;
        std::int32_t resolution;
        bool pcl;
        bool hpgl;
        bool hpglWhenDetecting;
    };
    for (const Row& row : std::vector<Row>{
             {"PJL SET RESOLUTION = 600", 600, false, false, false},
             {"PJL SET RESOLUTION=0", 300, false, false, false},
             {"PJL SET RESOLUTION=X", 300, false, false, false},
             {"PJL SET RESOLUTION 600", 1200, false, false, false},
             {"PJL SET RESOLUTION=99999999999", INT32_MAX, false, false, false},
             {"PJL SET RESOLUTION=600 LANGUAGE=HPGL", 600, false, false, true},
             {"PJL ENTER LANGUAGE=PCL", 1200, true, false, false},
             {"PJL ENTER LANGUAGE = HPGL2", 1200, false, false, false},
             {"PJL ENTER LANGUAGE=HPGL2", 1200, false, true, true},
             {"PJL ENTER LANGUAGE = HPRTL", 1200, false, true, true},
             {"LANGUAGE=PCL LANGUAGE=HPGL", 1200, true, false, true},
         }) {
        JobState job;
        job.jobResolution = 1200;
        ApplyPjlLine(row.line, job, false);
        EXPECT_EQ(job.jobResolution, row.resolution) << row.line;
        EXPECT_EQ(job.jobLanguagePCL, row.pcl) << row.line;
        EXPECT_EQ(job.jobLanguageHPGL, row.hpgl) << row.line;
        JobState detected;
        ApplyPjlLine(row.line, detected, true);
        EXPECT_EQ(detected.jobLanguageHPGL, row.hpglWhenDetecting) << row.line;
        EXPECT_EQ(detected.jobResolution, 300) << row.line;
    }
}

// 13 bytes of "LANGUAGE=HPGL" fit into 98, or into 79 when detecting.
TEST(Envelopes, OnlyTheStartOfALongPjlLineIsKept) {
    for (const bool detecting : {false, true}) {
        const std::size_t last = detecting ? 66 : 85;
        for (const std::size_t before : {last, last + 1}) {
            PlotReader reader(std::string(before, 'x') + "language=hpgl\n");
            ReadPjlLine(reader.input, reader.State().job, detecting);
            EXPECT_EQ(reader.State().job.jobLanguageHPGL, before == last) << before;
        }
    }
}

}  // namespace
}  // namespace qm
