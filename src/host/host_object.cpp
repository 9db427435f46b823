// See host_object.h.
#include "host/host_object.h"

#include <algorithm>

#include "platform/com_object.h"

namespace qm {

const Variant* AttributeMap::Find(std::wstring_view name) const noexcept {
    const auto found = std::find_if(entries_.begin(), entries_.end(),
                                    [=](const Entry& entry) { return entry.name == name; });
    return found == entries_.end() ? nullptr : &found->value;
}

HRESULT AttributeMap::Put(BSTR name, const VARIANT& value, LONG flags) noexcept {
    const HRESULT status = Guarded([&]() -> HRESULT {
        const std::wstring_view wanted = ViewOf(name);
        Entry entry{std::wstring(wanted), Variant(value), flags};
        const auto known = std::find_if(entries_.begin(), entries_.end(),
                                        [=](const Entry& other) { return other.name == wanted; });
        if (known != entries_.end()) {
            *known = std::move(entry);
        } else {
            entries_.push_back(std::move(entry));
        }
        return S_OK;
    });
    if (FAILED(status)) complete_ = false;
    return status;
}

HRESULT AttributeMap::Get(BSTR name, VARIANT* value) const noexcept {
    if (value == nullptr) return E_POINTER;
    VariantInit(value);
    const Variant* const found = Find(ViewOf(name));
    if (found == nullptr) return E_INVALIDARG;
    // MinGW-w64 declares the source without const; it is not written to.
    return VariantCopy(value, const_cast<VARIANT*>(&found->Get()));
}

double AttributeMap::Number(std::wstring_view name, double absent) const noexcept {
    const Variant* const value = Find(name);
    return value == nullptr ? absent : value->AsDouble().value_or(absent);
}

}  // namespace qm
