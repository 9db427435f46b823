// What the embedded host's objects share: their attributes (AttributeMap), the way back from an
// interface to the host's own C++ object (OwnObject), and the place where somebody may stand
// between an object and its callers (ObjectWrapper). Test: tests/host/document_test.cpp.
#pragma once

#include <ole2.h>

#include <string>
#include <string_view>
#include <vector>

#include "platform/com_ptr.h"
#include "platform/variant.h"

namespace qm {

// The named values behind an object's IQmAttributes. A dozen at most, so it is a plain list in the
// order of setting. No method throws.
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
    // `absent` also for what is no number.
    double Number(std::wstring_view name, double absent) const noexcept;
    // Null unless it is an object that answers `Interface`.
    template <typename Interface>
    ComPtr<Interface> Object(std::wstring_view name) const noexcept {
        const Variant* const value = Find(name);
        return value == nullptr ? nullptr : value->AsObject().template As<Interface>();
    }
    const std::vector<Entry>& Entries() const noexcept { return entries_; }
    // False once a value was lost for want of memory.
    bool Complete() const noexcept { return complete_; }

  private:
    std::vector<Entry> entries_;
    bool complete_ = true;
};

// The host's own object of class T behind an interface that came back from a filter; null when it
// is somebody else's. T answers T::kIdentity with its own address.
template <typename T>
ComPtr<T> OwnObject(IUnknown* object) noexcept {
    ComPtr<T> result;
    void* found = nullptr;
    if (object != nullptr && SUCCEEDED(object->QueryInterface(T::kIdentity, &found))) {
        result.Attach(static_cast<T*>(found));
    }
    return result;
}

// Stands between the host's objects and their callers, as the trace does.
class ObjectWrapper {
  public:
    // How an object came to be: by its ProgID, or by a node's CreateChild.
    enum class Origin { kClass, kParent };

    virtual ~ObjectWrapper() = default;
    // Gets every object that the host has made, before its first caller. May put another in its
    // place: one that answers the same interfaces and passes OwnObject's question on. With a
    // failure the maker answers the same and the object is lost.
    virtual HRESULT Wrap(Origin origin, ComPtr<IUnknown>& object) noexcept = 0;
};

}  // namespace qm
