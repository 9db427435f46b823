// SinkStream: an OutputSink as the stream that a save component writes to.
#pragma once

#include <objbase.h>

#include <exception>

#include "platform/com_object.h"
#include "render/output_sink.h"

namespace qm::cli {

// Can be written front to back, which is all that the save components do; the rest of IStream is
// E_NOTIMPL. `sink` must outlive the stream. What the sink throws becomes E_FAIL and is kept.
class SinkStream final : public ComObject<IStream> {
  public:
    explicit SinkStream(OutputSink& sink) noexcept : sink_(sink) {}

    // Throws the first failure of the sink, if there was one.
    void ThrowFailure() const {
        if (failure_) std::rethrow_exception(failure_);
    }

    HRESULT STDMETHODCALLTYPE Read(void*, ULONG, ULONG*) noexcept override { return E_NOTIMPL; }
    // Nothing is written after a failure.
    HRESULT STDMETHODCALLTYPE Write(const void* bytes, ULONG count, ULONG* done) noexcept override;
    HRESULT STDMETHODCALLTYPE Seek(LARGE_INTEGER, DWORD, ULARGE_INTEGER*) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetSize(ULARGE_INTEGER) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CopyTo(IStream*, ULARGE_INTEGER, ULARGE_INTEGER*,
                                     ULARGE_INTEGER*) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Commit(DWORD) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Revert() noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER,
                                           DWORD) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Stat(STATSTG*, DWORD) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Clone(IStream**) noexcept override { return E_NOTIMPL; }

  private:
    OutputSink& sink_;
    std::exception_ptr failure_;
};

}  // namespace qm::cli
