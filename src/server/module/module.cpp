#include "server/module/module.h"

#include <algorithm>

#include "server/module/components.h"

STDAPI DllGetClassObject(REFCLSID clsid, REFIID riid, LPVOID* object) {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    const auto& components = qm::Components();
    const auto component =
        std::find_if(components.begin(), components.end(),
                     [&](const auto& item) { return IsEqualGUID(item.clsid, clsid); });
    if (component == components.end()) return CLASS_E_CLASSNOTAVAILABLE;
    const auto factory = qm::MakeObject<qm::ClassFactory>(component->make);
    return factory ? factory->QueryInterface(riid, object) : E_OUTOFMEMORY;
}

STDAPI DllCanUnloadNow() {
    return qm::LiveObjectCount() == 0 && !qm::IsModuleLocked() ? S_OK : S_FALSE;
}
