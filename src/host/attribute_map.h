// AttributeMap: the named values of one host object, behind the host's IQmAttributes. Test:
// tests/host/document_test.cpp.
#pragma once

#include <ole2.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/variant.h"

namespace qm {

// A dozen values at most, so it is a plain list in the order of setting. No method throws.
class AttributeMap {
  public:
    struct Entry {
        std::wstring name;
        Variant value;
        LONG flags = 0;
    };

    // IQmAttributes::PutAttribute: sets or replaces. E_OUTOFMEMORY leaves the map as it was.
    HRESULT Put(BSTR name, const VARIANT& value, LONG flags) noexcept;
    // IQmAttributes::GetAttribute. E_POINTER for a null `value`, E_INVALIDARG for an absent name.
    HRESULT Get(BSTR name, VARIANT* value) const noexcept;

    // Null when absent.
    const Variant* Find(std::wstring_view name) const noexcept;
    double Number(std::wstring_view name, double absent) const noexcept;
    // Null unless it is an object that answers `Interface`.
    template <typename Interface>
    ComPtr<Interface> Object(std::wstring_view name) const noexcept {
        const Variant* const value = Find(name);
        return value == nullptr ? nullptr : value->AsObject().template As<Interface>();
    }
    const std::vector<Entry>& Entries() const noexcept { return entries_; }

  private:
    std::vector<Entry> entries_;
};

}  // namespace qm
