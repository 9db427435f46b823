// Aggregated: an object of class T as a part of an outer object, by COM's aggregation rules.
//
// The interfaces of T that a client sees count references on the outer object and ask it for
// interfaces; only Inner(), which the outer object keeps, speaks for T itself. T is an ordinary
// ComObject class, not final. Test: tests/server/aggregation_test.cpp.
#pragma once

#include "platform/com_object.h"

namespace qm {

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

}  // namespace qm
