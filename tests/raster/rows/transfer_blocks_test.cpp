// Blocks of rows: what an entry stores, where a block ends, and that lying counts stay cheap.
#include "raster/rows/transfer_blocks.h"

#include <gtest/gtest.h>

#include "tests/common/hex_text.h"

namespace qm {
namespace {

// The rows of an upright bitmap of the picture, top first, as hex digits between blanks.
std::string Rows(CRTLRaster& raster) {
    const auto size = raster.PrepareBitmap(0);
    if (!size) return "none";
    Bytes block(*size, 0);
    raster.FillBitmap(block.data(), 0);
    const auto view = PackedBitmapView::Parse(block.data(), block.size());
    std::string text;
    for (std::int32_t y = 0; y < view->Height(); ++y) {
        if (y != 0) text += ' ';
        text += ToHex(view->RowFromTop(y), view->RowBytes());
    }
    return text;
}

TEST(TransferBlocks, AdaptiveEntries) {
    // clang-format off
    const struct {
        const char* name;
        const char* block;
        std::int32_t nextRow;
        const char* rows;
    } rows[] = {
        {"a row a method", "0000020102 0100020107 0200030108 09 0300020106", 4, "0102 0707 0809 0806"},
        {"three copies", "0000020102 050003", 4, "0102 0102 0102 0102"},
        {"empty rows become the seed", "0000020102 040002 050001", 4, "0102 0000 0000 0000"},
        {"copies of no seed are empty", "050002", 2, "0000 0000"},
        {"no rows at all", "040000 050000", 0, "none"},
        {"delta of one byte: the seed", "0000020102 030001E0 050001", 3, "0102 0102 0102"},
        {"unknown command ends it", "00000109 060001 05000001 08", 1, "0900"},
        {"high command ends it", "00000109 800000 00000108", 1, "0900"},
        {"count beyond the block", "00000903", 1, "0300"},
        {"half an entry", "00000109 0400", 1, "0900"},
    };
    // clang-format on
    for (const auto& row : rows) {
        CRTLRaster raster(16, 0, 1, kNoPlanes);
        const Bytes input = FromHex(std::string(row.block) + " 58");
        SpanSource source({input.data(), input.size()});
        const auto size = static_cast<std::int64_t>(input.size()) - 1;
        EXPECT_EQ(AddAdaptiveBlock(source, size, raster, 0, {}), row.nextRow) << row.name;
        EXPECT_EQ(source.Left(), 1U) << row.name << ": the counted bytes and no more";
        EXPECT_EQ(Rows(raster), row.rows) << row.name;
    }
}

TEST(TransferBlocks, AdaptiveClaimsAreBounded) {
    // 100000 entries ask for 6.5 thousand million rows of 4 bytes, first empty, then repeated.
    Bytes block;
    for (int i = 0; i < 50000; ++i) block.insert(block.end(), {4, 255, 255});
    for (int i = 0; i < 50000; ++i) block.insert(block.end(), {5, 255, 255});
    SpanSource source({block.data(), block.size()});
    CRTLRaster raster(8, 0, 8, kNoPlanes);
    const std::int64_t claimed = INT64_C(0x7FFFFFFF);
    EXPECT_EQ(AddAdaptiveBlock(source, claimed, raster, 0, {}), INT32_MAX);
    EXPECT_EQ(raster.RowCount(), (1 << 30) / 4) << "2 GiB of 8-byte rows";
    EXPECT_EQ(raster.AddRow(INT32_MAX, {}, 0, 0, 0, true), 0);
}

TEST(TransferBlocks, PlainRows) {
    // clang-format off
    const struct {
        const char* name;
        const char* block;
        std::int64_t blockBytes;
        std::int32_t rows, nextRow;
        bool valid;
        const char* stored;
    } rows[] = {
        {"two rows and a rest", "0000000C 0102030405", 9, 2, 2, true, "0102 0304"},
        {"wider than the picture", "00000028 0102030405060708090A", 14, 2, 2, true, "0102 0607"},
        {"narrower", "00000001 0102", 6, 2, 2, true, "0100 0200"},
        {"less than a row", "00000100 01", 5, 0, 0, true, "none"},
        {"width 0", "00000000 0102", 6, 0, 0, false, "none"},
        {"no width", "000000", 3, 0, 0, false, "none"},
        {"input ends", "00000010 010203", 2000, 998, 2, true, "0102 0300"},
        {"lying width", "FFFFFFFF 010203", INT64_C(0x7FFFFFFF), 3, 1, true, "0102"},
    };
    // clang-format on
    for (const auto& row : rows) {
        CRTLRaster raster(16, 0, 1, kNoPlanes);
        const Bytes block = FromHex(row.block);
        SpanSource source({block.data(), block.size()});
        const auto result = AddPlainBlock(source, row.blockBytes, raster, 0, {});
        EXPECT_EQ(result.rows, row.rows) << row.name;
        EXPECT_EQ(result.nextRow, row.nextRow) << row.name;
        EXPECT_EQ(result.valid, row.valid) << row.name;
        EXPECT_EQ(source.Left(), 0U) << row.name;
        EXPECT_EQ(Rows(raster), row.stored) << row.name;
    }
}

}  // namespace
}  // namespace qm
