// Global memory blocks: handles are not addresses, blocks are zeroed, sizes are kept.
#include "platform/global_block.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace {

TEST(GlobalMemory, ZeroedBlockBehindAHandle) {
    const auto block = qm::GlobalBlock::Allocate(1000);
    ASSERT_TRUE(block);
    const qm::GlobalView view(block.Get());
    ASSERT_NE(view.Data(), nullptr);
    EXPECT_NE(static_cast<void*>(view.Data()), block.Get());
    EXPECT_GE(view.Size(), 1000U);
    EXPECT_TRUE(std::all_of(view.Data(), view.Data() + 1000, [](auto byte) { return byte == 0; }));
}

TEST(GlobalMemory, EmptyBlockHasAHandleAndNoBytes) {
    const qm::GlobalBlock block(GlobalAlloc(66, 0));
    ASSERT_TRUE(block);
    EXPECT_EQ(GlobalLock(block.Get()), nullptr);
    EXPECT_EQ(qm::GlobalView(block.Get()).Size(), 0U);
    EXPECT_EQ(qm::GlobalView(nullptr).Data(), nullptr);
}

TEST(GlobalMemory, LocksAreCountedAndResizingKeepsTheBytes) {
    qm::GlobalBlock block = qm::GlobalBlock::Allocate(4);
    std::memcpy(qm::GlobalView(block.Get()).Data(), "abcd", 4);
    const HGLOBAL larger = GlobalReAlloc(block.Get(), 4096, GHND);
    ASSERT_NE(larger, nullptr);
    static_cast<void>(block.Detach());
    block = qm::GlobalBlock(larger);
    {
        const qm::GlobalView outer(block.Get());
        const qm::GlobalView inner(block.Get());
        EXPECT_NE(GlobalUnlock(block.Get()), FALSE);
        EXPECT_EQ(GlobalLock(block.Get()), outer.Data());
        EXPECT_EQ(std::memcmp(outer.Data(), "abcd\0\0", 6), 0);
        EXPECT_EQ(outer.Data()[4095], 0);
    }
    EXPECT_EQ(GlobalUnlock(block.Get()), FALSE);
}

TEST(TaskMemory, GrowsAndFrees) {
    LPVOID block = CoTaskMemAlloc(3);
    std::memcpy(block, "xyz", 3);
    block = CoTaskMemRealloc(block, 3000);
    EXPECT_EQ(std::memcmp(block, "xyz", 3), 0);
    CoTaskMemFree(block);
    CoTaskMemFree(nullptr);
}

}  // namespace
