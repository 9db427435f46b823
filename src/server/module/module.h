// The components this module serves and the entry points that both systems have; on Windows
// DllRegisterServer and DllUnregisterServer come with them (windows/self_registration.cpp),
// elsewhere QmRegisterHostClass (posix/host_classes.h).
//
// Tests: tests/server/module_test.cpp, tests/server/windows/registration_test.cpp.
#pragma once

#include <objbase.h>

#include <array>

#include "server/class_factory.h"

// Class factory of the component `clsid`, or CLASS_E_CLASSNOTAVAILABLE.
STDAPI DllGetClassObject(REFCLSID clsid, REFIID riid, LPVOID* object);
// S_OK when no object of this module is alive and no host has locked it, else S_FALSE.
STDAPI DllCanUnloadNow();

namespace qm {

struct Component {
    CLSID clsid;
    ComponentMaker make;
    unsigned int script;  // resource number of its registration script (windows/module.rc.in)
};

// What DllGetClassObject looks through and what registration writes.
const std::array<Component, 3>& Components() noexcept;

}  // namespace qm
