// How a host on a system without COM makes its classes known to this module.
//
// The module creates the host's "Tessel.QmContainer", "Tessel.QmLayers" and "Tessel.QmPenTable" by
// ProgID. On Windows COM finds them; elsewhere the host hands their factories to the module itself,
// because nothing but these entry points connects the two. Look them up with dlsym in
// libQmFilter_HPGL.so. Test: docs/integration.md, whose code is compiled and run.
#pragma once

#include <objbase.h>

// The module creates objects of class `progId` through `factory`, on the calling thread, until
// QmRevokeHostClass(*cookie). `clsid` only tells the classes apart. The latest registration wins.
// E_INVALIDARG for a null argument, E_OUTOFMEMORY.
STDAPI QmRegisterHostClass(const wchar_t* progId, REFCLSID clsid, IClassFactory* factory,
                           DWORD* cookie);
// E_INVALIDARG for a cookie this thread does not have. Every class is to be revoked before its
// thread ends or the library is unloaded.
STDAPI QmRevokeHostClass(DWORD cookie);
