#include "platform/prog_id.h"

#include <windows.h>

#include <new>
#include <string>

namespace qm {

HRESULT RegisterProgId(const wchar_t* progId, REFCLSID clsid) noexcept try {
    wchar_t text[40];
    const int length = StringFromGUID2(clsid, text, 40);
    const std::wstring key = std::wstring(progId) + L"\\CLSID";
    const LSTATUS status =
        RegSetKeyValueW(HKEY_CLASSES_ROOT, key.c_str(), nullptr, REG_SZ, text,
                        static_cast<DWORD>(static_cast<std::size_t>(length) * sizeof(wchar_t)));
    return HRESULT_FROM_WIN32(static_cast<unsigned long>(status));
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

HRESULT UnregisterProgId(const wchar_t* progId) noexcept {
    const LSTATUS status = RegDeleteTreeW(HKEY_CLASSES_ROOT, progId);
    if (status == ERROR_FILE_NOT_FOUND) return S_OK;
    return HRESULT_FROM_WIN32(static_cast<unsigned long>(status));
}

}  // namespace qm
