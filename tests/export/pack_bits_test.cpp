// PackBits: the rules one by one, and a round trip through the decoder of the import.
#include "export/pack_bits.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "raster/rows/row_decoders.h"

namespace qm {
namespace {

using Row = std::vector<std::uint8_t>;

Row Packed(const Row& row) {
    Row packed(PackBitsBound(row.size()) + 1, 0x77);
    const std::size_t size = PackBits(row.data(), row.size(), packed.data());
    EXPECT_LE(size, PackBitsBound(row.size()));
    EXPECT_EQ(packed.back(), 0x77);
    packed.resize(size);
    return packed;
}

// Bytes that differ from their neighbours.
Row Singles(std::size_t count) {
    Row row;
    for (std::size_t i = 0; i < count; ++i) row.push_back(static_cast<std::uint8_t>(i % 2 + 1));
    return row;
}

Row operator+(Row a, const Row& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

Row Equal(std::size_t count, std::uint8_t byte) { return Row(count, byte); }

TEST(PackBits, Rules) {
    // clang-format off
    const struct {
        const char* name;
        Row row;
        Row packed;
    } rows[] = {
        {"nothing", {}, {}},
        {"one byte", {9}, {0, 9}},
        {"a run", Equal(16, 0), {241, 0}},
        {"a run of 2", Equal(2, 5), {255, 5}},
        {"128", Equal(128, 5), {129, 5}},
        {"129: one left", Equal(129, 5), {129, 5, 0, 5}},
        {"130: two left", Equal(130, 5), {129, 5, 255, 5}},
        {"256", Equal(256, 5), {129, 5, 129, 5}},
        {"257 and a literal", Equal(257, 5) + Row{7, 8}, {129, 5, 129, 5, 2, 5, 7, 8}},
        {"a literal of 128", Singles(128), Row{127} + Singles(128)},
        {"129 single bytes", Singles(128) + Row{9}, Row{127} + Singles(128) + Row{0, 9}},
        {"a run of 2 joins a literal", {1, 5, 5}, {2, 1, 5, 5}},
        {"... and the literal goes on", {1, 5, 5, 2, 3}, {4, 1, 5, 5, 2, 3}},
        {"... several times", {1, 5, 5, 6, 6, 2}, {5, 1, 5, 5, 6, 6, 2}},
        {"a run of 3 does not", {1, 5, 5, 5, 2}, {0, 1, 254, 5, 0, 2}},
        {"a run of 2 behind a run does not", Equal(3, 4) + Equal(2, 5) + Row{6},
         {254, 4, 255, 5, 0, 6}},
        {"the joined literal may reach 128", Singles(126) + Equal(2, 5),
         Row{127} + Singles(126) + Equal(2, 5)},
        {"but not 129", Singles(127) + Equal(2, 5), Row{126} + Singles(127) + Row{255, 5}},
        {"a full literal is not joined", Singles(128) + Equal(2, 5) + Row{6},
         Row{127} + Singles(128) + Row{255, 5, 0, 6}},
    };
    // clang-format on
    for (const auto& row : rows) EXPECT_EQ(Packed(row.row), row.packed) << row.name;
}

// Rows of every mixture of runs and noise come back, at odd lengths and places.
TEST(PackBits, RoundTripThroughTheDecoder) {
    std::mt19937 random(20240229);
    for (int round = 0; round < 4000; ++round) {
        Row row(random() % 700);
        const auto noise = random() % 5;
        for (std::size_t i = 0; i < row.size(); ++i) {
            const bool fresh = i == 0 || random() % 100 < noise * noise * 6;
            row[i] = fresh ? static_cast<std::uint8_t>(random()) : row[i - 1];
        }
        const Row packed = Packed(row);
        Row back(row.size() + 1, 0x77);
        DecodePackBits({packed.data(), packed.size()}, {back.data(), row.size(), 0, row.size()});
        EXPECT_EQ(back.back(), 0x77);
        back.pop_back();
        ASSERT_EQ(back, row) << "round " << round;
    }
}

}  // namespace
}  // namespace qm
