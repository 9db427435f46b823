// ClassFactory: makes the objects of one component, alone or as parts of an outer object, and holds
// the module in memory while a host has locked it.
//
//   HRESULT (*make)(IUnknown* outer, REFIID, void**) = &MakeComponent<CQmFilterHPGL>;
//
// Test: tests/server/aggregation_test.cpp.
#pragma once

#include "platform/com_object.h"
#include "server/aggregated.h"

namespace qm {

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
