// PackBits: the rules one by one, and a round trip through the decoder of the import.
#include "export/pack_bits.h"

#include <gtest/gtest.h>

#include <random>

#include "raster/rows/row_decoders.h"
#include "tests/common/hex_text.h"

namespace qm {
namespace {

Bytes Packed(const Bytes& row) {
    Bytes packed(PackBitsBound(row.size()) + 1, 0x77);
    const std::size_t size = PackBits(row.data(), row.size(), packed.data());
    EXPECT_LE(size, PackBitsBound(row.size()));
    EXPECT_EQ(packed.back(), 0x77);
    packed.resize(size);
    return packed;
}

TEST(PackBits, Rules) {
    std::string singles;  // 126 bytes that differ from their neighbours
    while (singles.size() < 252) singles += "0102";
    // clang-format off
    const struct {
        const char* name;
        std::string row;
        std::string packed;
    } rows[] = {
        {"nothing", "", ""},
        {"one byte", "09", "0009"},
        {"a run", "00*16", "F100"},
        {"a run of 2", "05*2", "FF05"},
        {"128", "05*128", "8105"},
        {"129: one left", "05*129", "8105 0005"},
        {"130: two left", "05*130", "8105 FF05"},
        {"256", "05*256", "8105 8105"},
        {"257 and a literal", "05*257 0708", "8105 8105 02050708"},
        {"a literal of 128", singles + "0304", "7F" + singles + "0304"},
        {"129 single bytes", singles + "030409", "7F" + singles + "0304 0009"},
        {"a run of 2 joins a literal", "010505", "02010505"},
        {"... and the literal goes on", "0105050203", "040105050203"},
        {"... several times", "010505060602", "05010505060602"},
        {"a run of 3 does not", "01 0505 0502", "0001 FE05 0002"},
        {"a run of 2 behind a run does not", "040404 0505 06", "FE04 FF05 0006"},
        {"the joined literal may reach 128", singles + "0505", "7F" + singles + "0505"},
        {"but not 129", singles + "030505", "7E" + singles + "03 FF05"},
        {"a full literal is not joined", singles + "0304050506", "7F" + singles + "0304 FF05 0006"},
    };
    // clang-format on
    for (const auto& row : rows) {
        EXPECT_EQ(ToHex(Packed(FromHex(row.row))), ToHex(FromHex(row.packed))) << row.name;
    }
}

// Rows of every mixture of runs and noise come back, at odd lengths and places.
TEST(PackBits, RoundTripThroughTheDecoder) {
    std::mt19937 random(20240229);
    for (int round = 0; round < 4000; ++round) {
        Bytes row(random() % 700);
        const auto noise = random() % 5;
        for (std::size_t i = 0; i < row.size(); ++i) {
            const bool fresh = i == 0 || random() % 100 < noise * noise * 6;
            row[i] = fresh ? static_cast<std::uint8_t>(random()) : row[i - 1];
        }
        const Bytes packed = Packed(row);
        Bytes back(row.size() + 1, 0x77);
        DecodePackBits({packed.data(), packed.size()}, {back.data(), row.size(), 0, row.size()});
        EXPECT_EQ(back.back(), 0x77);
        back.pop_back();
        ASSERT_EQ(back, row) << "round " << round;
    }
}

}  // namespace
}  // namespace qm
