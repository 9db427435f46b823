// BSTR: counted, zero-terminated wide strings on the COM heap, as <oleauto.h> declares them.
//
// A BSTR points behind a byte count and may hold zero characters; a null BSTR is an empty string
// everywhere. Test: tests/platform/bstr_test.cpp.
#pragma once

#include "qmfilter/portable/types.h"

// Copy of a zero-terminated text; null for null or when memory runs out. The caller frees it.
BSTR SysAllocString(const OLECHAR* text) noexcept;
// `length` characters copied from `text`, or left uninitialised behind a terminator when `text` is
// null.
BSTR SysAllocStringLen(const OLECHAR* text, UINT length) noexcept;
// `bytes` bytes, for callers that keep 8-bit data in a BSTR.
BSTR SysAllocStringByteLen(const char* text, UINT bytes) noexcept;
void SysFreeString(BSTR text) noexcept;
// Characters, bytes; 0 for null.
UINT SysStringLen(BSTR text) noexcept;
UINT SysStringByteLen(BSTR text) noexcept;
