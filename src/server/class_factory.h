// ClassFactory: makes the objects of one component, alone or, Aggregated, as parts of an outer
// object, and holds the module in memory while a host has locked it.
//
//   HRESULT (*make)(IUnknown* outer, REFIID, void**) = &MakeComponent<CQmFilterHPGL>;
//
// Test: tests/server/module_test.cpp.
#pragma once

#include "platform/com_object.h"

namespace qm {

// An object of class T as a part of an outer object, by COM's aggregation rules: the interfaces of
// T that a client sees count references on the outer object and ask it for interfaces; only
// Inner(), which the outer object keeps, speaks for T itself. T is an ordinary ComObject class, not
// final.
template <typename T>
class Aggregated final : public T {
  public:
    // `outer` is not referenced: it owns this object, so it lives longer.
    template <typename... Arguments>
    explicit Aggregated(IUnknown& outer, Arguments&&... arguments)
        : T(std::forward<Arguments>(arguments)...), outer_(outer), inner_(*this) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) noexcept override {
        return outer_.QueryInterface(riid, object);
    }
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return outer_.AddRef(); }
    ULONG STDMETHODCALLTYPE Release() noexcept override { return outer_.Release(); }

    // The reference the maker holds, as the outer object is to keep it: Release ends this object.
    IUnknown& Inner() noexcept { return inner_; }

  private:
    class InnerUnknown final : public IUnknown {
      public:
        explicit InnerUnknown(Aggregated& owner) noexcept : owner_(owner) {}

        HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) noexcept override {
            if (object == nullptr || !IsEqualGUID(riid, __uuidof(IUnknown))) {
                return owner_.T::QueryInterface(riid, object);  // counts on the outer object
            }
            *object = static_cast<IUnknown*>(this);
            AddRef();
            return S_OK;
        }
        ULONG STDMETHODCALLTYPE AddRef() noexcept override { return owner_.T::AddRef(); }
        ULONG STDMETHODCALLTYPE Release() noexcept override { return owner_.T::Release(); }

      private:
        Aggregated& owner_;
    };

    IUnknown& outer_;
    InnerUnknown inner_;
};

// Makes an object and hands out its interface `riid`; with an `outer` object, whose part it
// becomes, only IUnknown may be asked for (CLASS_E_NOAGGREGATION otherwise).
using ComponentMaker = HRESULT (*)(IUnknown* outer, REFIID riid, void** object);

// The maker of T, a ComObject class that needs no arguments and is not final.
template <typename T>
HRESULT MakeComponent(IUnknown* outer, REFIID riid, void** object) noexcept {
    if (outer == nullptr) {
        const ComPtr<T> made = MakeObject<T>();
        return made ? made->QueryInterface(riid, object) : E_OUTOFMEMORY;
    }
    if (!IsEqualGUID(riid, __uuidof(IUnknown))) return CLASS_E_NOAGGREGATION;
    // Its one reference goes to the outer object as the inner IUnknown. A ComPtr that let go of it
    // would count on the outer object instead.
    auto* const part = MakeObject<Aggregated<T>>(*outer).Detach();
    if (part == nullptr) return E_OUTOFMEMORY;
    *object = &part->Inner();
    return S_OK;
}

class ClassFactory final : public ComObject<IClassFactory> {
  public:
    explicit ClassFactory(ComponentMaker make) noexcept : make_(make) {}

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID riid,
                                             void** object) noexcept override;
    // Locks count: as many unlocks as locks are needed. E_FAIL for an unlock too many.
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) noexcept override;

  private:
    ComponentMaker make_;
};

// True while a host has locked the module through any factory.
bool IsModuleLocked() noexcept;

}  // namespace qm
