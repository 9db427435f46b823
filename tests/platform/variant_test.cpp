// VARIANT functions and their wrapper: conversions, copies, ownership.
#include "platform/variant.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "platform/com_object.h"

namespace {

using qm::Variant;

// Not every SDK declares sources const.
VARIANT* Source(const Variant& value) { return const_cast<VARIANT*>(&value.Get()); }

TEST(Variant, ChangesToInteger) {
    const struct Row {
        const char* name;
        Variant value;
        std::optional<LONG> expected;
    } rows[] = {
        {"half to even, down", Variant::Double(2.5), 2},
        {"half to even, up", Variant::Double(3.5), 4},
        {"negative half", Variant::Double(-2.5), -2},
        {"largest", Variant::Double(2147483647.4), 2147483647},
        {"smallest", Variant::Double(-2147483648.5), std::numeric_limits<LONG>::min()},
        {"above", Variant::Double(2147483647.5), std::nullopt},
        {"below", Variant::Double(-2147483649.0), std::nullopt},
        {"infinite", Variant::Double(HUGE_VAL), std::nullopt},
        {"true", Variant::Boolean(true), -1},
        {"empty", Variant(), 0},
    };
    for (const Row& row : rows) EXPECT_EQ(qm::IntegerOf(row.value.Get()), row.expected) << row.name;
    EXPECT_EQ(qm::IntegerOf(Variant::Object(nullptr).Get()), std::nullopt);
}

TEST(Variant, ChangesToOtherTypes) {
    VARIANT value;
    VariantInit(&value);
    ASSERT_EQ(VariantChangeType(&value, Source(Variant::Boolean(true)), 0, VT_UI1), S_OK);
    EXPECT_EQ(value.bVal, 255);
    ASSERT_EQ(VariantChangeType(&value, Source(Variant::Double(4294967295.0)), 0, VT_UI4), S_OK);
    EXPECT_EQ(value.ulVal, 0xFFFFFFFFU);
    // In place, and a failure leaves the target alone.
    value = Variant::Integer(70000).Get();
    EXPECT_EQ(VariantChangeType(&value, &value, 0, VT_I2), DISP_E_OVERFLOW);
    EXPECT_EQ(value.lVal, 70000);
    EXPECT_EQ(VariantChangeType(&value, &value, 0, VT_R8), S_OK);
    EXPECT_EQ(value.dblVal, 70000.0);
    EXPECT_EQ(Variant::Integer(-2).AsBoolean(), true);
    EXPECT_EQ(Variant::Integer(-7).AsDouble(), -7.0);
}

class Nothing final : public qm::ComObject<IUnknown> {};

TEST(Variant, CopiesOwnTheirStringsAndObjects) {
    const LONG before = qm::LiveObjectCount();
    {
        const auto object = qm::MakeObject<Nothing>();
        const Variant held = Variant::Object(object.Get());
        Variant copy(held);
        EXPECT_EQ(copy.AsObject().Get(), object.Get());
        EXPECT_EQ(object->AddRef(), 4U);  // the maker's, held's, copy's and this one
        object->Release();
        copy = Variant::Text(L"text");
        const Variant second(copy);
        EXPECT_EQ(second.AsText(), L"text");
        EXPECT_NE(second.Get().bstrVal, copy.Get().bstrVal);
        EXPECT_EQ(object->AddRef(), 3U);
        object->Release();
        EXPECT_EQ(VariantCopy(copy.Put(), Source(held)), S_OK);
        EXPECT_EQ(copy.Type(), VT_UNKNOWN);
    }
    EXPECT_EQ(qm::LiveObjectCount(), before);
}

}  // namespace
