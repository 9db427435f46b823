// EventSource: base of a component that fires events, with one outgoing interface `Events` besides
// the `Interfaces` it implements itself.
//
//   class CQmFilterHPGL : public EventSource<_IQmFilterEvents, IQmFilter> { ... };
//   FireEvent([&](_IQmFilterEvents& sink) { sink.Progress(percent, &abort); });
//
// Test: tests/server/connection_point_test.cpp.
#pragma once

#include <olectl.h>

#include "platform/com_object.h"
#include "server/connection_point.h"
#include "server/enumerator.h"

namespace qm {

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

    // Calls fire(sink) for every connected sink; what may happen inside: connection_point.h.
    template <typename Fire>
    void FireEvent(Fire&& fire) noexcept {
        events_.template ForEachSink<Events>(std::forward<Fire>(fire));
    }

  private:
    ConnectionPoint events_;
};

}  // namespace qm
