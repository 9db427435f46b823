// The module's entry points that both systems have; on Windows DllRegisterServer and
// DllUnregisterServer come with them (windows/self_registration.cpp), elsewhere
// QmRegisterHostClass (posix/host_classes.h).
//
// Test: tests/server/module_test.cpp.
#pragma once

#include <objbase.h>

// Class factory of the component `clsid`, or CLASS_E_CLASSNOTAVAILABLE.
STDAPI DllGetClassObject(REFCLSID clsid, REFIID riid, LPVOID* object);
// S_OK when no object of this module is alive and no host has locked it, else S_FALSE.
STDAPI DllCanUnloadNow();
