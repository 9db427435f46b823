#include "tests/server/server_host.h"

#include "server/module/module.h"

namespace qm {

ComPtr<IClassFactory> ServerHost::Factory(REFCLSID clsid) const {
    ComPtr<IClassFactory> factory;
    const auto getClassObject = module_.Function<decltype(DllGetClassObject)>("DllGetClassObject");
    if (getClassObject != nullptr) getClassObject(clsid, IID_IClassFactory, factory.PutVoid());
    return factory;
}

HRESULT ServerHost::CanUnload() const {
    const auto canUnloadNow = module_.Function<decltype(DllCanUnloadNow)>("DllCanUnloadNow");
    return canUnloadNow != nullptr ? canUnloadNow() : E_FAIL;
}

}  // namespace qm
