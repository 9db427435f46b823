// CoTaskMem*: the heap on which strings handed across interfaces live. Test:
// tests/platform/bstr_test.cpp.
#pragma once

#include "platform/posix/types.h"

// Null when memory runs out. The receiver frees.
LPVOID CoTaskMemAlloc(SIZE_T bytes) noexcept;
LPVOID CoTaskMemRealloc(LPVOID block, SIZE_T bytes) noexcept;
void CoTaskMemFree(LPVOID block) noexcept;
