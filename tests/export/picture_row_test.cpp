// Rows turned by 180 degrees and with their components exchanged.
#include "export/picture_writer.h"

#include <gtest/gtest.h>

#include "tests/common/hex_text.h"

namespace qm {
namespace {

TEST(PictureRow, Table) {
    // clang-format off
    const struct {
        const char* name;
        const char* from;
        std::int32_t width;
        int bits;
        bool turned;
        const char* to;
    } rows[] = {
        {"1 bit, whole bytes", "0140", 16, 1, true, "0280"},
        {"1 bit, unused bits become 1", "8000", 9, 1, true, "00FF"},
        {"1 bit, stored unused bits do not show", "007F", 9, 1, true, "007F"},
        {"1 bit, one pixel", "7F", 1, 1, true, "7F"},
        {"1 bit in order keeps them", "807F", 9, 1, false, "807F"},
        {"8 bits", "010203", 3, 8, true, "030201"},
        {"24 bits in order", "010203040506", 2, 24, false, "030201060504"},
        {"24 bits", "010203040506", 2, 24, true, "060504030201"},
    };
    // clang-format on
    for (const auto& row : rows) {
        Bytes to(PictureRowBytes(row.width, row.bits), 0x77);
        MakePictureRow(FromHex(row.from).data(), row.width, row.bits, row.turned, to.data());
        EXPECT_EQ(ToHex(to), row.to) << row.name;
    }
}

}  // namespace
}  // namespace qm
