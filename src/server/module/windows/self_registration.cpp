// DllRegisterServer and DllUnregisterServer: the registration scripts of the components (scripts/),
// the type library, and the key that all filters share.
//
// Both need the rights of an administrator. Test: tests/server/windows/registration_test.cpp.
#include <olectl.h>
#include <qmfilter.h>
#include <windows.h>

#include <algorithm>
#include <string>

#include "platform/com_object.h"
#include "platform/library.h"
#include "server/module/components.h"
#include "server/module/windows/registrar.h"
#include "server/module/windows/this_module.h"

namespace qm {
namespace {

constexpr CLSID kRegistrarClass = {
    0x44ec053a, 0x400f, 0x11d0, {0x9d, 0xcd, 0x00, 0xa0, 0xc9, 0x03, 0x91, 0xd3}};
constexpr wchar_t kScriptType[] = L"REGISTRY";
constexpr wchar_t kFiltersKey[] = L"Software\\Quenmar\\QmFilters";
constexpr wchar_t kMakerKey[] = L"Software\\Quenmar";

std::wstring GuidText(REFGUID guid) {
    wchar_t text[40];
    StringFromGUID2(guid, text, 40);
    return text;
}

// Scripts put their texts between apostrophes.
std::wstring ScriptText(const std::wstring& text) {
    std::wstring quoted;
    for (const wchar_t c : text) quoted.append(c == L'\'' ? 2 : 1, c);
    return quoted;
}

// Registers or unregisters the components of one module file through their scripts.
class Scripts {
  public:
    explicit Scripts(const std::wstring& modulePath) : path_(modulePath) {}

    // SELFREG_E_CLASS: this system has no registrar.
    HRESULT Open() {
        const auto getClassObject =
            atl_.Function<HRESULT STDAPICALLTYPE(REFCLSID, REFIID, void**)>("DllGetClassObject");
        ComPtr<IClassFactory> factory;
        if (getClassObject == nullptr ||
            FAILED(getClassObject(kRegistrarClass, IID_IClassFactory, factory.PutVoid())) ||
            FAILED(factory->CreateInstance(nullptr, __uuidof(IRegistrar), registrar_.PutVoid()))) {
            return SELFREG_E_CLASS;
        }
        return S_OK;
    }
    HRESULT Register(const Component& component) {
        const HRESULT status = Replace(component);
        return FAILED(status)
                   ? status
                   : registrar_->ResourceRegister(path_.c_str(), component.script, kScriptType);
    }
    HRESULT Unregister(const Component& component) {
        const HRESULT status = Replace(component);
        return FAILED(status)
                   ? status
                   : registrar_->ResourceUnregister(path_.c_str(), component.script, kScriptType);
    }

  private:
    // What %MODULE%, %VERSION%, %CLSID% and %LIBID% stand for in the script.
    HRESULT Replace(const Component& component) {
        const std::pair<const wchar_t*, std::wstring> replacements[] = {
            {L"MODULE", ScriptText(path_)},
            {L"VERSION", FileVersion(path_)},
            {L"CLSID", GuidText(component.clsid)},
            {L"LIBID", GuidText(LIBID_QmFilterHPGLLib)},
        };
        registrar_->ClearReplacements();
        for (const auto& [key, item] : replacements) {
            const HRESULT status = registrar_->AddReplacement(key, item.c_str());
            if (FAILED(status)) return status;
        }
        return S_OK;
    }

    const std::wstring path_;
    Library atl_{"atl.dll"};  // freed last: the registrar is its object
    ComPtr<IRegistrar> registrar_;
};

HRESULT RegisterTypes(const std::wstring& path) {
    ComPtr<ITypeLib> library;
    const HRESULT status = LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.Put());
    if (FAILED(status)) return SELFREG_E_TYPELIB;
    std::wstring name = path;  // the function's argument is not const
    return FAILED(RegisterTypeLib(library.Get(), name.data(), nullptr)) ? SELFREG_E_TYPELIB : S_OK;
}

// Unknown types are no failure: they may have been unregistered before.
void UnregisterTypes() { UnRegisterTypeLib(LIBID_QmFilterHPGLLib, 1, 0, LANG_NEUTRAL, SYS_WIN64); }

// Deletes a key of the machine that holds nothing (its own default value aside). Keys with entries
// of other filters stay.
void DeleteUnusedKey(const wchar_t* name) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, name, 0, KEY_READ, &key) != ERROR_SUCCESS) return;
    DWORD keys = 0;
    DWORD values = 0;
    const LSTATUS asked = RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &keys, nullptr, nullptr,
                                           &values, nullptr, nullptr, nullptr, nullptr);
    const bool hasDefault =
        RegQueryValueExW(key, nullptr, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
    RegCloseKey(key);
    if (asked == ERROR_SUCCESS && keys == 0 && values == (hasDefault ? 1 : 0)) {
        RegDeleteKeyW(HKEY_LOCAL_MACHINE, name);
    }
}

// Goes on after a failure, so that as much as possible is removed; the first failure is returned.
HRESULT UnregisterServer(Scripts& scripts) {
    HRESULT result = S_OK;
    for (const Component& component : Components()) {
        const HRESULT status = scripts.Unregister(component);
        if (SUCCEEDED(result)) result = status;
    }
    UnregisterTypes();
    // The scripts leave the shared keys alone, for other modules may have filters there.
    DeleteUnusedKey(kFiltersKey);
    DeleteUnusedKey(kMakerKey);
    return result;
}

HRESULT RegisterServer(Scripts& scripts, const std::wstring& path) {
    for (const Component& component : Components()) {
        const HRESULT status = scripts.Register(component);
        if (FAILED(status)) return status;
    }
    return RegisterTypes(path);
}

}  // namespace
}  // namespace qm

// After a failure nothing stays registered.
STDAPI DllRegisterServer() {
    return qm::Guarded([] {
        const std::wstring path = qm::ModulePath();
        qm::Scripts scripts(path);
        HRESULT status = scripts.Open();
        if (FAILED(status)) return status;
        status = qm::RegisterServer(scripts, path);
        if (FAILED(status)) qm::UnregisterServer(scripts);
        return status;
    });
}

STDAPI DllUnregisterServer() {
    return qm::Guarded([] {
        qm::Scripts scripts(qm::ModulePath());
        const HRESULT status = scripts.Open();
        return FAILED(status) ? status : qm::UnregisterServer(scripts);
    });
}
