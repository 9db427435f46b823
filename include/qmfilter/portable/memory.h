// Movable global memory blocks, in which packed bitmaps travel, and the heap of CoTaskMemAlloc, on
// which strings handed across interfaces live.
//
// A handle is not the address of its bytes: use GlobalLock. Only movable blocks are offered
// (GMEM_MOVEABLE, GHND); for others GlobalAlloc gives null. Test:
// tests/platform/bstr_test.cpp.
#pragma once

#include "qmfilter/portable/types.h"

inline constexpr UINT GMEM_MOVEABLE = 0x02;
inline constexpr UINT GMEM_ZEROINIT = 0x40;
inline constexpr UINT GHND = GMEM_MOVEABLE | GMEM_ZEROINIT;

// A block of exactly `bytes` bytes; null when memory runs out. With 0 bytes a handle whose lock is
// null.
HGLOBAL GlobalAlloc(UINT flags, SIZE_T bytes) noexcept;
// The block with a new size, its bytes kept, new ones 0 with GMEM_ZEROINIT. Null on failure; the
// old block stays valid. A locked block may move: lock again.
HGLOBAL GlobalReAlloc(HGLOBAL memory, SIZE_T bytes, UINT flags) noexcept;
// Address of the bytes, or null for a null or empty block. Pair with GlobalUnlock.
LPVOID GlobalLock(HGLOBAL memory) noexcept;
// Non-zero while locks remain.
BOOL GlobalUnlock(HGLOBAL memory) noexcept;
// Bytes; exact here, may be rounded up on Windows. 0 for null.
SIZE_T GlobalSize(HGLOBAL memory) noexcept;
// Always null, which means success.
HGLOBAL GlobalFree(HGLOBAL memory) noexcept;

// Null when memory runs out. The receiver frees.
LPVOID CoTaskMemAlloc(SIZE_T bytes) noexcept;
void CoTaskMemFree(LPVOID block) noexcept;
