// Strings and blocks of memory that cross the interfaces: BSTR and global memory.
#include "platform/bstr.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "platform/global_block.h"

namespace {

TEST(Bstr, CountsBytesAndCharactersAndKeepsZeros) {
    const std::wstring text(L"a\0b", 3);
    qm::Bstr copy(text);
    EXPECT_EQ(SysStringLen(copy.Get()), 3U);
    EXPECT_EQ(SysStringByteLen(copy.Get()), 3 * sizeof(wchar_t));
    EXPECT_EQ(copy.Get()[3], L'\0');
    const qm::Bstr second(copy);
    EXPECT_NE(second.Get(), copy.Get());
    EXPECT_EQ(second.View(), text);
    *copy.Put() = SysAllocString(L"new");
    EXPECT_EQ(copy.View(), L"new");
    EXPECT_EQ(SysAllocString(nullptr), nullptr);
    EXPECT_EQ(SysStringLen(nullptr), 0U);
    EXPECT_EQ(qm::Bstr().View(), L"");
    EXPECT_NE(qm::Bstr(L"").Get(), nullptr);
}

TEST(Bstr, OddByteCountsAreTerminated) {
    const BSTR text = SysAllocStringByteLen("abc", 3);
    EXPECT_EQ(SysStringByteLen(text), 3U);
    EXPECT_STREQ(reinterpret_cast<const char*>(text), "abc");
    SysFreeString(text);
}

TEST(GlobalMemory, HandlesAreNotAddressesAndBlocksAreZeroed) {
    const auto block = qm::GlobalBlock::Allocate(1000);
    const qm::GlobalView view(block.Get());
    ASSERT_NE(view.Data(), nullptr);
    EXPECT_NE(static_cast<void*>(view.Data()), block.Get());
    EXPECT_GE(view.Size(), 1000U);
    EXPECT_TRUE(std::all_of(view.Data(), view.Data() + 1000, [](auto byte) { return byte == 0; }));
    const qm::GlobalBlock empty(GlobalAlloc(66, 0));
    EXPECT_TRUE(empty);
    EXPECT_EQ(GlobalLock(empty.Get()), nullptr);
    EXPECT_EQ(qm::GlobalView(nullptr).Data(), nullptr);
}

TEST(GlobalMemory, LocksAreCountedAndResizingKeepsTheBytes) {
    qm::GlobalBlock block = qm::GlobalBlock::Allocate(4);
    std::memcpy(qm::GlobalView(block.Get()).Data(), "abcd", 4);
    block = qm::GlobalBlock(GlobalReAlloc(block.Detach(), 4096, GHND));
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

}  // namespace
