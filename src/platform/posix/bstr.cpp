#include "qmfilter/portable/bstr.h"

#include <cstdlib>
#include <cwchar>
#include <limits>

namespace {

// The byte count stands in front of the characters, aligned as they are.
struct Header {
    UINT bytes;
};
static_assert(sizeof(Header) % alignof(OLECHAR) == 0);

Header* HeaderOf(BSTR text) noexcept {
    return reinterpret_cast<Header*>(reinterpret_cast<char*>(text) - sizeof(Header));
}

// An uninitialised string of `bytes` bytes with its terminator in place.
BSTR Allocate(UINT bytes) noexcept {
    if (bytes > std::numeric_limits<UINT>::max() - sizeof(Header) - sizeof(OLECHAR)) return nullptr;
    auto* block = static_cast<char*>(std::malloc(sizeof(Header) + bytes + sizeof(OLECHAR)));
    if (block == nullptr) return nullptr;
    reinterpret_cast<Header*>(block)->bytes = bytes;
    // A byte count that is no multiple of the character size puts the terminator at an odd address.
    std::memset(block + sizeof(Header) + bytes, 0, sizeof(OLECHAR));
    return reinterpret_cast<BSTR>(block + sizeof(Header));
}

}  // namespace

BSTR SysAllocString(const OLECHAR* text) noexcept {
    if (text == nullptr) return nullptr;
    const std::size_t length = std::wcslen(text);
    if (length > std::numeric_limits<UINT>::max()) return nullptr;
    return SysAllocStringLen(text, static_cast<UINT>(length));
}

BSTR SysAllocStringLen(const OLECHAR* text, UINT length) noexcept {
    if (length > std::numeric_limits<UINT>::max() / sizeof(OLECHAR)) return nullptr;
    const UINT bytes = length * static_cast<UINT>(sizeof(OLECHAR));
    const BSTR result = Allocate(bytes);
    if (result != nullptr && text != nullptr) std::memcpy(result, text, bytes);
    return result;
}

BSTR SysAllocStringByteLen(const char* text, UINT bytes) noexcept {
    const BSTR result = Allocate(bytes);
    if (result != nullptr && text != nullptr) std::memcpy(result, text, bytes);
    return result;
}

void SysFreeString(BSTR text) noexcept {
    if (text != nullptr) std::free(HeaderOf(text));
}

UINT SysStringByteLen(BSTR text) noexcept { return text == nullptr ? 0 : HeaderOf(text)->bytes; }

UINT SysStringLen(BSTR text) noexcept {
    return SysStringByteLen(text) / static_cast<UINT>(sizeof(OLECHAR));
}
