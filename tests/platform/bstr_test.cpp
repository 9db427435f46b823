// BSTR functions and their wrapper.
#include "platform/bstr.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(Bstr, CountsBytesAndCharactersAndKeepsZeros) {
    const std::wstring text(L"a\0b", 3);
    qm::Bstr copy(text);
    EXPECT_EQ(SysStringLen(copy.Get()), 3U);
    EXPECT_EQ(SysStringByteLen(copy.Get()), 3 * sizeof(wchar_t));
    EXPECT_EQ(copy.View(), text);
    EXPECT_EQ(copy.Get()[3], L'\0');
    const qm::Bstr second(copy);
    EXPECT_NE(second.Get(), copy.Get());
    EXPECT_EQ(second.View(), text);
    *copy.Put() = SysAllocString(L"new");
    EXPECT_EQ(copy.View(), L"new");
}

TEST(Bstr, NullIsEmpty) {
    EXPECT_EQ(SysAllocString(nullptr), nullptr);
    EXPECT_EQ(SysStringLen(nullptr), 0U);
    SysFreeString(nullptr);
    EXPECT_EQ(qm::Bstr().View(), L"");
    EXPECT_NE(qm::Bstr(L"").Get(), nullptr);
}

TEST(Bstr, OddByteCountsAreTerminated) {
    const BSTR text = SysAllocStringByteLen("abc", 3);
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(SysStringByteLen(text), 3U);
    EXPECT_STREQ(reinterpret_cast<const char*>(text), "abc");
    SysFreeString(text);
}

}  // namespace
