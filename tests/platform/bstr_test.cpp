// Strings and blocks of memory that cross the interfaces: BSTR and global memory.
#include "platform/variant.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "platform/global_block.h"

namespace {

TEST(Bstr, CountsBytesAndCharactersAndKeepsZeros) {
    const std::wstring text(L"a\0b", 3);
    qm::Bstr copy(text);
    EXPECT_EQ(SysStringLen(copy.Get()), 3U);
    EXPECT_EQ(SysStringByteLen(copy.Get()), 3 * sizeof(wchar_t));
    const qm::Bstr second(copy);
    EXPECT_NE(second.Get(), copy.Get());
    EXPECT_EQ(second.View(), text);
    *copy.Put() = SysAllocString(L"new");
    EXPECT_EQ(copy.View(), L"new");
    EXPECT_EQ(qm::Bstr().View(), L"");
    EXPECT_NE(qm::Bstr(L"").Get(), nullptr);
    copy = qm::Bstr();
    *copy.Put() = SysAllocStringByteLen("abc", 3);
    EXPECT_EQ(SysStringByteLen(copy.Get()), 3U);
    EXPECT_STREQ(reinterpret_cast<const char*>(copy.Get()), "abc");
}

TEST(GlobalMemory, BlocksAreZeroedAndKeepTheirBytesLocksAreCounted) {
    qm::GlobalBlock block = qm::GlobalBlock::Allocate(4);
    EXPECT_EQ(std::memcmp(qm::GlobalView(block.Get()).Data(), "\0\0\0", 4), 0);
    std::memcpy(qm::GlobalView(block.Get()).Data(), "abcd", 4);
    block = qm::GlobalBlock(GlobalReAlloc(block.Detach(), 4096, GHND));
    {
        const qm::GlobalView outer(block.Get());
        const qm::GlobalView inner(block.Get());
        EXPECT_NE(static_cast<void*>(outer.Data()), block.Get()) << "a handle is no address";
        EXPECT_NE(GlobalUnlock(block.Get()), FALSE);
        EXPECT_EQ(GlobalLock(block.Get()), outer.Data());
        EXPECT_EQ(std::memcmp(outer.Data(), "abcd\0\0", 6), 0);
        EXPECT_EQ(outer.Data()[4095], 0);
    }
    EXPECT_EQ(GlobalUnlock(block.Get()), FALSE);
    EXPECT_EQ(GlobalLock(qm::GlobalBlock(GlobalAlloc(66, 0)).Get()), nullptr);
    EXPECT_EQ(qm::GlobalView(nullptr).Data(), nullptr);
}

}  // namespace
