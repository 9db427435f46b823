// BSTR and VARIANT.
#include "qmfilter/portable/variant.h"

#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <cwchar>
#include <limits>
#include <optional>

#include "common/numbers.h"
#include "qmfilter/portable/bstr.h"

// --- BSTR ---------------------------------------------------------------------------------------

namespace {

// The byte count stands in front of the characters, aligned as they are.
struct Header {
    UINT bytes;
};
static_assert(sizeof(Header) % alignof(OLECHAR) == 0);

Header* HeaderOf(BSTR text) noexcept {
    return reinterpret_cast<Header*>(reinterpret_cast<char*>(text) - sizeof(Header));
}

// An uninitialised string of `bytes` bytes with its terminator in place.
BSTR Allocate(UINT bytes) noexcept {
    if (bytes > std::numeric_limits<UINT>::max() - sizeof(Header) - sizeof(OLECHAR)) return nullptr;
    auto* block = static_cast<char*>(std::malloc(sizeof(Header) + bytes + sizeof(OLECHAR)));
    if (block == nullptr) return nullptr;
    reinterpret_cast<Header*>(block)->bytes = bytes;
    // A byte count that is no multiple of the character size puts the terminator at an odd address.
    std::memset(block + sizeof(Header) + bytes, 0, sizeof(OLECHAR));
    return reinterpret_cast<BSTR>(block + sizeof(Header));
}

}  // namespace

BSTR SysAllocString(const OLECHAR* text) noexcept {
    if (text == nullptr) return nullptr;
    const std::size_t length = std::wcslen(text);
    if (length > std::numeric_limits<UINT>::max()) return nullptr;
    return SysAllocStringLen(text, static_cast<UINT>(length));
}

BSTR SysAllocStringLen(const OLECHAR* text, UINT length) noexcept {
    if (length > std::numeric_limits<UINT>::max() / sizeof(OLECHAR)) return nullptr;
    const UINT bytes = length * static_cast<UINT>(sizeof(OLECHAR));
    const BSTR result = Allocate(bytes);
    if (result != nullptr && text != nullptr) std::memcpy(result, text, bytes);
    return result;
}

BSTR SysAllocStringByteLen(const char* text, UINT bytes) noexcept {
    const BSTR result = Allocate(bytes);
    if (result != nullptr && text != nullptr) std::memcpy(result, text, bytes);
    return result;
}

void SysFreeString(BSTR text) noexcept {
    if (text != nullptr) std::free(HeaderOf(text));
}

UINT SysStringByteLen(BSTR text) noexcept { return text == nullptr ? 0 : HeaderOf(text)->bytes; }

UINT SysStringLen(BSTR text) noexcept {
    return SysStringByteLen(text) / static_cast<UINT>(sizeof(OLECHAR));
}

// --- VARIANT ------------------------------------------------------------------------------------

namespace {

bool IsObject(VARTYPE type) noexcept { return type == VT_UNKNOWN || type == VT_DISPATCH; }

// The value as a number; every integer type in use is exact in a double. True is -1; empty is 0.
std::optional<double> NumberOf(const VARIANT& value) noexcept {
    switch (value.vt) {
        case VT_EMPTY:
            return 0.0;
        case VT_I2:
            return value.iVal;
        case VT_BOOL:
            return value.boolVal;
        case VT_I4:
        case VT_INT:
            return value.lVal;
        case VT_UI1:
            return value.bVal;
        case VT_UI2:
            return value.uiVal;
        case VT_UI4:
        case VT_UINT:
            return value.ulVal;
        case VT_R4:
            return static_cast<double>(value.fltVal);
        case VT_R8:
            return value.dblVal;
        default:
            return std::nullopt;
    }
}

// `number` rounded half to even, when the result lies within an integer type. A NaN lies nowhere.
template <typename Integer>
std::optional<Integer> ToInteger(double number) noexcept {
    constexpr double kTwoTo32 = 4294967296.0;
    const double rounded = std::nearbyint(number);
    if (!(rounded >= static_cast<double>(std::numeric_limits<Integer>::min()) &&
          rounded <= static_cast<double>(std::numeric_limits<Integer>::max()))) {
        return std::nullopt;
    }
    // The upper half of the unsigned range goes through its two's complement.
    const bool upperHalf = rounded > std::numeric_limits<std::int32_t>::max();
    return static_cast<Integer>(qm::TruncateToInt32(upperHalf ? rounded - kTwoTo32 : rounded));
}

template <typename Integer>
HRESULT SetInteger(Integer& target, double number) noexcept {
    const std::optional<Integer> integer = ToInteger<Integer>(number);
    if (!integer) return DISP_E_OVERFLOW;
    target = *integer;
    return S_OK;
}

// true becomes all bits set in an unsigned type, as the system does; a negative number does not
// fit.
double UnsignedOperand(const VARIANT& source, double number, double allBits) noexcept {
    return source.vt == VT_BOOL && number != 0.0 ? allBits : number;
}

HRESULT SetNumber(VARIANT& target, const VARIANT& source, double number, VARTYPE type) noexcept {
    target.vt = type;
    switch (type) {
        case VT_I2:
            return SetInteger(target.iVal, number);
        case VT_I4:
        case VT_INT:
            return SetInteger(target.lVal, number);
        case VT_UI1:
            return SetInteger(target.bVal, UnsignedOperand(source, number, 255.0));
        case VT_UI2:
            return SetInteger(target.uiVal, UnsignedOperand(source, number, 65535.0));
        case VT_UI4:
        case VT_UINT:
            return SetInteger(target.ulVal, UnsignedOperand(source, number, 4294967295.0));
        case VT_R4:
            if (std::fabs(number) > static_cast<double>(FLT_MAX)) return DISP_E_OVERFLOW;
            target.fltVal = static_cast<float>(number);
            return S_OK;
        case VT_R8:
            target.dblVal = number;
            return S_OK;
        case VT_BOOL:
            target.boolVal = number != 0.0 ? VARIANT_TRUE : VARIANT_FALSE;
            return S_OK;
        default:
            return DISP_E_TYPEMISMATCH;
    }
}

HRESULT SetObject(VARIANT& target, const VARIANT& source, VARTYPE type) noexcept {
    if (!IsObject(source.vt)) return DISP_E_TYPEMISMATCH;
    target.vt = type;
    target.byref = nullptr;
    if (source.punkVal == nullptr) return S_OK;
    const HRESULT status = source.punkVal->QueryInterface(
        type == VT_UNKNOWN ? IID_IUnknown : IID_IDispatch, &target.byref);
    return FAILED(status) ? DISP_E_TYPEMISMATCH : S_OK;
}

}  // namespace

void VariantInit(VARIANT* value) noexcept { *value = VARIANT{}; }

HRESULT VariantClear(VARIANT* value) noexcept {
    const VARIANT old = *value;
    VariantInit(value);
    if (old.vt == VT_BSTR) SysFreeString(old.bstrVal);
    if (IsObject(old.vt) && old.punkVal != nullptr) old.punkVal->Release();
    return S_OK;
}

HRESULT VariantCopy(VARIANT* target, const VARIANT* source) noexcept {
    if (target == source) return S_OK;
    VARIANT copy = *source;
    if (copy.vt == VT_BSTR && copy.bstrVal != nullptr) {
        copy.bstrVal = SysAllocStringByteLen(reinterpret_cast<const char*>(source->bstrVal),
                                             SysStringByteLen(source->bstrVal));
        if (copy.bstrVal == nullptr) return E_OUTOFMEMORY;
    }
    if (IsObject(copy.vt) && copy.punkVal != nullptr) copy.punkVal->AddRef();
    VariantClear(target);
    *target = copy;
    return S_OK;
}

HRESULT VariantChangeType(VARIANT* target, const VARIANT* source, USHORT, VARTYPE type) noexcept {
    VARIANT result = {};
    HRESULT status = DISP_E_TYPEMISMATCH;
    if (type == source->vt) {
        status = VariantCopy(&result, source);
    } else if (IsObject(type)) {
        status = SetObject(result, *source, type);
    } else if (const std::optional<double> number = NumberOf(*source)) {
        status = SetNumber(result, *source, *number, type);
    }
    if (FAILED(status)) return status;
    VariantClear(target);
    *target = result;
    return S_OK;
}
