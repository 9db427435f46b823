// EventSource: base of a component that fires events, with one outgoing interface `Events` besides
// the `Interfaces` it implements itself.
//
//   class CQmFilterHPGL : public EventSource<_IQmFilterEvents, IQmFilter> { ... };
//   FireEvent([&](_IQmFilterEvents& sink) { sink.Progress(percent, &abort); });
//
// Test: tests/server/connection_point_test.cpp.
#pragma once

#include <ocidl.h>
#include <olectl.h>

#include <vector>

#include "platform/com_object.h"
#include "server/enumerator.h"

namespace qm {

// A connected sink: the outgoing interface of it, and the number that Unadvise takes.
struct Connection {
    ComPtr<IUnknown> sink;
    DWORD cookie;
};

// The list of sinks a host has connected to one outgoing interface of a component. A member of its
// component, whose life it shares: AddRef and Release go to the component, so a host may keep the
// point and drop the rest.
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

// The connection points of a component, for its enumerator.
struct ConnectionPoints {
    using Interface = IEnumConnectionPoints;
    using Item = ComPtr<IConnectionPoint>;
    using Raw = IConnectionPoint*;
    static Raw Share(const Item& item) noexcept { return ComPtr(item).Detach(); }
};

template <typename Events, typename... Interfaces>
class EventSource : public ComObject<Interfaces..., IConnectionPointContainer> {
  public:
    HRESULT STDMETHODCALLTYPE
    EnumConnectionPoints(IEnumConnectionPoints** points) noexcept override {
        return Guarded([&] {
            return Enumerator<ConnectionPoints>::Make({ComPtr<IConnectionPoint>(&events_)}, 0,
                                                      points);
        });
    }
    // CONNECT_E_NOCONNECTION for any interface but Events.
    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID riid,
                                                  IConnectionPoint** point) noexcept override {
        if (point == nullptr) return E_POINTER;
        *point = nullptr;
        if (!IsEqualGUID(riid, __uuidof(Events))) return CONNECT_E_NOCONNECTION;
        return ComPtr<IConnectionPoint>(&events_).CopyTo(point);
    }

  protected:
    EventSource() noexcept : events_(*this, __uuidof(Events)) {}

    // Calls fire(sink) for every connected sink; what may happen inside: ForEachSink.
    template <typename Fire>
    void FireEvent(Fire&& fire) noexcept {
        events_.template ForEachSink<Events>(std::forward<Fire>(fire));
    }

  private:
    ConnectionPoint events_;
};

}  // namespace qm
