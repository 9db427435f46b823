#include "qmfilter/portable/class_table.h"

#include <algorithm>
#include <new>
#include <vector>

#include "platform/com_ptr.h"
#include "qmfilter/portable/stream.h"

namespace {

struct ClassEntry {
    CLSID clsid;
    DWORD cookie;
    qm::ComPtr<IUnknown> factory;
};

// What COM keeps for one thread.
struct Apartment {
    std::vector<ClassEntry> classes;
    DWORD lastCookie = 0;
    int initialisations = 0;
};

Apartment& CurrentApartment() noexcept {
    thread_local Apartment apartment;
    return apartment;
}

}  // namespace

HRESULT CoInitialize(LPVOID reserved) noexcept {
    return CoInitializeEx(reserved, COINIT_APARTMENTTHREADED);
}

HRESULT CoInitializeEx(LPVOID, DWORD) noexcept {
    return CurrentApartment().initialisations++ == 0 ? S_OK : S_FALSE;
}

void CoUninitialize() noexcept {
    Apartment& apartment = CurrentApartment();
    if (apartment.initialisations == 0 || --apartment.initialisations > 0) return;
    // Released after the table is empty: a factory's destructor may come back here.
    const std::vector<ClassEntry> dropped = std::move(apartment.classes);
    apartment.classes.clear();
}

HRESULT CoRegisterClassObject(REFCLSID clsid, IUnknown* factory, DWORD, DWORD,
                              DWORD* cookie) noexcept try {
    if (factory == nullptr || cookie == nullptr) return E_INVALIDARG;
    Apartment& apartment = CurrentApartment();
    apartment.classes.push_back({clsid, apartment.lastCookie + 1, qm::ComPtr<IUnknown>(factory)});
    *cookie = ++apartment.lastCookie;
    return S_OK;
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

HRESULT CoRevokeClassObject(DWORD cookie) noexcept {
    std::vector<ClassEntry>& classes = CurrentApartment().classes;
    const auto entry = std::find_if(classes.begin(), classes.end(),
                                    [=](const auto& item) { return item.cookie == cookie; });
    if (entry == classes.end()) return E_INVALIDARG;
    const ClassEntry dropped = std::move(*entry);  // released when the table is in order again
    classes.erase(entry);
    return S_OK;
}

HRESULT CoGetClassObject(REFCLSID clsid, DWORD, void*, REFIID riid, void** object) noexcept {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    const std::vector<ClassEntry>& classes = CurrentApartment().classes;
    const auto entry = std::find_if(classes.rbegin(), classes.rend(),
                                    [&](const auto& item) { return item.clsid == clsid; });
    if (entry == classes.rend()) return REGDB_E_CLASSNOTREG;
    return entry->factory->QueryInterface(riid, object);
}

HRESULT CoCreateInstance(REFCLSID clsid, IUnknown* outer, DWORD context, REFIID riid,
                         void** object) noexcept {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    qm::ComPtr<IClassFactory> factory;
    const HRESULT status =
        CoGetClassObject(clsid, context, nullptr, IID_IClassFactory, factory.PutVoid());
    if (FAILED(status)) return status;
    return factory->CreateInstance(outer, riid, object);
}

// The system's interface identifiers, which on Windows come from its uuid library.
extern "C" {
const GUID GUID_NULL = {};
const IID IID_IUnknown = __uuidof(IUnknown);
const IID IID_IDispatch = __uuidof(IDispatch);
const IID IID_IClassFactory = __uuidof(IClassFactory);
const IID IID_ISequentialStream = __uuidof(ISequentialStream);
const IID IID_IStream = __uuidof(IStream);
const IID IID_IEnumConnections = __uuidof(IEnumConnections);
const IID IID_IEnumConnectionPoints = __uuidof(IEnumConnectionPoints);
const IID IID_IConnectionPoint = __uuidof(IConnectionPoint);
const IID IID_IConnectionPointContainer = __uuidof(IConnectionPointContainer);
}
