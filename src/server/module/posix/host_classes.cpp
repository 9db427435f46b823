#include "server/module/posix/host_classes.h"

#include "platform/prog_id.h"

STDAPI QmRegisterHostClass(const wchar_t* progId, REFCLSID clsid, IClassFactory* factory,
                           DWORD* cookie) {
    if (progId == nullptr || factory == nullptr || cookie == nullptr) return E_INVALIDARG;
    const HRESULT named = qm::RegisterProgId(progId, clsid);
    if (FAILED(named)) return named;
    return CoRegisterClassObject(clsid, factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, cookie);
}

STDAPI QmRevokeHostClass(DWORD cookie) { return CoRevokeClassObject(cookie); }
