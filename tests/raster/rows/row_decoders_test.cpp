// The row decoders, method by method: what each writes, and that it writes nothing else.
#include "raster/rows/row_decoders.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/common/hex_text.h"

namespace qm {
namespace {

constexpr std::size_t kRow = 12;
constexpr std::uint8_t kUntouched = 0xEE;

// Decodes into a row of EE that is followed by a guard.
std::string Decode(int method, const Bytes& data, const Bytes& seed, std::size_t offset = 0,
                   std::size_t count = SIZE_MAX) {
    Bytes row(seed.size() + 8, kUntouched);
    const RowTarget target{row.data(), seed.size(), offset, std::min(count, seed.size())};
    const ByteSpan span{data.data(), data.size()};
    switch (method) {
        case 0:
            DecodeUnencoded(span, target);
            break;
        case 1:
            DecodeRunLength(span, target);
            break;
        case 2:
            DecodePackBits(span, target);
            break;
        case 3:
            DecodeDeltaRow(span, seed.data(), target);
            break;
        default:
            DecodeReplacementDeltaRow(span, seed.data(), target);
    }
    for (std::size_t i = seed.size(); i < row.size(); ++i) EXPECT_EQ(row[i], kUntouched);
    row.resize(seed.size());
    return ToHex(row);
}

TEST(RowDecoders, Shares) {
    // clang-format off
    const struct {
        const char* name;
        int method;
        const char* data;
        std::size_t offset, count;
        const char* row;
    } rows[] = {
        {"plain", 0, "010203", 0, kRow, "010203 EE*9"},
        {"plain, no data", 0, "", 0, kRow, "EE*12"},
        {"plain runs over its plane", 0, "010203", 2, 1, "EEEE010203 EE*7"},
        {"plain is cut at the row", 0, "07*40", 10, 2, "EE*10 0707"},
        {"plain behind the row", 0, "01", kRow, 1, "EE*12"},
        {"runs", 1, "0005 0206", 0, kRow, "05060606 EE*8"},
        {"runs, odd byte dropped", 1, "0005 03", 0, kRow, "05 EE*11"},
        {"runs are cut at the row", 1, "FF09 0008", 0, kRow, "09*12"},
        {"runs at an offset", 1, "FF09", 11, 1, "EE*11 09"},
        {"literal, no-op, run", 2, "010304 80 0005 FE06", 0, kRow, "030405060606 EE*6"},
        {"literal cut at its plane", 2, "0301020304 0009", 4, 2, "EE*4 0102 EE*6"},
        {"run cut at its plane", 2, "8101 0009", 2, 3, "EEEE010101 EE*7"},
        {"plane cut at the row", 2, "8101", 9, 9, "EE*9 010101"},
        {"literal without its end", 2, "050102", 0, kRow, "0102 EE*10"},
        {"run without its byte", 2, "0001 FF", 0, kRow, "01 EE*11"},
        {"PackBits behind the row", 2, "0001", 99, 1, "EE*12"},
        {"seed alone", 3, "", 0, kRow, "A1A2A3A4A5A6A7A8A9AAABAC"},
        {"two replacements", 3, "215A5B 025C", 0, kRow, "A15A5BA4A55CA7A8A9AAABAC"},
        {"eight bytes", 3, "E2 00*8", 0, kRow, "A1A2 00*8 ABAC"},
        {"eight bytes cut at the row", 3, "E8 00*8 0032", 0, kRow, "A1A2A3A4A5A6A7A8 00*4"},
        {"replacement without its end", 3, "E03233", 0, kRow, "3233A3A4A5A6A7A8A9AAABAC"},
        {"offset behind the row", 3, "1FFFFF", 0, kRow, "A1A2A3A4A5A6A7A8A9AAABAC"},
        {"plane: seed of the plane only", 3, "014D", 4, 3, "EE*4 A54DA7 EE*5"},
        {"plane cut at the row", 3, "0F4D", 10, 9, "EE*10 ABAC"},
    };
    // clang-format on
    const Bytes seed = FromHex("A1A2A3A4A5A6A7A8A9AAABAC");
    for (const auto& row : rows) {
        EXPECT_EQ(Decode(row.method, FromHex(row.data), seed, row.offset, row.count),
                  ToHex(FromHex(row.row)))
            << row.name;
    }
}

TEST(RowDecoders, DeltaOffsetsAddUpToTheFirstByteBelow255) {
    EXPECT_EQ(Decode(3, FromHex("1FFFFF0509 1F0008"), Bytes(600, 1)),
              ToHex(FromHex("01*546 09 01*31 08 01*21")));
}

// Rows of pixels of three bytes.
TEST(RowDecoders, ReplacementDeltaRow) {
    const char* const seed = "0A0B0C 141516 1E1F20 28292A";
    // clang-format off
    const struct {
        const char* name;
        const char* data;
        const char* row;
    } rows[] = {
        {"seed alone", "", seed},
        {"absolute colour, 8 + 8 + 7 bits", "007FC001", "FF8002 141516 1E1F20 28292A"},
        {"differences, the last doubled", "08FC2F", "0A0B0C 131634 1E1F20 28292A"},
        {"differences wrap around", "00C1F0", "FA1AEC 141516 1E1F20 28292A"},
        {"run of two, cached before any colour", "E0", "FFFEFF FFFEFF 1E1F20 28292A"},
        {"seed pixel on the left", "28", "0A0B0C 0A0B0C 1E1F20 28292A"},
        {"left of the first pixel is black", "20", "000000 141516 1E1F20 28292A"},
        {"seed pixel on the right", "48", "0A0B0C 1E1F20 1E1F20 28292A"},
        {"right of the last pixel is black", "5800", "0A0B0C 141516 1E1F20 000000"},
        {"offsets count from the last command", "6068", "FFFEFF 141516 FFFEFF 28292A"},
        {"literal: its further pixels are new", "61008000", "FFFEFF 010000 1E1F20 28292A"},
        {"further pixels are not cached", "6100800060", "FFFEFF 010000 FFFEFF 28292A"},
        {"the first new colour is cached", "0000800060", "010000 010000 1E1F20 28292A"},
        {"run cut at the row", "FA", "0A0B0C 141516 1E1F20 FFFEFF"},
        {"colour without its third byte", "000080", seed},
        {"colour without its second byte", "0080", seed},
        {"offset without its extension", "78", "0A0B0C 141516 1E1F20 FFFEFF"},
        {"offset behind the row", "780160", seed},
        // Counts are extended behind their pixels: a run of 9 + 1, a literal of 8 + 2.
        {"long run", "87008000 01 00 010000", "010000 010000 010000 010000"},
    };
    // clang-format on
    for (const auto& row : rows) {
        EXPECT_EQ(Decode(10, FromHex(row.data), FromHex(seed)), ToHex(FromHex(row.row)))
            << row.name;
    }
    const Bytes black(36, 0);
    EXPECT_EQ(Decode(10, FromHex("87008000 01 00 010000"), black).substr(0, 66),
              "010000010000010000010000010000010000010000010000010000010000020000");
    EXPECT_EQ(Decode(10,
                     FromHex("07 018000018000018000018000018000018000018000018000 02 020000"
                             "020000 00050000"),
                     black)
                  .substr(42),
              "030000040000040000"
              "0A0000"
              "000000");
}

// Random bytes must never write behind the row, with any share of it. Under AddressSanitizer this
// also shows reads behind the data.
TEST(RowDecoders, RandomDataStaysInsideTheRow) {
    std::mt19937 random(1);
    for (int round = 0; round < 3000; ++round) {
        Bytes data(random() % 40);
        for (auto& byte : data) byte = static_cast<std::uint8_t>(random());
        for (const int method : {0, 1, 2, 3, 10}) {
            Decode(method, data, Bytes(kRow, 0), random() % 16, random() % 16);
        }
    }
}

// What a row takes that is not told how wide it is.
TEST(RowDecoders, DecodedSize) {
    const auto size = [](int method, const Bytes& data) {
        return DecodedSize({data.data(), data.size()}, method);
    };
    EXPECT_EQ(size(0, {1, 2, 3}), 3U);
    EXPECT_EQ(size(1, {4, 7, 0, 7, 9}), 6U);                  // an odd byte is dropped
    EXPECT_EQ(size(2, {1, 5, 6, 254, 7, 128, 3, 8, 9}), 7U);  // the last literal lacks two bytes
    EXPECT_EQ(size(3, {0x22, 5, 6, 0x1F, 1, 7, 0x03}), 37U);  // an offset without data adds nothing
    EXPECT_EQ(size(10, {1}), SIZE_MAX);
}

}  // namespace
}  // namespace qm
