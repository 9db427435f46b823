// ComPtr: an owning pointer to a COM interface, for both systems.
//
// Use Put() for out parameters, Query<U>() to ask an object for another interface, Attach() to take
// over a reference that a function handed out. Test: tests/platform/com_object_test.cpp.
#pragma once

#include <objbase.h>

#include <utility>

namespace qm {

template <typename T>
class ComPtr {
  public:
    ComPtr() noexcept = default;
    ComPtr(std::nullptr_t) noexcept {}  // NOLINT(google-explicit-constructor): null is a pointer
    // Shares `pointer`: adds a reference of its own.
    explicit ComPtr(T* pointer) noexcept : pointer_(pointer) {
        if (pointer_ != nullptr) pointer_->AddRef();
    }
    ComPtr(const ComPtr& other) noexcept : ComPtr(other.pointer_) {}
    ComPtr(ComPtr&& other) noexcept : pointer_(other.Detach()) {}
    // From a pointer to a derived class or interface.
    template <typename U>
    ComPtr(const ComPtr<U>& other) noexcept : ComPtr(static_cast<T*>(other.Get())) {}
    ~ComPtr() { Reset(); }

    ComPtr& operator=(ComPtr other) noexcept {
        std::swap(pointer_, other.pointer_);
        return *this;
    }

    T* Get() const noexcept { return pointer_; }
    T* operator->() const noexcept { return pointer_; }
    T& operator*() const noexcept { return *pointer_; }
    explicit operator bool() const noexcept { return pointer_ != nullptr; }

    // Null first, release second: a destructor reached from here must not find the dying object.
    void Reset() noexcept {
        if (T* old = Detach(); old != nullptr) old->Release();
    }
    // Takes over a reference the caller owns.
    void Attach(T* pointer) noexcept {
        Reset();
        pointer_ = pointer;
    }
    // Gives the reference to the caller.
    [[nodiscard]] T* Detach() noexcept { return std::exchange(pointer_, nullptr); }

    // Empties the pointer and returns its address, for a function that fills an out parameter.
    T** Put() noexcept {
        Reset();
        return &pointer_;
    }
    void** PutVoid() noexcept { return reinterpret_cast<void**>(Put()); }

    // The object's interface U, or null when it has none (or there is no object).
    template <typename U>
    ComPtr<U> As() const noexcept {
        ComPtr<U> result;
        if (pointer_ != nullptr) pointer_->QueryInterface(__uuidof(U), result.PutVoid());
        return result;
    }
    // Hands a further reference to an out parameter. E_POINTER for a null target, E_FAIL for a null
    // pointer.
    HRESULT CopyTo(T** target) const noexcept {
        if (target == nullptr) return E_POINTER;
        *target = ComPtr(*this).Detach();
        return *target != nullptr ? S_OK : E_FAIL;
    }

  private:
    T* pointer_ = nullptr;
};

template <typename T, typename U>
bool operator==(const ComPtr<T>& a, const ComPtr<U>& b) noexcept {
    return a.Get() == b.Get();
}
template <typename T, typename U>
bool operator!=(const ComPtr<T>& a, const ComPtr<U>& b) noexcept {
    return !(a == b);
}

// Interface U of any object that may be null; null when it has none.
template <typename U>
ComPtr<U> Query(IUnknown* object) noexcept {
    return ComPtr<IUnknown>(object).As<U>();
}

}  // namespace qm
