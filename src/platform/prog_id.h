// Registration of ProgIDs by a program that brings its own classes (the embedded host, the tests).
//
// Natively a table in the process, on Windows keys under HKEY_CLASSES_ROOT, which needs the rights
// for it and stays until UnregisterProgId. posix/class_table.cpp, windows/prog_id.cpp. Test:
// tests/platform/class_table_test.cpp.
#pragma once

#include <objbase.h>

namespace qm {

// CLSIDFromProgID(progId) gives `clsid` from now on, on every thread. A failure is the registry's.
HRESULT RegisterProgId(const wchar_t* progId, REFCLSID clsid) noexcept;
// An unknown ProgID is no failure.
HRESULT UnregisterProgId(const wchar_t* progId) noexcept;

}  // namespace qm
