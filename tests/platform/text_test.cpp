// Conversions between wide and 8-bit text.
#include "platform/text.h"

#include <gtest/gtest.h>

namespace {

TEST(Text, PlotBytesAreLatin1) {
    std::string all;
    for (int i = 0; i < 256; ++i) all += static_cast<char>(i);
    const std::wstring wide = qm::BytesToWide(all);
    EXPECT_EQ(wide.size(), 256U);
    EXPECT_EQ(wide[0xE4], L'\u00E4');
    EXPECT_EQ(qm::WideToBytes(wide), all);
    EXPECT_EQ(qm::WideToBytes(L"a\u0100\u20ACb"), "a??b");
}

TEST(Text, Utf8) {
    const struct Row {
        const char* name;
        std::string bytes;
        std::wstring text;
    } rows[] = {
        {"ASCII", "plan.prn", L"plan.prn"},
        {"two and three bytes", "\xC3\xA4\xE2\x82\xAC", L"\u00E4\u20AC"},
        {"four bytes", "\xF0\x9F\x98\x80", L"\U0001F600"},
        {"first of each length", "\xC2\x80\xE0\xA0\x80\xF0\x90\x80\x80", L"\u0080\u0800\U00010000"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(qm::Utf8ToWide(row.bytes), row.text) << row.name;
        EXPECT_EQ(qm::WideToUtf8(row.text), row.bytes) << row.name;
    }
}

// Names of files need not be UTF-8; none may change on its way through a wide string.
TEST(Text, MalformedBytesSurvive) {
    const char* rows[] = {
        "\xE4.plt",         "\xC3",     "\xC0\xAF",     "\xED\xA0\x80",  "\xE2\x82",
        "\xF5\x80\x80\x80", "\x80\xBF", "\xE0\x80\x80", "a\xF0\x9F\x98", "\xFF\xFE"};
    for (const std::string bytes : rows) EXPECT_EQ(qm::WideToUtf8(qm::Utf8ToWide(bytes)), bytes);
    EXPECT_EQ(qm::WideToUtf8(std::wstring(1, static_cast<wchar_t>(0xD800))), "\xEF\xBF\xBD");
}

TEST(Text, CaseOfAsciiOnly) {
    EXPECT_TRUE(qm::EqualIgnoringAsciiCase(L"PLAN.prn", L"plan.PRN"));
    EXPECT_FALSE(qm::EqualIgnoringAsciiCase(L"plan.prn", L"plan.prn2"));
    EXPECT_FALSE(qm::EqualIgnoringAsciiCase(L"\u00C4", L"\u00E4"));
    EXPECT_FALSE(qm::EqualIgnoringAsciiCase(L"@[", L"`{"));
}

}  // namespace
