// VARIANT and its functions, for the value types the filters exchange with a host.
//
// Types in use: VT_EMPTY, VT_NULL, VT_I2, VT_I4, VT_UI1, VT_UI4, VT_R4, VT_R8, VT_BOOL, VT_BSTR,
// VT_UNKNOWN, VT_DISPATCH. Others are copied by value and cannot be changed. Test:
// tests/platform/variant_test.cpp.
#pragma once

#include "qmfilter/portable/interfaces.h"

enum VARENUM : VARTYPE {
    VT_EMPTY = 0,
    VT_NULL = 1,
    VT_I2 = 2,
    VT_I4 = 3,
    VT_R4 = 4,
    VT_R8 = 5,
    VT_BSTR = 8,
    VT_DISPATCH = 9,
    VT_BOOL = 11,
    VT_UNKNOWN = 13,
    VT_UI1 = 17,
    VT_UI2 = 18,
    VT_UI4 = 19,
    VT_INT = 22,
    VT_UINT = 23,
};

inline constexpr VARIANT_BOOL VARIANT_TRUE = -1;
inline constexpr VARIANT_BOOL VARIANT_FALSE = 0;

// Two pointers, the largest member of the SDK's union: it fixes the size.
struct VariantRecord {
    void* data;
    void* info;
};

struct tagVARIANT {
    VARTYPE vt;
    WORD wReserved1;
    WORD wReserved2;
    WORD wReserved3;
    union {
        LONGLONG llVal;
        LONG lVal;
        BYTE bVal;
        SHORT iVal;
        USHORT uiVal;
        ULONG ulVal;
        FLOAT fltVal;
        DOUBLE dblVal;
        VARIANT_BOOL boolVal;
        HRESULT scode;
        BSTR bstrVal;
        IUnknown* punkVal;
        IDispatch* pdispVal;
        void* byref;
        VariantRecord record;
    };
};
using VARIANT = tagVARIANT;
using VARIANTARG = VARIANT;
static_assert(sizeof(VARIANT) == 24);

void VariantInit(VARIANT* value) noexcept;
// Frees a string, releases an object, and leaves VT_EMPTY.
HRESULT VariantClear(VARIANT* value) noexcept;
// Clears `target`, then copies: a string is duplicated, an object referenced. `target` == `source`
// is allowed.
HRESULT VariantCopy(VARIANT* target, const VARIANT* source) noexcept;
// Converts into `target` (which may be `source`). Reals become integers by rounding half to even;
// true is -1 as a number. DISP_E_TYPEMISMATCH, DISP_E_OVERFLOW or DISP_E_BADVARTYPE leave `target`
// as it was. `flags` is not used.
HRESULT VariantChangeType(VARIANT* target, const VARIANT* source, USHORT flags,
                          VARTYPE type) noexcept;
