// What the embedded host gives a filter besides the document: the file (DataObject) and an ear for
// the filter's events (ProgressSink, which SinkConnection attaches for a scope). Test:
// tests/host/open_plot_test.cpp.
#pragma once

#include <ocidl.h>

#include <string>
#include <utility>

#include "host/open_plot.h"
#include "platform/com_object.h"

namespace qm {

// A stream to read or to write, and the path behind it.
class DataObject final : public ComObject<IQmDataObject> {
  public:
    // `storage` is to answer IStream. `path` may be empty when no file stands behind it.
    DataObject(ComPtr<IUnknown> storage, std::wstring path) noexcept
        : storage_(std::move(storage)), path_(std::move(path)) {}

    HRESULT STDMETHODCALLTYPE get_Storage(IUnknown** value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_StorageName(BSTR* value) noexcept override;

  private:
    ComPtr<IUnknown> storage_;
    std::wstring path_;
};

// Only Progress means something for plots; the other questions are answered with E_NOTIMPL.
class ProgressSink final : public ComObject<_IQmFilterEvents> {
  public:
    // `callback` may be empty.
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

  private:
    ComPtr<IConnectionPoint> point_;
    DWORD cookie_ = 0;
};

}  // namespace qm
