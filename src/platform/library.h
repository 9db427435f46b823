// Library: a dynamic library loaded at run time, freed at the end of the scope. Test:
// tests/archive/archive_test.cpp.
#pragma once

#include <windows.h>

#include <utility>

namespace qm {

class Library {
  public:
    Library() noexcept = default;
    // "NAME.dll" on every system; elsewhere NAME.so is loaded. False when there is none.
    explicit Library(const char* name) noexcept : module_(LoadLibraryA(name)) {}
    Library(Library&& other) noexcept : module_(std::exchange(other.module_, nullptr)) {}
    Library& operator=(Library other) noexcept {
        std::swap(module_, other.module_);
        return *this;
    }
    ~Library() {
        if (module_ != nullptr) FreeLibrary(module_);
    }

    explicit operator bool() const noexcept { return module_ != nullptr; }
    // The exported function `name` of type F, or null. It must not be called after the library is
    // freed.
    template <typename F>
    F* Function(const char* name) const noexcept {
        if (module_ == nullptr) return nullptr;
        return reinterpret_cast<F*>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
    }

  private:
    HMODULE module_ = nullptr;
};

}  // namespace qm
