// Numbers and separators, each read from the look-ahead and, at a block edge, byte by byte: both
// must agree.
#include "interpreter/lexer.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/interpreter/plot_reader.h"

namespace qm {
namespace {

using namespace std::string_literals;

struct RealRow {
    std::string text;
    double value;
    std::uint8_t next;  // the byte that stays unread
};

void PrintTo(const RealRow& row, std::ostream* out) { *out << '"' << row.text << '"'; }

// 10^-digits as the reader makes it: by dividing again and again.
double Tenths(int digits) {
    double factor = 1.0;
    for (int i = 0; i < digits; ++i) factor /= 10.0;
    return factor;
}

// Bytes of a plot in which no progress step ends the look-ahead.
constexpr std::uint32_t kLongSteps = 1U << 30;

class Reals : public testing::TestWithParam<RealRow> {};

TEST_P(Reals, AreReadAlikeInsideABlockAndAcrossItsEdge) {
    const RealRow& row = GetParam();
    for (std::size_t before = 0; before <= row.text.size() + 1; ++before) {
        // In the last round the number stands at the beginning of what can be looked at.
        const bool first = before > row.text.size();
        const std::string blanks(first ? 1 : InputReader::kBlockSize - before, ' ');
        PlotReader reader(blanks + row.text + "          ");
        reader.input.StartProgress(kLongSteps);
        if (first) reader.input.GetCooked();
        double value = -99.0;
        ASSERT_TRUE(reader.in.GetRealParam(value)) << before;
        EXPECT_EQ(value, row.value) << before;
        EXPECT_EQ(std::signbit(value), std::signbit(row.value));
        EXPECT_EQ(reader.input.GetCooked(), row.next) << before;
    }
}

INSTANTIATE_TEST_SUITE_P(
    All, Reals,
    testing::Values(RealRow{"10,", 10.0, ','}, RealRow{"-7654321;", -7654321.0, ';'},
                    RealRow{",12345678:", 12345678.0, ':'}, RealRow{"123:", 123.0, ':'},
                    RealRow{"98\xBB;", 98.0, 0xBB}, RealRow{" ,\r\n\t\1\x1F-.5;", -0.5, ';'},
                    RealRow{"1e3", 1.0, 'e'}, RealRow{"3.P", 3.0, 'P'}, RealRow{"+;", 0.0, ';'},
                    RealRow{"-;", -0.0, ';'}, RealRow{"1\r\n2\0003.\n4\n;"s, 123.4, ';'},
                    RealRow{"4294967297;", 1.0, ';'}, RealRow{"3000000000;", -1294967296.0, ';'},
                    RealRow{"--5", -0.0, '-'}, RealRow{"1.5.5", 1.5, '.'},
                    RealRow{"0.0000000000000000000000000001;", Tenths(28), ';'}));

TEST(Lexer, WhatIsNoNumberStaysUnread) {
    for (const char* text : {"P", ";", "!", "/", ":", "\x1B", "\x80"}) {
        PlotReader reader(std::string(" ,,") + text + "        ");
        double value = 7.0;
        EXPECT_FALSE(reader.in.GetRealParam(value));
        EXPECT_EQ(value, 7.0);
        EXPECT_EQ(reader.in.GetIntParam(), kAbsentInt);
        EXPECT_EQ(reader.in.GetShortParam(), kAbsentShort);
        EXPECT_EQ(reader.input.GetCooked(), static_cast<std::uint8_t>(*text));
    }
}

TEST(Lexer, IntegersWrapAndAreCutTo16Bits) {
    const struct {
        const char* text;
        std::int32_t whole;
        std::int16_t cut;
    } rows[] = {{"-12,", -12, -12},          {"70000;", 70000, 4464}, {"+;", 0, 0},
                {"-32768;", -32768, -32768}, {"1.5;", 1, 1},          {"4294967298;", 2, 2}};
    for (const auto& row : rows) {
        EXPECT_EQ(PlotReader(row.text).in.GetIntParam(), row.whole) << row.text;
        EXPECT_EQ(PlotReader(row.text).in.GetShortParam(), row.cut) << row.text;
    }
}

TEST(Lexer, EscapeValuesKeepWhetherASignWasGiven) {
    const struct {
        const char* text;
        std::int32_t value;
        bool hadSign;
    } rows[] = {{"300X", 300, false},
                {"-5X", -5, true},
                {"+5X", 5, true},
                {"1-2X", -12, true},
                {"X", 0, false}};
    for (const auto& row : rows) {
        PlotReader reader(row.text);
        std::int32_t value = 99;
        bool hadSign = !row.hadSign;
        EXPECT_EQ(GetSignedNumber(reader.input, value, hadSign), 'X') << row.text;
        EXPECT_EQ(value, row.value) << row.text;
        EXPECT_EQ(hadSign, row.hadSign) << row.text;
    }
}

TEST(Lexer, ANumberOfAMillionDigitsEnds) {
    const std::string digits(1000000, '9');
    double value = 0.0;
    EXPECT_TRUE(PlotReader(digits + ";").in.GetRealParam(value));
    EXPECT_TRUE(PlotReader("0." + digits + ";").in.GetRealParam(value));
    EXPECT_NEAR(value, 1.0, 1e-12);
}

TEST(Lexer, AnAbortEndsAListOfNumbers) {
    for (const char* command : {"PD", "BZ", "SD1,", "UL1,"}) {
        PlotReader reader("1;" + (command + std::string(200, '1')));
        reader.abortAt = 20;
        EXPECT_EQ(reader.Interpret(), 1) << command;
    }
}

TEST(Lexer, AnAbortNeverDrawsWhatThePlotDoesNotSay) {
    std::string plot = "SP1;PD";
    for (int i = 100; i < 500; ++i) plot += std::to_string(i) + ",-" + std::to_string(i) + ".75,";
    PlotReader whole(plot);
    whole.Interpret();
    for (std::int32_t percent = 1; percent < 100; ++percent) {
        PlotReader reader(plot);
        reader.abortAt = percent;
        reader.Interpret();
        EXPECT_EQ(reader.progress.back(), percent);
        ASSERT_LT(reader.lines.size(), whole.lines.size());
        const std::vector<std::string> drawn(
            whole.lines.begin(),
            whole.lines.begin() + static_cast<std::ptrdiff_t>(reader.lines.size()));
        EXPECT_EQ(reader.lines, drawn) << percent;
    }
}

TEST(Lexer, MissingParametersLeaveTheirSlots) {
    PlotReader reader("1,2,3;4;");
    EXPECT_EQ(reader.in.GetParams(3), 3);
    reader.input.GetCooked();
    EXPECT_EQ(reader.in.GetParams(3), 1);
    EXPECT_EQ(reader.in.slots[0], 4.0);
    EXPECT_EQ(reader.in.slots[2], 3.0);
}

}  // namespace
}  // namespace qm
