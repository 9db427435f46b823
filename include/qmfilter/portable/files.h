// Files by handle, and temporary files, as <fileapi.h> declares them.
//
// Names are wide; they become UTF-8 (bytes of a name that are no UTF-8 survive, see
// platform/text.h). Sharing, security and attribute arguments are accepted and mean nothing here.
// Test: tests/platform/files_test.cpp.
#pragma once

#include "qmfilter/portable/types.h"

struct SECURITY_ATTRIBUTES;

inline const HANDLE INVALID_HANDLE_VALUE = reinterpret_cast<HANDLE>(std::intptr_t{-1});
inline constexpr DWORD GENERIC_READ = 0x80000000;
inline constexpr DWORD GENERIC_WRITE = 0x40000000;
inline constexpr DWORD FILE_SHARE_READ = 1;
inline constexpr DWORD CREATE_NEW = 1;
inline constexpr DWORD CREATE_ALWAYS = 2;
inline constexpr DWORD OPEN_EXISTING = 3;
inline constexpr DWORD TRUNCATE_EXISTING = 5;
inline constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x80;
inline constexpr DWORD FILE_BEGIN = 0;
inline constexpr DWORD FILE_CURRENT = 1;
inline constexpr DWORD FILE_END = 2;
inline constexpr DWORD INVALID_FILE_SIZE = 0xFFFFFFFF;
inline constexpr DWORD INVALID_SET_FILE_POINTER = 0xFFFFFFFF;

// INVALID_HANDLE_VALUE on failure; a folder cannot be opened.
HANDLE CreateFileW(LPCWSTR path, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security,
                   DWORD disposition, DWORD flags, HANDLE pattern) noexcept;
// At the end of the file: TRUE with 0 bytes.
BOOL ReadFile(HANDLE file, LPVOID buffer, DWORD bytes, DWORD* done, void* overlapped) noexcept;
BOOL WriteFile(HANDLE file, LPCVOID buffer, DWORD bytes, DWORD* done, void* overlapped) noexcept;
// Low 32 bits; the high ones go to *high when it is given.
DWORD GetFileSize(HANDLE file, DWORD* high) noexcept;
// New position (low 32 bits). Without *high the distance is a signed 32-bit value; with it *high
// holds the upper half of the distance and then of the position. Before the start:
// INVALID_SET_FILE_POINTER, the position stays.
DWORD SetFilePointer(HANDLE file, LONG distance, LONG* high, DWORD origin) noexcept;
BOOL CloseHandle(HANDLE file) noexcept;
BOOL DeleteFileW(LPCWSTR path) noexcept;
// The folder for temporary files with its closing slash: TMPDIR or /tmp. Length without the
// terminator; when `length` characters are too few, the number needed with it.
DWORD GetTempPathW(DWORD length, LPWSTR buffer) noexcept;
// Writes "FOLDER/PREXXXX.tmp" to `buffer` (MAX_PATH characters): the first three characters of
// `prefix` and four hexadecimal digits of `unique`. With `unique` 0 a number is found whose file
// does not exist, and the empty file is made, readable by its owner only. The number used, or 0 on
// failure.
UINT GetTempFileNameW(LPCWSTR folder, LPCWSTR prefix, UINT unique, LPWSTR buffer) noexcept;
