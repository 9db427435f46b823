// See export_settings.h.
#include "export/export_settings.h"

#include <new>

#include "platform/variant.h"

namespace qm {
namespace {

// The 32 bits of an integer; 0 when it is none.
std::uint32_t BitsOf(const VARIANT& value) noexcept {
    if (value.vt == VT_UI4) return static_cast<std::uint32_t>(value.ulVal);
    return static_cast<std::uint32_t>(IntegerOf(value).value_or(0));
}

}  // namespace

bool IsVariantTrue(const VARIANT& value) noexcept {
    return value.vt == VT_BOOL ? value.boolVal == VARIANT_TRUE : BitsOf(value) == 0xFFFFFFFF;
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
