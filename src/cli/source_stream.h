// SourceStream: the stream that the filter reads a file from. To the filter a failure is the file's
// end; the tool has to tell. Test: tests/faults/file_faults_test.cpp.
#pragma once

#include <utility>

#include "platform/com_ptr.h"
#include "platform/write_only_stream.h"

namespace qm::cli {

// Reads from `file` and keeps the first failure.
class SourceStream final : public WriteOnlyStream {
  public:
    explicit SourceStream(ComPtr<IStream> file) noexcept : file_(std::move(file)) {}

    HRESULT Failure() const noexcept { return failure_; }

    HRESULT STDMETHODCALLTYPE Read(void* buffer, ULONG count, ULONG* done) noexcept override {
        return Noted(file_->Read(buffer, count, done));
    }
    HRESULT STDMETHODCALLTYPE Seek(LARGE_INTEGER move, DWORD origin,
                                   ULARGE_INTEGER* position) noexcept override {
        return Noted(file_->Seek(move, origin, position));
    }
    HRESULT STDMETHODCALLTYPE Stat(STATSTG* status, DWORD flags) noexcept override {
        return file_->Stat(status, flags);
    }
    HRESULT STDMETHODCALLTYPE Write(const void*, ULONG, ULONG*) noexcept override {
        return STG_E_ACCESSDENIED;
    }

  private:
    HRESULT Noted(HRESULT status) noexcept {
        if (FAILED(status) && SUCCEEDED(failure_)) failure_ = status;
        return status;
    }

    ComPtr<IStream> file_;
    HRESULT failure_ = S_OK;
};

}  // namespace qm::cli
