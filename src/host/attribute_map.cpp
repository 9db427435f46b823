#include "host/attribute_map.h"

#include <algorithm>
#include <new>

namespace qm {

const Variant* AttributeMap::Find(std::wstring_view name) const noexcept {
    const auto found = std::find_if(entries_.begin(), entries_.end(),
                                    [=](const Entry& entry) { return entry.name == name; });
    return found == entries_.end() ? nullptr : &found->value;
}

HRESULT AttributeMap::Put(BSTR name, const VARIANT& value, LONG flags) noexcept try {
    const std::wstring_view wanted = ViewOf(name);
    Variant copy(value);
    for (Entry& entry : entries_) {
        if (entry.name != wanted) continue;
        entry.value = std::move(copy);
        entry.flags = flags;
        return S_OK;
    }
    entries_.push_back({std::wstring(wanted), std::move(copy), flags});
    return S_OK;
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

HRESULT AttributeMap::Get(BSTR name, VARIANT* value) const noexcept {
    if (value == nullptr) return E_POINTER;
    VariantInit(value);
    const Variant* const found = Find(ViewOf(name));
    if (found == nullptr) return E_INVALIDARG;
    return VariantCopy(value, &found->Get());
}

double AttributeMap::Number(std::wstring_view name, double absent) const noexcept {
    const Variant* const value = Find(name);
    return value == nullptr ? absent : value->AsDouble().value_or(absent);
}

}  // namespace qm
