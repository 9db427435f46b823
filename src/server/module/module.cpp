#include "server/module/module.h"

#include <qmfilter.h>

#include <algorithm>

#include "export/save_filter.h"
#include "import/qm_filter_hpgl.h"

namespace qm {

const std::array<Component, 3>& Components() noexcept {
    static constexpr std::array<Component, 3> kComponents = {{
        {__uuidof(QmFilterHPGL), &MakeComponent<CQmFilterHPGL>, 101},
        {__uuidof(QmFilterSaveHPGL), &MakeComponent<CQmFilterSaveHPGL>, 102},
        {__uuidof(QmFilterSaveHPRTL), &MakeComponent<CQmFilterSaveHPRTL>, 103},
    }};
    return kComponents;
}

}  // namespace qm

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
