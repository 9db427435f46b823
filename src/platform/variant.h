// Bstr and Variant: an owning BSTR and an owning VARIANT for both systems. Tests:
// tests/platform/bstr_test.cpp, tests/platform/variant_test.cpp.
#pragma once

#include <ole2.h>

#include <limits>
#include <new>
#include <optional>
#include <string_view>
#include <utility>

#include "platform/com_ptr.h"

namespace qm {

// The characters of a BSTR, zeros among them included.
inline std::wstring_view ViewOf(BSTR text) noexcept {
    return text == nullptr ? std::wstring_view() : std::wstring_view(text, SysStringLen(text));
}

class Bstr {
  public:
    Bstr() noexcept = default;
    // A copy of `text`. Throws std::bad_alloc.
    explicit Bstr(std::wstring_view text) {
        if (text.size() > std::numeric_limits<UINT>::max()) throw std::bad_alloc();
        text_ = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
        if (text_ == nullptr) throw std::bad_alloc();
    }
    Bstr(const Bstr& other) : Bstr(other.View()) {}
    Bstr(Bstr&& other) noexcept : text_(other.Detach()) {}
    ~Bstr() { SysFreeString(text_); }
    Bstr& operator=(Bstr other) noexcept {
        std::swap(text_, other.text_);
        return *this;
    }

    BSTR Get() const noexcept { return text_; }
    std::wstring_view View() const noexcept { return ViewOf(text_); }
    // Empties the string and returns its address, for a function that fills an out parameter.
    BSTR* Put() noexcept {
        SysFreeString(Detach());
        return &text_;
    }
    // Gives the string to the caller.
    [[nodiscard]] BSTR Detach() noexcept { return std::exchange(text_, nullptr); }

  private:
    BSTR text_ = nullptr;
};

// The value of a VARIANT changed to a type, nothing when it cannot be: numbers round half to even,
// true is -1 as a number.
std::optional<LONG> IntegerOf(const VARIANT& value) noexcept;
std::optional<double> RealOf(const VARIANT& value) noexcept;
std::optional<bool> BooleanOf(const VARIANT& value) noexcept;
// Null unless it holds an object.
ComPtr<IUnknown> ObjectOf(const VARIANT& value) noexcept;

// Made by named functions because overloads would confuse booleans, numbers and pointers:
//   document->PutAttribute(name, Variant::Integer(3).Get(), 2);
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

    std::optional<double> AsDouble() const noexcept { return RealOf(value_); }
    std::optional<bool> AsBoolean() const noexcept { return BooleanOf(value_); }
    // Null and empty unless the variant holds an object, a string.
    ComPtr<IUnknown> AsObject() const noexcept { return ObjectOf(value_); }
    std::wstring_view AsText() const noexcept;

  private:
    VARIANT value_;
};

}  // namespace qm
