// CRTLRaster: the row rules around the decoders, the seed, planes, bounds and the finished bitmap.
#include "raster/rows/rtl_raster.h"

#include <gtest/gtest.h>

#include "raster/rows/transfer_blocks.h"
#include "tests/common/hex_text.h"

namespace qm {
namespace {

int Add(CRTLRaster& raster, std::int32_t row, const Bytes& data, int method) {
    return raster.AddRow(row, {data.data(), data.size()}, method, 0, 0, true);
}

Bytes Bitmap(CRTLRaster& raster, int angle) {
    const GlobalBlock block = raster.MakeBitmap(angle);
    const GlobalView view(block.Get());
    return view.Data() == nullptr ? Bytes() : Bytes(view.Data(), view.Data() + view.Size());
}

// The bytes of the image's row `y` from the top.
Bytes RowOf(const Bytes& block, std::int32_t y) {
    const auto view = PackedBitmapView::Parse(block.data(), block.size());
    if (!view || y >= view->Height()) return {};
    const std::uint8_t* row = view->RowFromTop(y);
    return Bytes(row, row + view->RowBytes());
}

TEST(RtlRaster, BitmapsAreMadeOnce) {
    CRTLRaster raster(3, 2, 24, kNoPlanes);
    EXPECT_EQ(Add(raster, 0, {10, 20, 30}, 0), 1);
    EXPECT_EQ(Bitmap(raster, 0).size(), 40U + 12);
    EXPECT_FALSE(raster.MakeBitmap(0)) << "the rows are gone";
    EXPECT_EQ(raster.RowCount(), 3) << "each call counts a row";
}

TEST(RtlRaster, RefusedRows) {
    CRTLRaster raster(8, 0, 8, kNoPlanes);
    for (const int method : {-1, 4, 5, 6, 9, 11}) EXPECT_EQ(Add(raster, 0, {1}, method), 0);
    EXPECT_EQ(Add(raster, -1, {1}, 0), 0);
    EXPECT_EQ(Add(raster, INT32_MAX, {1}, 0), 0);
    EXPECT_EQ(raster.RowCount(), 0);
    EXPECT_FALSE(raster.PrepareBitmap(0));

    const std::int32_t widths[] = {0, -5, INT32_MIN};
    for (const std::int32_t width : widths) {
        CRTLRaster narrow(width, 0, 24, kNoPlanes);
        EXPECT_EQ(Add(narrow, 0, {1}, 0), 0) << width;
        narrow.AddEmptyRows(0, 3);
        narrow.AddSeedCopies(0, 3);
        EXPECT_EQ(narrow.RowCount(), 0) << width;
    }
    CRTLRaster wide(INT32_MAX, INT32_MAX, 24, kNoPlanes);
    EXPECT_EQ(Add(wide, 0, {1}, 0), 0) << "one row beyond 2 GiB";
    CRTLRaster depthless(8, 0, 0, kNoPlanes);
    EXPECT_EQ(Add(depthless, 0, {1}, 0), 0);
}

TEST(RtlRaster, RowsBeyondTheBudgetAreRefused) {
    PictureBudget budget(WorkBudget(3 * (100 + 64) - 1), WorkBudget());
    CRTLRaster raster(100, 0, 8, kNoPlanes, &budget);
    EXPECT_EQ(Add(raster, 0, {1}, 0), 1);
    raster.AddSeedCopies(1, 2);
    EXPECT_EQ(raster.RowCount(), 1);
    EXPECT_EQ(Add(raster, 1, {1}, 0), 1);
    EXPECT_EQ(Add(raster, 2, {1}, 0), 0);
    EXPECT_FALSE(raster.MakeBitmap(0));
}

TEST(RtlRaster, RowsAndBitmapsBeyondTheRoomAreRefused) {
    PictureBudget budget(WorkBudget(), WorkBudget(1000));
    CRTLRaster raster(100, 0, 8, kNoPlanes, &budget);
    raster.AddEmptyRows(0, 11);
    EXPECT_EQ(raster.RowCount(), 10);
    EXPECT_TRUE(budget.Met());
    EXPECT_FALSE(raster.MakeBitmap(0)) << "the colour table has no room either";
    CRTLRaster small(10, 0, 24, kNoPlanes, &budget);
    small.AddEmptyRows(0, 10);
    EXPECT_TRUE(small.MakeBitmap(0));
}

TEST(RtlRaster, AHugeClaimIsStoredWhenItsRowsFit) {
    CRTLRaster raster(1000000, INT32_MAX, 24, kNoPlanes);
    EXPECT_EQ(Add(raster, 0, {1, 2, 3}, 0), 1);
    const Bytes block = Bitmap(raster, 0);
    EXPECT_EQ(block.size(), 40U + 3000000);
    EXPECT_EQ(block[40], 3);
}

// The seed is the last row that advanced it; only where the capacity grows (every 100 rows) is it
// the row before.
TEST(RtlRaster, SeedBehindAFailedRow) {
    const struct {
        std::int32_t failed;
        std::uint8_t expected;
    } rows[] = {{98, 5}, {99, 0}};
    for (const auto& row : rows) {
        CRTLRaster raster(1, 0, 8, kNoPlanes);
        for (std::int32_t y = 0; y < row.failed; ++y) Add(raster, y, {5}, 0);
        EXPECT_EQ(Add(raster, row.failed, {6}, 7), 0);
        Add(raster, row.failed + 1, {}, 3);
        EXPECT_EQ(RowOf(Bitmap(raster, 0), row.failed + 1), Bytes{row.expected});
    }
}

TEST(RtlRaster, PlanesDoNotAdvanceTheSeed) {
    CRTLRaster raster(9, 0, 8, kEightPlanes);
    ASSERT_EQ(raster.RowBytes(), 16U) << "eight planes of two bytes beat a row of twelve";
    const Bytes all = {0xFF, 0x80};
    const ByteSpan span{all.data(), 2};
    for (std::size_t p = 0; p < 8; ++p) raster.AddRow(0, span, 0, p * 2, 2, p == 7);
    for (std::size_t p = 0; p < 7; ++p) raster.AddRow(1, {}, 3, p * 2, 2, false);
    raster.AddRow(1, {}, 0, 14, 2, true);
    const Bytes block = Bitmap(raster, 0);
    EXPECT_EQ(RowOf(block, 0), Bytes(9, 255));
    EXPECT_EQ(RowOf(block, 1), Bytes(9, 127));
}

TEST(RtlRaster, PlanesOfOtherDepthsStayAsTheyAre) {
    CRTLRaster raster(8, 0, 4, kThreePlanes);
    Add(raster, 0, {1, 2, 3, 4}, 0);
    EXPECT_EQ(RowOf(Bitmap(raster, 0), 0), (Bytes{1, 2, 3, 4}));
}

TEST(RtlRaster, MethodTenClearsThePictureAtRowZero) {
    CRTLRaster raster(2, 0, 24, kNoPlanes);
    Add(raster, 0, {1, 2, 3, 4, 5, 6}, 0);
    Add(raster, 1, {1, 2, 3, 4, 5, 6}, 0);
    EXPECT_EQ(Add(raster, 0, {0x60}, 10), 1);
    EXPECT_EQ(Add(raster, 2, {}, 10), 1);
    const Bytes block = Bitmap(raster, 0);
    EXPECT_EQ(RowOf(block, 0), (Bytes{255, 254, 255, 0, 0, 0}));
    EXPECT_EQ(RowOf(block, 1), Bytes(6, 0));
    EXPECT_EQ(RowOf(block, 2), RowOf(block, 0)) << "the seed";
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

TEST(RtlRaster, CopiesOfRowsThatWereNeverWrittenAreEmpty) {
    CRTLRaster raster(1000, 0, 24, kNoPlanes);
    Add(raster, 3000, {1}, 0);
    raster.AddEmptyRows(0, 1000);
    raster.AddSeedCopies(1000, 500);
    EXPECT_EQ(RowOf(Bitmap(raster, 0), 1200), Bytes(3000, 0));
}

// Rows over many blocks of the store, with a gap, turned and upright.
TEST(RtlRaster, LongPicturesCrossTheBlocksOfTheStore) {
    for (const int angle : {0, 90}) {
        CRTLRaster raster(1000, 0, 24, kNoPlanes);
        const Bytes mark = {1, 2, 3};
        for (std::int32_t y = 0; y < 2000; y += 7) Add(raster, y, mark, 0);
        raster.AddSeedCopies(1996, 1004);
        const Bytes block = Bitmap(raster, angle);
        const auto view = PackedBitmapView::Parse(block.data(), block.size());
        ASSERT_TRUE(view);
        int wrong = 0;
        for (std::int32_t y = 0; y < 3000; ++y) {
            const std::uint8_t expected = y > 1995 || y % 7 == 0 ? 3 : 0;
            const std::uint8_t* at = angle == 0 ? view->RowFromTop(y) : view->StoredRow(0) + 3 * y;
            wrong += *at != expected;
        }
        EXPECT_EQ(wrong, 0) << angle;
    }
}

TEST(PictureBudget, GrowsWithThePlot) {
    const auto work = (std::size_t{1} << 30) + 8192 * 1000 - 64;
    EXPECT_FALSE(PictureBudget::ForPlot(1000).TakeRows(1, work + 1));
    EXPECT_TRUE(PictureBudget::ForPlot(1000).TakeRows(1, work));
    EXPECT_EQ(PictureBudget::ForPlot(1000).Room(), (64 << 20) + 256 * 1000);
}

}  // namespace
}  // namespace qm
