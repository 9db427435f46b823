// ConnectionPoint: the list of sinks a host has connected to one outgoing interface of a component.
//
// A member of its component (event_source.h), whose life it shares: AddRef and Release go to the
// component, so a host may keep the point and drop the rest. Test:
// tests/server/connection_point_test.cpp.
#pragma once

#include <ocidl.h>

#include <vector>

#include "platform/com_ptr.h"

namespace qm {

// A connected sink: the outgoing interface of it, and the number that Unadvise takes.
struct Connection {
    ComPtr<IUnknown> sink;
    DWORD cookie;
};

class ConnectionPoint final : public IConnectionPoint {
  public:
    // `container` is the component this is a member of; `outgoing` the interface its sinks have.
    ConnectionPoint(IConnectionPointContainer& container, REFIID outgoing) noexcept
        : container_(container), outgoing_(outgoing) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) noexcept override;
    ULONG STDMETHODCALLTYPE AddRef() noexcept override;
    ULONG STDMETHODCALLTYPE Release() noexcept override;

    HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* iid) noexcept override;
    HRESULT STDMETHODCALLTYPE
    GetConnectionPointContainer(IConnectionPointContainer** container) noexcept override;
    // CONNECT_E_CANNOTCONNECT: `sink` lacks the interface. The same sink may be connected twice,
    // and then hears everything twice.
    HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) noexcept override;
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) noexcept override;
    HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** connections) noexcept override;

    // Calls fire(sink) for every sink in the order of connection; Events is the outgoing interface.
    // A sink may connect and disconnect sinks, itself included, from inside: one that is gone is
    // not called any more, one that is new waits for the next event. Nothing is allocated.
    template <typename Events, typename Fire>
    void ForEachSink(Fire&& fire) noexcept {
        const DWORD newest = lastCookie_;
        DWORD reached = 0;
        while (const Connection* connection = FirstAfter(reached)) {
            if (connection->cookie > newest) break;
            reached = connection->cookie;
            const ComPtr<IUnknown> held = connection->sink;  // it may drop its own connection
            fire(*static_cast<Events*>(held.Get()));
        }
    }

  private:
    const Connection* FirstAfter(DWORD cookie) const noexcept;

    IConnectionPointContainer& container_;
    const IID outgoing_;
    std::vector<Connection> connections_;  // in ascending order of their cookies
    DWORD lastCookie_ = 0;
};

}  // namespace qm
