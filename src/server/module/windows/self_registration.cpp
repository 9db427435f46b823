// DllRegisterServer and DllUnregisterServer: the registration scripts of the components (scripts/),
// the type library, and the key that all filters share.
//
// Both need the rights of an administrator. Test: tests/server/windows/registration_test.cpp.
#include <olectl.h>
#include <qmfilter.h>
#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/com_object.h"
#include "platform/library.h"
#include "server/module/module.h"

// The system's registrar: the class in atl.dll, a part of Windows, that carries out registration
// scripts kept as resources. Declared by hand: no SDK header at hand has it.
MIDL_INTERFACE("44ec053b-400f-11d0-9dcd-00a0c90391d3")
IRegistrar : public IUnknown {
  public:
    // %KEY% in a script stands for `item`.
    virtual HRESULT STDMETHODCALLTYPE AddReplacement(LPCOLESTR key, LPCOLESTR item) = 0;
    virtual HRESULT STDMETHODCALLTYPE ClearReplacements() = 0;
    virtual HRESULT STDMETHODCALLTYPE ResourceRegisterSz(LPCOLESTR module, LPCOLESTR name,
                                                         LPCOLESTR type) = 0;
    virtual HRESULT STDMETHODCALLTYPE ResourceUnregisterSz(LPCOLESTR module, LPCOLESTR name,
                                                           LPCOLESTR type) = 0;
    virtual HRESULT STDMETHODCALLTYPE FileRegister(LPCOLESTR file) = 0;
    virtual HRESULT STDMETHODCALLTYPE FileUnregister(LPCOLESTR file) = 0;
    virtual HRESULT STDMETHODCALLTYPE StringRegister(LPCOLESTR script) = 0;
    virtual HRESULT STDMETHODCALLTYPE StringUnregister(LPCOLESTR script) = 0;
    // The script is resource number `id` of kind `type` ("REGISTRY") in the file `module`.
    virtual HRESULT STDMETHODCALLTYPE ResourceRegister(LPCOLESTR module, UINT id,
                                                       LPCOLESTR type) = 0;
    virtual HRESULT STDMETHODCALLTYPE ResourceUnregister(LPCOLESTR module, UINT id,
                                                         LPCOLESTR type) = 0;
};

// clang-format off
__CRT_UUID_DECL(IRegistrar, 0x44ec053b, 0x400f, 0x11d0, 0x9d, 0xcd, 0x00, 0xa0, 0xc9, 0x03, 0x91, 0xd3)
// clang-format on

namespace qm {
namespace {

// ---------------------------------------------------------------- The file this code is in

// Any address of this module tells which one it is; DllMain and a variable for its argument are not
// needed.
HMODULE ThisModule() noexcept {
    static const char kHere = 0;
    HMODULE module = nullptr;
    GetModuleHandleExW(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        reinterpret_cast<LPCWSTR>(&kHere), &module);
    return module;
}

// Full path of the file this code was loaded from; empty when the system does not tell.
std::wstring ModulePath() {
    constexpr std::size_t kLongestPath = 32768;  // the system's limit, in characters
    for (std::wstring path(MAX_PATH, L'\0'); path.size() <= kLongestPath;
         path.resize(path.size() * 2)) {
        const DWORD length =
            GetModuleFileNameW(ThisModule(), path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size()) {  // otherwise it was cut
            path.resize(length);
            return path;
        }
    }
    return {};
}

// File version of `path` as "%u.%u.%u.%u"; empty without a version resource.
std::wstring FileVersion(const std::wstring& path) {
    const DWORD size = GetFileVersionInfoSizeW(path.c_str(), nullptr);
    std::vector<BYTE> resource(size);
    void* found = nullptr;
    UINT length = 0;
    if (size == 0 || GetFileVersionInfoW(path.c_str(), 0, size, resource.data()) == FALSE ||
        VerQueryValueW(resource.data(), L"\\", &found, &length) == FALSE ||
        length < sizeof(VS_FIXEDFILEINFO)) {
        return {};
    }
    const auto& info = *static_cast<const VS_FIXEDFILEINFO*>(found);
    std::wstring version;
    for (const DWORD part : {info.dwFileVersionMS, info.dwFileVersionLS}) {
        version += std::to_wstring(part >> 16) + L'.' + std::to_wstring(part & 0xFFFF) + L'.';
    }
    version.pop_back();
    return version;
}

// ---------------------------------------------------------------- Registration scripts

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
