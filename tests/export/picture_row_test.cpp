// Rows turned by 180 degrees and with their components exchanged.
#include "export/picture_writer.h"

#include <gtest/gtest.h>

#include <vector>

namespace qm {
namespace {

using Row = std::vector<std::uint8_t>;

Row Made(const Row& from, std::int32_t width, int bits, bool turned) {
    Row to(PictureRowBytes(width, bits), 0x77);
    MakePictureRow(from.data(), width, bits, turned, to.data());
    return to;
}

TEST(PictureRow, Table) {
    const struct {
        const char* name;
        Row from;
        std::int32_t width;
        int bits;
        bool turned;
        Row expected;
    } rows[] = {
        {"1 bit, whole bytes", {0x01, 0x40}, 16, 1, true, {0x02, 0x80}},
        {"1 bit, unused bits become 1", {0x80, 0x00}, 9, 1, true, {0x00, 0xFF}},
        {"1 bit, stored unused bits do not show", {0x00, 0x7F}, 9, 1, true, {0x00, 0x7F}},
        {"1 bit, one pixel", {0x7F}, 1, 1, true, {0x7F}},
        {"1 bit in order keeps them", {0x80, 0x7F}, 9, 1, false, {0x80, 0x7F}},
        {"8 bits", {1, 2, 3}, 3, 8, true, {3, 2, 1}},
        {"24 bits in order", {1, 2, 3, 4, 5, 6}, 2, 24, false, {3, 2, 1, 6, 5, 4}},
        {"24 bits", {1, 2, 3, 4, 5, 6}, 2, 24, true, {6, 5, 4, 3, 2, 1}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Made(row.from, row.width, row.bits, row.turned), row.expected) << row.name;
}

}  // namespace
}  // namespace qm
