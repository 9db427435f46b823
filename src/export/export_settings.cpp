// See export_settings.h.
#include "export/export_settings.h"

#include <new>

#include "platform/bstr.h"

namespace qm {
namespace {

// `value` changed to `type`, which owns nothing; VT_EMPTY when it cannot be.
VARIANT Changed(const VARIANT& value, VARTYPE type) noexcept {
    VARIANT changed;
    VariantInit(&changed);
    // MinGW-w64 declares the source without const; it is not written to.
    if (FAILED(VariantChangeType(&changed, const_cast<VARIANT*>(&value), 0, type)))
        changed.vt = VT_EMPTY;
    return changed;
}

// The 32 bits of an integer; 0 when it is none.
std::uint32_t BitsOf(const VARIANT& value) noexcept {
    if (value.vt == VT_UI4) return static_cast<std::uint32_t>(value.ulVal);
    const VARIANT integer = Changed(value, VT_I4);
    return integer.vt == VT_I4 ? static_cast<std::uint32_t>(integer.lVal) : 0;
}

}  // namespace

std::optional<double> RealOf(const VARIANT& value) noexcept {
    if (value.vt == VT_R8) return value.dblVal;
    const VARIANT real = Changed(value, VT_R8);
    return real.vt == VT_R8 ? std::optional<double>(real.dblVal) : std::nullopt;
}

bool BooleanOf(const VARIANT& value) noexcept {
    const VARIANT boolean = Changed(value, VT_BOOL);
    return boolean.vt == VT_BOOL && boolean.boolVal != VARIANT_FALSE;
}

bool IsVariantTrue(const VARIANT& value) noexcept {
    return value.vt == VT_BOOL ? value.boolVal == VARIANT_TRUE : BitsOf(value) == 0xFFFFFFFF;
}

ComPtr<IUnknown> ObjectOf(const VARIANT& value) noexcept {
    const bool object = value.vt == VT_UNKNOWN || value.vt == VT_DISPATCH;
    return ComPtr<IUnknown>(object ? value.punkVal : nullptr);
}

bool SettingIsTrue(const VARIANT& value) noexcept {
    return value.vt == VT_BOOL ? value.boolVal == VARIANT_TRUE : BitsOf(value) >= 65535;
}

std::optional<Variant> ReadAttribute(IQmAttributes* attributes, const wchar_t* name) noexcept {
    if (attributes == nullptr) return std::nullopt;
    try {
        const Bstr key(name);
        Variant value;
        if (FAILED(attributes->GetAttribute(key.Get(), 0, value.Put()))) return std::nullopt;
        return value;
    } catch (const std::bad_alloc&) {
        return std::nullopt;
    }
}

}  // namespace qm
