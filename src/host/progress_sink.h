// ProgressSink: the embedded host's ear for a filter's events, and SinkConnection, which attaches
// it to a filter for a scope. Test: tests/host/open_plot_test.cpp.
#pragma once

#include <ocidl.h>

#include <functional>
#include <utility>

#include "platform/com_object.h"
#include "qmfilter.h"

namespace qm {

// Called with 0 to 100; false asks the filter to stop. Must not throw.
using ProgressCallback = std::function<bool(int percent)>;

// Only Progress means something for plots; the other questions are answered with E_NOTIMPL.
class ProgressSink final : public ComObject<_IQmFilterEvents> {
  public:
    explicit ProgressSink(ProgressCallback callback) : callback_(std::move(callback)) {}

    HRESULT STDMETHODCALLTYPE Progress(LONG percent, VARIANT_BOOL* abort) noexcept override;
    HRESULT STDMETHODCALLTYPE FontPath(BSTR, BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE XrefPath(BSTR, BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE XrefPathEx(BSTR, BSTR, BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Password(BSTR, BSTR*) noexcept override { return E_NOTIMPL; }

  private:
    ProgressCallback callback_;
};

// A sink advised to an object's connection point until the end of the scope; nothing happens when
// the object has no such point.
class SinkConnection {
  public:
    SinkConnection(IUnknown* source, REFIID events, IUnknown* sink) noexcept;
    ~SinkConnection();
    SinkConnection(const SinkConnection&) = delete;
    SinkConnection& operator=(const SinkConnection&) = delete;

    explicit operator bool() const noexcept { return static_cast<bool>(point_); }

  private:
    ComPtr<IConnectionPoint> point_;
    DWORD cookie_ = 0;
};

}  // namespace qm
