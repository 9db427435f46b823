// The components this module serves: what DllGetClassObject looks through and what registration
// writes. Test: tests/server/windows/registration_test.cpp.
#pragma once

#include <array>

#include "server/class_factory.h"

namespace qm {

struct Component {
    CLSID clsid;
    ComponentMaker make;
    unsigned int script;  // resource number of its registration script (windows/module.rc.in)
};

const std::array<Component, 3>& Components() noexcept;

}  // namespace qm
