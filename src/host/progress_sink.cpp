#include "host/progress_sink.h"

namespace qm {

HRESULT ProgressSink::Progress(LONG percent, VARIANT_BOOL* abort) noexcept {
    if (abort == nullptr) return E_POINTER;
    // The value that comes in is the answer so far: another sink's wish to stop is kept.
    if (callback_ && !callback_(static_cast<int>(percent))) *abort = VARIANT_TRUE;
    return S_OK;
}

SinkConnection::SinkConnection(IUnknown* source, REFIID events, IUnknown* sink) noexcept {
    const auto container = Query<IConnectionPointContainer>(source);
    if (!container) return;
    ComPtr<IConnectionPoint> point;
    if (FAILED(container->FindConnectionPoint(events, point.Put()))) return;
    if (SUCCEEDED(point->Advise(sink, &cookie_))) point_ = std::move(point);
}

SinkConnection::~SinkConnection() {
    if (point_) point_->Unadvise(cookie_);
}

}  // namespace qm
