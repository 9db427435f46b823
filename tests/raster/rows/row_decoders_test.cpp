// The row decoders, method by method: what each writes, and that it writes nothing else.
#include "raster/rows/row_decoders.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace qm {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kRow = 12;
constexpr std::uint8_t kUntouched = 0xEE;

// Decodes into a row of 12 bytes that is followed by a guard; bytes not written read 0xEE.
Bytes Decode(int method, const Bytes& data, std::size_t offset, std::size_t count,
             const Bytes& seed = Bytes(kRow, 0)) {
    Bytes row(kRow + 8, kUntouched);
    const RowTarget target{row.data(), kRow, offset, count};
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
    EXPECT_EQ(Bytes(row.begin() + kRow, row.end()), Bytes(8, kUntouched)) << "behind the row";
    row.resize(kRow);
    return row;
}

// `head`, then untouched bytes up to the row's end.
Bytes Then(Bytes head) {
    head.resize(kRow, kUntouched);
    return head;
}

TEST(RowDecoders, PlainRunsAndPackBits) {
    const std::uint8_t e = kUntouched;
    // clang-format off
    const struct {
        const char* name;
        int method;
        Bytes data;
        std::size_t offset;
        std::size_t count;
        Bytes expected;
    } rows[] = {
        {"plain", 0, {1, 2, 3}, 0, kRow, Then({1, 2, 3})},
        {"plain, no data", 0, {}, 0, kRow, Then({})},
        {"plain runs over its plane", 0, {1, 2, 3}, 2, 1, Then({e, e, 1, 2, 3})},
        {"plain is cut at the row", 0, Bytes(40, 7), 10, 2, {e, e, e, e, e, e, e, e, e, e, 7, 7}},
        {"plain behind the row", 0, {1}, kRow, 1, Then({})},
        {"runs", 1, {0, 5, 2, 6}, 0, kRow, Then({5, 6, 6, 6})},
        {"runs, odd byte dropped", 1, {0, 5, 3}, 0, kRow, Then({5})},
        {"runs are cut at the row", 1, {255, 9, 0, 8}, 0, kRow, Bytes(kRow, 9)},
        {"runs at an offset", 1, {255, 9}, 11, 1, {e, e, e, e, e, e, e, e, e, e, e, 9}},
        {"PackBits literal, no-op, run", 2, {1, 3, 4, 0x80, 0, 5, 0xFE, 6}, 0, kRow,
         Then({3, 4, 5, 6, 6, 6})},
        {"PackBits literal cut at its plane", 2, {3, 1, 2, 3, 4, 0, 9}, 4, 2,
         Then({e, e, e, e, 1, 2})},
        {"PackBits run cut at its plane", 2, {0x81, 1, 0, 9}, 2, 3, Then({e, e, 1, 1, 1})},
        {"PackBits plane cut at the row", 2, {0x81, 1}, 9, 9, {e, e, e, e, e, e, e, e, e, 1, 1, 1}},
        {"PackBits literal without its end", 2, {5, 1, 2}, 0, kRow, Then({1, 2})},
        {"PackBits run without its byte", 2, {0, 1, 0xFF}, 0, kRow, Then({1})},
        {"PackBits behind the row", 2, {0, 1}, 99, 1, Then({})},
    };
    // clang-format on
    for (const auto& row : rows) {
        EXPECT_EQ(Decode(row.method, row.data, row.offset, row.count), row.expected) << row.name;
    }
}

TEST(RowDecoders, DeltaRow) {
    const Bytes seed = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    const std::uint8_t e = kUntouched;
    // clang-format off
    const struct {
        const char* name;
        Bytes data;
        std::size_t offset;
        std::size_t count;
        Bytes expected;
    } rows[] = {
        {"seed alone", {}, 0, kRow, seed},
        {"two replacements", {0x21, 90, 91, 0x02, 92}, 0, kRow,
         {1, 90, 91, 4, 5, 92, 7, 8, 9, 10, 11, 12}},
        {"eight bytes", {0xE2, 0, 0, 0, 0, 0, 0, 0, 0}, 0, kRow,
         {1, 2, 0, 0, 0, 0, 0, 0, 0, 0, 11, 12}},
        {"eight bytes cut at the row", {0xE8, 0, 0, 0, 0, 0, 0, 0, 0, 0x00, 50}, 0, kRow,
         {1, 2, 3, 4, 5, 6, 7, 8, 0, 0, 0, 0}},
        {"replacement without its end", {0xE0, 50, 51}, 0, kRow,
         {50, 51, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}},
        {"offset behind the row", {0x1F, 255, 255}, 0, kRow, seed},
        {"plane: seed of the plane only", {0x01, 77}, 4, 3, Then({e, e, e, e, 5, 77, 7})},
        {"plane cut at the row", {0x0F, 77}, 10, 9, {e, e, e, e, e, e, e, e, e, e, 11, 12}},
    };
    // clang-format on
    for (const auto& row : rows) {
        EXPECT_EQ(Decode(3, row.data, row.offset, row.count, seed), row.expected) << row.name;
    }
}

TEST(RowDecoders, DeltaOffsetsAddUpToTheFirstByteBelow255) {
    Bytes row(400, 1);
    const Bytes data = {0x1F, 0xFF, 0x05, 9, 0x1F, 0, 8};
    DecodeDeltaRow({data.data(), data.size()}, nullptr, {row.data(), 400, 0, 400});
    Bytes expected(400, 0);
    expected[291] = 9;
    expected[292 + 31] = 8;
    EXPECT_EQ(row, expected);
}

// Rows of four pixels; the seed's pixels are {10,11,12} {20,21,22} {30,31,32} {40,41,42}.
TEST(RowDecoders, ReplacementDeltaRow) {
    const Bytes seed = {10, 11, 12, 20, 21, 22, 30, 31, 32, 40, 41, 42};
    const auto with = [&seed](std::size_t at, Bytes part) {
        Bytes row = seed;
        std::copy(part.begin(), part.end(), row.begin() + static_cast<long>(at));
        return row;
    };
    // clang-format off
    const struct {
        const char* name;
        Bytes data;
        Bytes expected;
    } rows[] = {
        {"seed alone", {}, seed},
        {"absolute colour, 8 + 8 + 7 bits", {0x00, 0x7F, 0xC0, 0x01}, with(0, {255, 128, 2})},
        {"differences, the last doubled", {0x08, 0xFC, 0x2F}, with(3, {19, 22, 52})},
        {"differences wrap around", {0x00, 0xC1, 0xF0}, with(0, {250, 26, 236})},
        {"run of two, cached before any colour", {0xE0}, with(0, {255, 254, 255, 255, 254, 255})},
        {"seed pixel on the left", {0x28}, with(3, {10, 11, 12})},
        {"left of the first pixel is black", {0x20}, with(0, {0, 0, 0})},
        {"seed pixel on the right", {0x48}, with(3, {30, 31, 32})},
        {"right of the last pixel is black", {0x58, 0x00}, with(9, {0, 0, 0})},
        {"offsets count from the end of the last command", {0x60, 0x68},
         with(0, {255, 254, 255, 20, 21, 22, 255, 254, 255})},
        {"literal: its further pixels are new colours", {0x61, 0x00, 0x80, 0x00},
         with(0, {255, 254, 255, 1, 0, 0})},
        {"further pixels leave the cached colour", {0x61, 0x00, 0x80, 0x00, 0x60},
         with(0, {255, 254, 255, 1, 0, 0, 255, 254, 255})},
        {"a command's first new colour is cached", {0x00, 0x00, 0x80, 0x00, 0x60},
         with(0, {1, 0, 0, 1, 0, 0})},
        {"run cut at the row", {0xFA}, with(9, {255, 254, 255})},
        {"colour without its third byte", {0x00, 0x00, 0x80}, seed},
        {"colour without its second byte", {0x00, 0x80}, seed},
        {"offset without its extension", {0x78}, with(9, {255, 254, 255})},
        {"offset behind the row", {0x78, 0x01, 0x60}, seed},
    };
    // clang-format on
    for (const auto& row : rows) {
        EXPECT_EQ(Decode(10, row.data, 0, kRow, seed), row.expected) << row.name;
    }
}

TEST(RowDecoders, ReplacementCountsAreExtendedBehindTheirPixels) {
    // A run of 9 + 1 and a literal of 8 + 2, told apart by their first bytes.
    const Bytes run = {0x87, 0x00, 0x80, 0x00, 0x01, 0x00, 0x01, 0x00, 0x00};
    Bytes literal = {0x07};
    for (int i = 0; i < 8; ++i) literal.insert(literal.end(), {0x01, 0x80, 0x00});
    literal.push_back(2);
    for (int i = 0; i < 2; ++i) literal.insert(literal.end(), {0x02, 0x00, 0x00});
    literal.insert(literal.end(), {0x00, 0x05, 0x00, 0x00});
    const struct {
        Bytes data;
        Bytes firstBytes;  // of each pixel
    } rows[] = {
        {run, {1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 2, 0}},
        {literal, {3, 3, 3, 3, 3, 3, 3, 3, 4, 4, 10, 0}},
    };
    for (const auto& row : rows) {
        Bytes stored(36, kUntouched);
        DecodeReplacementDeltaRow({row.data.data(), row.data.size()}, nullptr,
                                  {stored.data(), 36, 0, 36});
        Bytes first;
        for (std::size_t i = 0; i < 36; i += 3) first.push_back(stored[i]);
        EXPECT_EQ(first, row.firstBytes);
    }
}

// Random bytes must never write behind the row, with any share of it. Under AddressSanitizer this
// also shows reads behind the data.
TEST(RowDecoders, RandomDataStaysInsideTheRow) {
    std::mt19937 random(1);
    for (int round = 0; round < 3000; ++round) {
        Bytes data(random() % 40);
        for (auto& byte : data) byte = static_cast<std::uint8_t>(random());
        for (const int method : {0, 1, 2, 3, 10}) {
            Decode(method, data, random() % 16, random() % 16);
        }
    }
}

}  // namespace
}  // namespace qm
