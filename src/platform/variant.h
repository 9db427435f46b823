// Variant: an owning VARIANT for both systems.
//
// Made by named functions because overloads would confuse booleans, numbers and pointers:
//   document->PutAttribute(name, Variant::Integer(3).Get(), 2);
// Test: tests/platform/variant_test.cpp.
#pragma once

#include <ole2.h>

#include <optional>
#include <string_view>

#include "platform/bstr.h"
#include "platform/com_ptr.h"

namespace qm {

class Variant {
  public:
    Variant() noexcept { VariantInit(&value_); }
    // A copy: strings duplicated, objects referenced. Throws std::bad_alloc.
    explicit Variant(const VARIANT& value);
    Variant(const Variant& other) : Variant(other.value_) {}
    Variant(Variant&& other) noexcept : Variant() { std::swap(value_, other.value_); }
    ~Variant() { VariantClear(&value_); }
    Variant& operator=(Variant other) noexcept {
        std::swap(value_, other.value_);
        return *this;
    }

    static Variant Integer(LONG value) noexcept;      // VT_I4
    static Variant Double(double value) noexcept;     // VT_R8
    static Variant Boolean(bool value) noexcept;      // VT_BOOL
    static Variant Text(std::wstring_view value);     // VT_BSTR; throws std::bad_alloc
    static Variant Object(IUnknown* value) noexcept;  // VT_UNKNOWN, referenced; null is allowed

    // A plain VARIANT for a call that takes one by value; it stays owned here.
    const VARIANT& Get() const noexcept { return value_; }
    VARTYPE Type() const noexcept { return value_.vt; }
    // Empties the variant and returns its address, for a function that fills an out parameter.
    VARIANT* Put() noexcept {
        VariantClear(&value_);
        return &value_;
    }

    // The value changed to a type, nothing when it cannot be: numbers round half to even, true is
    // -1 as a number.
    std::optional<LONG> AsInteger() const noexcept;
    std::optional<double> AsDouble() const noexcept;
    std::optional<bool> AsBoolean() const noexcept;
    // Null and empty unless the variant holds an object, a string.
    ComPtr<IUnknown> AsObject() const noexcept;
    std::wstring_view AsText() const noexcept;

  private:
    VARIANT value_;
};

}  // namespace qm
