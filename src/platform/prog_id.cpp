#include "platform/prog_id.h"

#include <algorithm>
#include <mutex>
#include <new>
#include <string>
#include <vector>

#include "platform/text.h"

namespace qm {
namespace {

struct ProgIdEntry {
    std::wstring progId;
    CLSID clsid;
};

// Shared by all threads, as the registry is.
struct ProgIdTable {
    std::mutex mutex;
    std::vector<ProgIdEntry> entries;

    ProgIdEntry* Find(std::wstring_view progId) noexcept {
        const auto found = std::find_if(entries.begin(), entries.end(), [=](const auto& entry) {
            return EqualIgnoringAsciiCase(entry.progId, progId);
        });
        return found == entries.end() ? nullptr : &*found;
    }
};

ProgIdTable& ProgIds() noexcept {
    static ProgIdTable table;
    return table;
}

}  // namespace

HRESULT RegisterProgId(const wchar_t* progId, REFCLSID clsid) noexcept try {
    ProgIdTable& table = ProgIds();
    const std::lock_guard<std::mutex> lock(table.mutex);
    if (ProgIdEntry* entry = table.Find(progId); entry != nullptr) {
        entry->clsid = clsid;
    } else {
        table.entries.push_back({progId, clsid});
    }
    return S_OK;
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

HRESULT UnregisterProgId(const wchar_t* progId) noexcept {
    ProgIdTable& table = ProgIds();
    const std::lock_guard<std::mutex> lock(table.mutex);
    if (const ProgIdEntry* entry = table.Find(progId); entry != nullptr) {
        table.entries.erase(table.entries.begin() + (entry - table.entries.data()));
    }
    return S_OK;
}

HRESULT ClassIdFromProgId(const wchar_t* progId, CLSID* clsid) noexcept {
    if (progId == nullptr || clsid == nullptr) return E_INVALIDARG;
    {
        ProgIdTable& table = ProgIds();
        const std::lock_guard<std::mutex> lock(table.mutex);
        if (const ProgIdEntry* entry = table.Find(progId); entry != nullptr) {
            *clsid = entry->clsid;
            return S_OK;
        }
    }
#ifdef _WIN32
    return CLSIDFromProgID(progId, clsid);
#else
    *clsid = GUID_NULL;
    return CO_E_CLASSSTRING;
#endif
}

}  // namespace qm
