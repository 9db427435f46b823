#include "platform/variant.h"

namespace qm {
namespace {

// MinGW-w64 declares the sources of copies and changes without const; they are not written to.
VARIANT* Source(const VARIANT& value) noexcept { return const_cast<VARIANT*>(&value); }

// `source` as a variant of `type`, of which the caller knows that it owns nothing.
std::optional<VARIANT> Changed(const VARIANT& source, VARTYPE type) noexcept {
    VARIANT changed;
    VariantInit(&changed);
    if (FAILED(VariantChangeType(&changed, Source(source), 0, type))) return std::nullopt;
    return changed;
}

}  // namespace

std::optional<LONG> IntegerOf(const VARIANT& value) noexcept {
    const auto changed = Changed(value, VT_I4);
    return changed ? std::optional<LONG>(changed->lVal) : std::nullopt;
}

std::optional<double> RealOf(const VARIANT& value) noexcept {
    if (value.vt == VT_R8) return value.dblVal;
    const auto changed = Changed(value, VT_R8);
    return changed ? std::optional<double>(changed->dblVal) : std::nullopt;
}

std::optional<bool> BooleanOf(const VARIANT& value) noexcept {
    const auto changed = Changed(value, VT_BOOL);
    return changed ? std::optional<bool>(changed->boolVal != VARIANT_FALSE) : std::nullopt;
}

ComPtr<IUnknown> ObjectOf(const VARIANT& value) noexcept {
    const bool object = value.vt == VT_UNKNOWN || value.vt == VT_DISPATCH;
    return ComPtr<IUnknown>(object ? value.punkVal : nullptr);
}

Variant::Variant(const VARIANT& value) : Variant() {
    if (FAILED(VariantCopy(&value_, Source(value)))) throw std::bad_alloc();
}

Variant Variant::Integer(LONG value) noexcept {
    Variant result;
    result.value_.vt = VT_I4;
    result.value_.lVal = value;
    return result;
}

Variant Variant::Double(double value) noexcept {
    Variant result;
    result.value_.vt = VT_R8;
    result.value_.dblVal = value;
    return result;
}

Variant Variant::Boolean(bool value) noexcept {
    Variant result;
    result.value_.vt = VT_BOOL;
    result.value_.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
    return result;
}

Variant Variant::Text(std::wstring_view value) {
    Bstr text(value);
    Variant result;
    result.value_.vt = VT_BSTR;
    result.value_.bstrVal = text.Detach();
    return result;
}

Variant Variant::Object(IUnknown* value) noexcept {
    Variant result;
    result.value_.vt = VT_UNKNOWN;
    result.value_.punkVal = ComPtr<IUnknown>(value).Detach();
    return result;
}

std::wstring_view Variant::AsText() const noexcept {
    return value_.vt == VT_BSTR ? ViewOf(value_.bstrVal) : std::wstring_view();
}

}  // namespace qm
