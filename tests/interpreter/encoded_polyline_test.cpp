// PE: encoded coordinates, flags and the ways in which it ends.
#include "interpreter/encoded_polyline.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "tests/interpreter/ops_table.h"

namespace qm {
namespace {

// Encodes one coordinate with `fractionBits` fractional bits; base 64, or 32 for seven-bit data.
std::string Encode(double value, int fractionBits = 0, bool sevenBits = false) {
    auto scaled =
        static_cast<long long>(std::llround(std::fabs(value) * (1LL << fractionBits))) * 2;
    if (value < 0) ++scaled;
    const long long base = sevenBits ? 32 : 64;
    std::string text;
    while (scaled >= base) {
        text += static_cast<char>(63 + scaled % base);
        scaled /= base;
    }
    return text + static_cast<char>((sevenBits ? 95 : 191) + scaled);
}

std::string Pair(double x, double y) { return Encode(x) + Encode(y); }

TEST(EncodedPolyline, Numbers) {
    for (const bool sevenBits : {false, true}) {
        for (const int bits : {0, 4}) {
            const double wanted[] = {0, 1, -1, 31, 32, 2048, -4095, 123456, 0.5, -3.25};
            for (const double value : wanted) {
                if (bits == 0 && value != std::floor(value)) continue;
                std::string plot = sevenBits ? "PE7" : "PE";
                if (bits > 0) plot += ">" + Encode(bits, 0, sevenBits);
                plot += "=" + Encode(value, bits, sevenBits) + Encode(0, bits, sevenBits);
                // Scaled by 100, so that fractions show.
                const auto lines = OperationsOf("SC0,100,0,100,2;" + plot + ";");
                ASSERT_EQ(lines.size(), 1U);
                EXPECT_EQ(lines[0], "Polyline 2 : 0,0 " +
                                        std::to_string(static_cast<int>(value * 100)) + ",0");
            }
        }
    }
}

TEST(EncodedPolyline, Flags) {
    const std::string pen3 = ":" + Encode(3);
    std::vector<std::string> penChange{"Polyline 2 : 0,0 5,5"};
    for (const auto& line : PenSelected(3, "0x00FF00")) penChange.push_back(line);
    penChange.push_back("Polyline 2 : 5,5 6,6");
    // clang-format off
    ExpectOperations({
        {"relative by default", "PU10,10;PE" + Pair(5, 5) + Pair(1, -1) + ";",
         {"Polyline 3 : 10,10 15,15 16,14"}},
        {"absolute for one pair", "PU10,10;PE=" + Pair(5, 5) + Pair(1, 1) + ";",
         {"Polyline 3 : 10,10 5,5 6,6"}},
        {"pen up for one pair", "PE" + Pair(1, 1) + "<" + Pair(5, 5) + Pair(1, 1) + ";",
         {"Polyline 2 : 0,0 1,1", "Polyline 2 : 6,6 7,7"}},
        {"a move alone draws nothing", "PE<" + Pair(5, 5) + ";", {}},
        {"pen change cuts the run", "PE" + Pair(5, 5) + pen3 + Pair(1, 1) + ";", penChange},
        {"flags may have their top bit set", "PE\xBC\xBD" + Pair(5, 5) + Pair(1, 1) + ";",
         {"Polyline 2 : 5,5 6,6"}},
        {"blanks and line ends between numbers", "PE " + Encode(5) + " \r\n" + Encode(6) + " ;",
         {"Polyline 2 : 0,0 5,6"}},
        {"rectangles", "PU1,1;PE9" + Pair(2, 2) + Pair(10, 20) + ";PD;",
         {"FilledRectangle 3 3 13 23", "Line 3 3 3 3"}},
        {"they leave the pen up", "PE9" + Pair(2, 2) + Pair(1, 1) + ";PA5,5;",
         {"FilledRectangle 2 2 3 3"}},
        {"a pen-up flag ends them",
         "PE9" + Pair(2, 2) + Pair(5, 5) + "<" + Pair(1, 1) + Pair(1, 1) + ";",
         {"FilledRectangle 2 2 7 7", "Polyline 2 : 3,3 4,4"}},
        {"the pen stays down", "PE" + Pair(1, 1) + ";PA5,5;",
         {"Polyline 2 : 0,0 1,1", "Line 1 1 5 5"}},
        {"the pen stays up behind a move", "PE<" + Pair(1, 1) + ";PA5,5;", {}},
        {"a window clips", "IW0,0,3,3;PE" + Pair(5, 5) + ";", {"Line 0 0 3 3"}},
        {"polygon mode", "PM0;PE" + Pair(5, 5) + ";PM2;", {}},
    });
    // clang-format on
}

TEST(EncodedPolyline, Ends) {
    ExpectOperations({
        {"';' behind x",
         "PE" + Pair(5, 5) + Encode(1) + ";PD;",
         {"Polyline 2 : 0,0 5,5", "Line 5 5 5 5"}},
        {"';' inside a number drops the list, nothing more",
         "PE" + Pair(5, 5) + "\x55;PD9,9;",
         {"Line 5 5 9 9"}},
        {"a broken number drops up to the next ';'",
         "PE" + Pair(5, 5) + "\x55!PD1,1;PD9,9;",
         {"Line 5 5 9 9"}},
        {"'7' in front of y", "PE" + Pair(5, 5) + Encode(1) + "7PD1,1;PD9,9;", {"Line 5 5 9 9"}},
        {"';' inside a rectangle", "PE9" + Pair(2, 2) + Encode(1) + ";PU;", {}},
        {"PE; puts the pen down and marks the page",
         "PE;PG;PA1,1;",
         {"EndPage 1", "SetColor 0x000000", "SetPatternLength 8 0xFFFFFFFF", "Line 0 0 1 1"}},
        {"a broken pen number selects pen 0", "PE:!" + Pair(5, 5) + ";",
         [] {
             auto lines = PenSelected(0, "0xFFFFFF");
             lines.push_back("Polyline 2 : 0,0 5,5");
             return lines;
         }()},
        {"a broken fraction changes nothing", "PE>!" + Pair(5, 5) + ";", {"Polyline 2 : 0,0 5,5"}},
        {"end of input", "PE" + Pair(5, 5), {"Polyline 2 : 0,0 5,5"}},
    });
}

// Points that are just drawn to are taken many at a time, when there are bytes enough to look at.
TEST(EncodedPolyline, IsReadAlikeInLargePiecesAndSmallOnes) {
    std::uint32_t random = 1;
    const auto below = [&random](std::uint32_t end) {
        random = random * 1664525U + 1013904223U;
        return (random >> 8) % end;
    };
    const auto read = [](const std::string& plot, std::size_t piece) {
        std::string lines;
        std::size_t done = 0;
        OperationRecorder reader(
            [&](void* buffer, std::size_t size) {
                const std::size_t count =
                    plot.copy(static_cast<char*>(buffer), std::min(size, piece), done);
                done += count;
                return count;
            },
            1U << 30,  // so that no progress step ends the look-ahead
            [&lines](std::string_view line) { lines.append(line).append("\n"); });
        reader.Interpret();
        return lines;
    };
    for (int i = 0; i < 400; ++i) {
        const bool sevenBits = i % 2 == 0;
        std::string plot = sevenBits ? "PE7" : "PE";
        for (int byte = 0; byte < 900; ++byte) {
            const std::uint32_t kind = below(i % 3 == 0 ? 2 : 400);
            std::uint32_t c = (sevenBits ? 95 : 191) + below(32);
            if (kind == 0) c = 63 + below(64);
            if (kind == 2) c = below(256);
            if (kind == 3) c = '6' + below(9) + 128 * below(2);  // flags
            plot += c == ';' ? '<' : static_cast<char>(c);
        }
        plot += ";PA5,5;";
        ASSERT_EQ(read(plot, plot.size()), read(plot, 1)) << plot;
    }
}

TEST(EncodedPolyline, RunsAreCutAt255Points) {
    std::string plot = "PE";
    for (int i = 0; i < 299; ++i) plot += Pair(1, 0);
    const auto lines = OperationsOf(plot + ";");
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].rfind("Polyline 255 : 0,0 ", 0), 0U);
    EXPECT_EQ(lines[1].rfind("Polyline 45 : 255,0 ", 0), 0U);
}

}  // namespace
}  // namespace qm
