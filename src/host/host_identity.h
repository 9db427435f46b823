// Identities of the embedded host's own classes: class identifiers behind its ProgIDs, and the
// identifiers under which a node and a drawing block give the host's own code their C++ object.
#pragma once

#include <objbase.h>

#include "platform/com_ptr.h"

namespace qm {

// clang-format off
inline constexpr CLSID kContainerClass = {
    0x6e7c5b1a, 0x0f2d, 0x4c55, {0x9a, 0x41, 0x7d, 0x5e, 0x20, 0xc3, 0x81, 0x01}};
inline constexpr CLSID kLayersClass = {
    0x6e7c5b1a, 0x0f2d, 0x4c55, {0x9a, 0x41, 0x7d, 0x5e, 0x20, 0xc3, 0x81, 0x02}};
inline constexpr CLSID kPenTableClass = {
    0x6e7c5b1a, 0x0f2d, 0x4c55, {0x9a, 0x41, 0x7d, 0x5e, 0x20, 0xc3, 0x81, 0x03}};
inline constexpr IID kDocumentNodeIdentity = {
    0x6e7c5b1a, 0x0f2d, 0x4c55, {0x9a, 0x41, 0x7d, 0x5e, 0x20, 0xc3, 0x81, 0x11}};
inline constexpr IID kDrawingBlockIdentity = {
    0x6e7c5b1a, 0x0f2d, 0x4c55, {0x9a, 0x41, 0x7d, 0x5e, 0x20, 0xc3, 0x81, 0x12}};
// clang-format on

// The host's own object of class T behind an interface that came back from a filter; null when it
// is somebody else's. `identity` must be that of T.
template <typename T>
ComPtr<T> OwnObject(IUnknown* object, REFIID identity) noexcept {
    ComPtr<T> result;
    void* found = nullptr;
    if (object != nullptr && SUCCEEDED(object->QueryInterface(identity, &found))) {
        result.Attach(static_cast<T*>(found));
    }
    return result;
}

}  // namespace qm
