// What the export reads out of the host's VARIANTs: the conversions the attributes and settings ask
// for. None of them throws. Test: tests/export/framework_test.cpp.
#pragma once

#include <ole2.h>
#include <qmfilter.h>

#include <cstdint>
#include <optional>

#include "platform/com_ptr.h"
#include "platform/variant.h"

namespace qm {

// A number, or a text or boolean as a number; nothing when there is no such conversion.
std::optional<double> RealOf(const VARIANT& value) noexcept;
// The low 32 bits of an integer, colours among them; 0 when it is none.
std::uint32_t BitsOf(const VARIANT& value) noexcept;
// Any value but 0 and false.
bool BooleanOf(const VARIANT& value) noexcept;
// Exactly -1: VARIANT_TRUE, or the integer.
bool IsVariantTrue(const VARIANT& value) noexcept;
// The object of a VT_UNKNOWN or VT_DISPATCH, else null.
ComPtr<IUnknown> ObjectOf(const VARIANT& value) noexcept;

// A setting that is a boolean: true from 65535 on, which is VARIANT_TRUE as an unsigned number; a
// plain 1 is not.
bool SettingIsTrue(const VARIANT& value) noexcept;

// The attribute `name`, or nothing when `attributes` is null, the name is absent or memory ran out.
std::optional<Variant> ReadAttribute(IQmAttributes* attributes, const wchar_t* name) noexcept;

}  // namespace qm
