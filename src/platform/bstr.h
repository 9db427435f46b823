// Bstr: an owning BSTR for both systems. A null string is an empty one. Test:
// tests/platform/bstr_test.cpp.
#pragma once

#include <ole2.h>

#include <limits>
#include <new>
#include <string_view>
#include <utility>

namespace qm {

// The characters of a BSTR, zeros among them included.
inline std::wstring_view ViewOf(BSTR text) noexcept {
    return text == nullptr ? std::wstring_view() : std::wstring_view(text, SysStringLen(text));
}

class Bstr {
  public:
    Bstr() noexcept = default;
    // A copy of `text`. Throws std::bad_alloc.
    explicit Bstr(std::wstring_view text) {
        if (text.size() > std::numeric_limits<UINT>::max()) throw std::bad_alloc();
        text_ = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
        if (text_ == nullptr) throw std::bad_alloc();
    }
    Bstr(const Bstr& other) : Bstr(other.View()) {}
    Bstr(Bstr&& other) noexcept : text_(other.Detach()) {}
    ~Bstr() { SysFreeString(text_); }
    Bstr& operator=(Bstr other) noexcept {
        std::swap(text_, other.text_);
        return *this;
    }

    BSTR Get() const noexcept { return text_; }
    std::wstring_view View() const noexcept { return ViewOf(text_); }
    // Empties the string and returns its address, for a function that fills an out parameter.
    BSTR* Put() noexcept {
        SysFreeString(Detach());
        return &text_;
    }
    // Gives the string to the caller.
    [[nodiscard]] BSTR Detach() noexcept { return std::exchange(text_, nullptr); }

  private:
    BSTR text_ = nullptr;
};

}  // namespace qm
