// The byte stream: what comes at its edges (blocks, end of input, framing records) and when
// progress is reported.
#include "interpreter/input_reader.h"

#include <gtest/gtest.h>

#include "tests/interpreter/plot_reader.h"

namespace qm {
namespace {

using namespace std::string_literals;

std::string Padding(std::size_t count) { return std::string(count, ' '); }

TEST(InputReader, CookedReadingLeavesOutLineEndsAndNuls) {
    PlotReader reader("A\r\n\0B\nC"s);
    EXPECT_EQ(reader.Read(3), "ABC");
    PlotReader raw("A\r\n\0B"s);
    EXPECT_EQ(raw.Read(5, true), "A\r\n\0B"s);
}

TEST(InputReader, AStaleByteAndThenSemicolonsFollowTheLastByte) {
    PlotReader reader("XY");
    EXPECT_EQ(reader.Read(3), "XYX");
    EXPECT_FALSE(reader.input.endOfInput);
    EXPECT_EQ(reader.Read(3), ";;;");
    EXPECT_TRUE(reader.input.endOfInput);

    PlotReader empty("");
    EXPECT_EQ(empty.Read(2, true), "\0;"s);
}

TEST(InputReader, APushedBackStaleByteIsLostButTheByteBeforeItIsNot) {
    PlotReader reader("XY");
    reader.Read(3);
    reader.input.UngetChars(2);
    EXPECT_EQ(reader.Read(2), "Y;");
}

TEST(InputReader, PushBackReachesAcrossABlockEdge) {
    for (std::size_t split = 1; split <= 3; ++split) {
        PlotReader reader(Padding(InputReader::kBlockSize - split) + "ABCDEF");
        reader.Read(InputReader::kBlockSize - split);
        EXPECT_EQ(reader.Read(4), "ABCD");
        reader.input.UngetChars(4);
        EXPECT_EQ(reader.Read(6), "ABCDEF") << split;
    }
}

TEST(InputReader, EveryReadOfASmallFileIsAProgressStep) {
    PlotReader reader(Padding(50));
    reader.input.StartProgress(50);
    reader.Read(3);
    reader.input.UngetChar();
    reader.Read(1);
    EXPECT_EQ(reader.progress, (std::vector<std::int32_t>{1, 2, 3, 4}));
}

TEST(InputReader, ProgressComesAtMost99TimesAndBlocksDoNotMatter) {
    const std::size_t size = 3 * InputReader::kBlockSize + 100;
    const std::string plot = Padding(size);
    PlotReader reader(plot);
    reader.input.StartProgress(static_cast<std::uint32_t>(size));
    reader.Read(size / 99 - 1);
    EXPECT_TRUE(reader.progress.empty());
    reader.Read(1);
    EXPECT_EQ(reader.progress, std::vector<std::int32_t>{1});
    reader.Read(2 * size);
    EXPECT_EQ(reader.progress.size(), 99U);
    EXPECT_EQ(reader.progress.back(), 99);
}

TEST(InputReader, PushedBackBytesDoNotCountTwice) {
    const std::string plot = Padding(99 * 10);
    PlotReader reader(plot);
    reader.input.StartProgress(990);
    for (int i = 0; i < 9; ++i) {
        reader.Read(1);
        reader.input.UngetChar();
        reader.Read(1);
    }
    EXPECT_TRUE(reader.progress.empty());
    reader.Read(1);
    EXPECT_EQ(reader.progress.size(), 1U);
}

TEST(InputReader, AnAbortStopsRefillsAndPushBack) {
    const std::string plot = "\r" + Padding(InputReader::kBlockSize + 100);
    PlotReader reader(plot);
    reader.abortAt = 2;
    reader.input.StartProgress(static_cast<std::uint32_t>(plot.size()));
    reader.Read(
        2 *
        plot.size());  // ends, although the buffer's first byte is one that cooked reading skips
    EXPECT_TRUE(reader.input.aborted);
    EXPECT_EQ(reader.input.ReadRaw(nullptr, 10), 0U);
}

TEST(InputReader, FramingRecordsAreRemoved) {
    const std::string record = "\xCD\xCA\x10\x02"s + std::string(16, 'r');
    const std::string tail = Padding(40);
    const struct {
        const char* name;
        std::string data;
        std::string read;
    } rows[] = {
        {"record", "AB" + record + "CD" + tail, "ABCD"},
        {"record and 0x01", "AB" + record + "\x01" + "CD" + tail, "ABCD"},
        {"other bytes behind 0xCD", "A\xCD\xCA\x10\x03" + tail, "A\xCD\xCA\x10"},
        {"too close to the end of the block", "AB" + record + "CD", "AB\xCD\xCA"},
        {"just not too close", "AB" + record + "CDE", "ABCD"},
        {"behind a skipped line end", "A\n" + record + tail, "A\xCD\xCA\x10"},
    };
    for (const auto& row : rows) {
        PlotReader reader(row.data);
        reader.input.EnableFraming();
        EXPECT_EQ(reader.Read(4), row.read) << row.name;
    }
}

TEST(InputReader, FramingRecordsAreNoProgress) {
    const std::string record = "\xCD\xCA\x10\x02"s + std::string(16, 'r');
    PlotReader reader(record + Padding(970));
    reader.input.EnableFraming();
    reader.input.StartProgress(990);
    reader.Read(8);  // and the record's first byte
    EXPECT_TRUE(reader.progress.empty());
    reader.Read(1);
    EXPECT_EQ(reader.progress.size(), 1U);
}

TEST(InputReader, CountedReadsStopAtTheEndOfInput) {
    PlotReader reader("0123456789");
    std::uint8_t bytes[64];
    reader.Read(4);
    // The stale byte is data like any other; the synthetic ';' is not.
    EXPECT_EQ(reader.input.ReadRaw(bytes, sizeof bytes), 7U);
    EXPECT_TRUE(reader.input.endOfInput);
    reader.input.SkipRaw(SIZE_MAX);
}

}  // namespace
}  // namespace qm
