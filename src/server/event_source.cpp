#include "server/event_source.h"

#include <olectl.h>

#include <algorithm>
#include <limits>

namespace qm {
namespace {

struct Connections {
    using Interface = IEnumConnections;
    using Item = Connection;
    using Raw = CONNECTDATA;
    static Raw Share(const Item& item) noexcept {
        return {ComPtr<IUnknown>(item.sink).Detach(), item.cookie};
    }
};

}  // namespace

HRESULT ConnectionPoint::QueryInterface(REFIID riid, void** object) noexcept {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (!IsEqualGUID(riid, IID_IUnknown) && !IsEqualGUID(riid, IID_IConnectionPoint)) {
        return E_NOINTERFACE;
    }
    *object = static_cast<IConnectionPoint*>(this);
    AddRef();
    return S_OK;
}

ULONG ConnectionPoint::AddRef() noexcept { return container_.AddRef(); }
ULONG ConnectionPoint::Release() noexcept { return container_.Release(); }

HRESULT ConnectionPoint::GetConnectionInterface(IID* iid) noexcept {
    if (iid == nullptr) return E_POINTER;
    *iid = outgoing_;
    return S_OK;
}

HRESULT ConnectionPoint::GetConnectionPointContainer(
    IConnectionPointContainer** container) noexcept {
    return ComPtr(&container_).CopyTo(container);
}

HRESULT ConnectionPoint::Advise(IUnknown* sink, DWORD* cookie) noexcept {
    if (sink == nullptr || cookie == nullptr) return E_POINTER;
    *cookie = 0;
    if (lastCookie_ == std::numeric_limits<DWORD>::max()) return CONNECT_E_ADVISELIMIT;
    ComPtr<IUnknown> outgoing;
    if (FAILED(sink->QueryInterface(outgoing_, outgoing.PutVoid()))) return CONNECT_E_CANNOTCONNECT;
    return Guarded([&] {
        connections_.push_back({outgoing, lastCookie_ + 1});
        *cookie = ++lastCookie_;
        return S_OK;
    });
}

HRESULT ConnectionPoint::Unadvise(DWORD cookie) noexcept {
    const Connection* found = cookie == 0 ? nullptr : FirstAfter(cookie - 1);
    if (found == nullptr || found->cookie != cookie) return CONNECT_E_NOCONNECTION;
    const Connection dropped = *found;  // released when the list is in order again
    connections_.erase(connections_.begin() + (found - connections_.data()));
    return S_OK;
}

HRESULT ConnectionPoint::EnumConnections(IEnumConnections** connections) noexcept {
    return Enumerator<Connections>::Make(connections_, 0, connections);
}

const Connection* ConnectionPoint::FirstAfter(DWORD cookie) const noexcept {
    const auto found = std::upper_bound(
        connections_.begin(), connections_.end(), cookie,
        [](DWORD value, const Connection& connection) { return value < connection.cookie; });
    return found == connections_.end() ? nullptr : &*found;
}

}  // namespace qm
