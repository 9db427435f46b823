// ComObject: reference counting and QueryInterface for our classes that implement COM interfaces,
// on both systems.
//
//   class Sink final : public ComObject<IQmSaveStructure> { ... };
//   ComPtr<Sink> sink = MakeObject<Sink>(arguments);        // null when memory ran out
//   HRESULT Sink::Method() noexcept { return Guarded([&] { ...; return S_OK; }); }
//
// Objects belong to one thread (apartment), so the count is a plain integer; only the number of
// live objects, which tests and module unloading ask for, is shared between threads. Test:
// tests/platform/com_object_test.cpp.
#pragma once

#include <new>
#include <tuple>
#include <utility>

#include "platform/com_ptr.h"

namespace qm {

// Objects made from ComObject that are still alive in this module.
LONG LiveObjectCount() noexcept;

// Counts itself while it exists; a member of ComObject, and of whatever else must keep the module
// loaded.
class LiveObject {
  public:
    LiveObject() noexcept;
    ~LiveObject();
    LiveObject(const LiveObject&) = delete;
    LiveObject& operator=(const LiveObject&) = delete;
};

// Implements IUnknown for `Interfaces`, of which the first gives the object its identity. An
// interface that is only a base of a listed one (IStream's ISequentialStream) is answered when the
// class overrides FindInterface.
template <typename... Interfaces>
class ComObject : public Interfaces... {
  public:
    ComObject(const ComObject&) = delete;
    ComObject& operator=(const ComObject&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) noexcept override {
        if (object == nullptr) return E_POINTER;
        *object = nullptr;
        if (IsEqualGUID(riid, __uuidof(IUnknown))) *object = static_cast<First*>(this);
        (void)((*object == nullptr && IsEqualGUID(riid, __uuidof(Interfaces)) &&
                (*object = static_cast<Interfaces*>(this)) != nullptr) ||
               ...);
        if (*object == nullptr) *object = FindInterface(riid);
        if (*object == nullptr) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() noexcept override {
        if (--references_ > 0) return references_;
        // Something released by the destructor may use this object once more; it must not die
        // twice.
        references_ = kDying;
        delete this;
        return 0;
    }

  protected:
    ComObject() noexcept = default;
    virtual ~ComObject() = default;

    // Further interfaces: the pointer for `riid`, without a reference, or null.
    virtual void* FindInterface(REFIID) noexcept { return nullptr; }

  private:
    using First = std::tuple_element_t<0, std::tuple<Interfaces...>>;
    static constexpr ULONG kDying = 0x40000000;

    ULONG references_ = 1;  // the maker's
    LiveObject live_;
};

// Runs the body of a COM method, `work() -> HRESULT`: exhausted memory becomes E_OUTOFMEMORY, any
// other exception E_FAIL, so that nothing is thrown across an interface.
template <typename Work>
HRESULT Guarded(Work&& work) noexcept {
    try {
        return work();
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_FAIL;
    }
}

// A new T, owned by the result alone; null when memory ran out. The only place where the allocation
// of an object is checked.
template <typename T, typename... Arguments>
ComPtr<T> MakeObject(Arguments&&... arguments) noexcept {
    ComPtr<T> result;
    try {
        result.Attach(new T(std::forward<Arguments>(arguments)...));
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
    return result;
}

}  // namespace qm
