// Dynamic libraries under the names that Windows code uses for them.
//
// "NAME.dll" stands for the shared object "NAME.so": first beside the executable, then wherever the
// system's loader looks (run path, LD_LIBRARY_PATH, standard folders). A name with a folder is
// opened there only. The current folder is never searched. Test: tests/archive/archive_test.cpp.
#pragma once

#include "qmfilter/portable/types.h"

using HMODULE = void*;
using HINSTANCE = HMODULE;
using FARPROC = std::intptr_t(WINAPI*)();

// Null when there is no such library or it cannot be loaded.
HMODULE LoadLibraryA(LPCSTR name) noexcept;
// Null when the library does not export `name`.
FARPROC GetProcAddress(HMODULE module, LPCSTR name) noexcept;
BOOL FreeLibrary(HMODULE module) noexcept;
