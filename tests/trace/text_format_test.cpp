// The text forms that scripts read: what a careless change of a format string would break.
#include "trace/text_format.h"

#include <gtest/gtest.h>

#include <limits>

namespace qm {
namespace {

TEST(TextFormat, DoublesAlwaysLookLikeDoubles) {
    const struct {
        double value;
        const char* text;
    } rows[] = {
        {1016.0, "1016.0"},
        {0.5, "0.5"},
        {-0.0, "-0.0"},
        {1e300, "1e+300"},
        {1570.796325, "1570.79633"},
        {std::numeric_limits<double>::infinity(), "inf"},
        {std::numeric_limits<double>::quiet_NaN(), "nan"},
    };
    for (const auto& row : rows) {
        std::string out;
        AppendDouble(out, row.value);
        EXPECT_EQ(out, row.text);
    }
}

TEST(TextFormat, StringsEscapeQuotesControlsAndHighBytesAndHexKeepsItsDigits) {
    std::string out;
    AppendQuoted(out, "a\"b\\c\x01\x7F\xFC ~");
    EXPECT_EQ(out, "\"a\\\"b\\\\c\\x01\\x7F\\xFC ~\"");
    out.clear();
    AppendHexNumber(out, 0xAB, 6);
    AppendHexNumber(out, 0x1100, 1);
    EXPECT_EQ(out, "0x0000AB0x1100");
}

}  // namespace
}  // namespace qm
