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

#include <algorithm>
#include <vector>

#include "platform/com_object.h"

namespace qm {

// Enumerator: COM's enumerators (Next, Skip, Reset, Clone) over a list that was copied when the
// enumerator was made, so that changes made meanwhile do not disturb it. `Kind` says what is
// enumerated: Kind::Interface (IEnumConnections, ...), Kind::Item (what the list holds), Kind::Raw
// (what Next hands out) and Kind::Share(item), the Raw with references of the caller's.
template <typename Kind>
class Enumerator final : public ComObject<typename Kind::Interface> {
  public:
    using Items = std::vector<typename Kind::Item>;

    explicit Enumerator(Items items, std::size_t position = 0)
        : items_(std::move(items)), position_(position) {}

    // `fetched` may be null only when one item is asked for. S_FALSE: fewer than `count` were left.
    HRESULT STDMETHODCALLTYPE Next(ULONG count, typename Kind::Raw* raw,
                                   ULONG* fetched) noexcept override {
        if (raw == nullptr || (fetched == nullptr && count != 1)) return E_POINTER;
        const std::size_t taken = Available(count);
        for (std::size_t i = 0; i < taken; ++i) raw[i] = Kind::Share(items_[position_ + i]);
        position_ += taken;
        if (fetched != nullptr) *fetched = static_cast<ULONG>(taken);
        return taken == count ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) noexcept override {
        const std::size_t skipped = Available(count);
        position_ += skipped;
        return skipped == count ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Reset() noexcept override {
        position_ = 0;
        return S_OK;
    }
    // The copy stands where this one stands.
    HRESULT STDMETHODCALLTYPE Clone(typename Kind::Interface** copy) noexcept override {
        return Make(items_, position_, copy);
    }

    // A new enumerator over `items` for an out parameter.
    static HRESULT Make(const Items& items, std::size_t position,
                        typename Kind::Interface** enumerator) noexcept {
        if (enumerator == nullptr) return E_POINTER;
        *enumerator = nullptr;
        return Guarded([&] {
            *enumerator = MakeObject<Enumerator>(items, position).Detach();
            return *enumerator != nullptr ? S_OK : E_OUTOFMEMORY;
        });
    }

  private:
    std::size_t Available(ULONG count) const noexcept {
        return std::min<std::size_t>(count, items_.size() - position_);
    }

    const Items items_;
    std::size_t position_;
};

// ---------------------------------------------------------------- Connections and events

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
