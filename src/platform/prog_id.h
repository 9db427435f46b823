// ProgIDs of a program that brings its own classes (the embedded host, the tests).
//
// They live in a table of the process, so that such a program needs no registry, no rights and no
// clean-up, and leaves the classes of an installed engine alone. Code that creates classes by
// ProgID asks ClassIdFromProgId, which knows the table and the system's ProgIDs. Test:
// tests/host/open_plot_test.cpp.
#pragma once

#include <objbase.h>

namespace qm {

// ClassIdFromProgId(progId) gives `clsid` from now on, on every thread of this module, whatever is
// registered in the system. E_OUTOFMEMORY.
HRESULT RegisterProgId(const wchar_t* progId, REFCLSID clsid) noexcept;
// An unknown ProgID is no failure.
HRESULT UnregisterProgId(const wchar_t* progId) noexcept;

// The class registered here under `progId`, else the system's. The case of A to Z does not matter.
// A failure (CO_E_CLASSSTRING or the registry's) leaves GUID_NULL.
HRESULT ClassIdFromProgId(const wchar_t* progId, CLSID* clsid) noexcept;

}  // namespace qm
