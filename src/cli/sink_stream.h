// SinkStream: an OutputSink as the stream that a save component writes to. Test:
// tests/cli/qmplot_test.cpp.
#pragma once

#include <exception>

#include "platform/write_only_stream.h"
#include "render/output_sink.h"

namespace qm::cli {

// `sink` must outlive the stream. What it throws becomes E_FAIL and is kept.
class SinkStream final : public WriteOnlyStream {
  public:
    explicit SinkStream(OutputSink& sink) noexcept : sink_(sink) {}

    // Throws the first failure of the sink, if there was one.
    void ThrowFailure() const {
        if (failure_) std::rethrow_exception(failure_);
    }

    // Nothing is written after a failure.
    HRESULT STDMETHODCALLTYPE Write(const void* bytes, ULONG count, ULONG* done) noexcept override {
        if (done != nullptr) *done = 0;
        if (failure_) return E_FAIL;
        try {
            sink_.Write({static_cast<const char*>(bytes), count});
        } catch (...) {
            failure_ = std::current_exception();
            return E_FAIL;
        }
        if (done != nullptr) *done = count;
        return S_OK;
    }

  private:
    OutputSink& sink_;
    std::exception_ptr failure_;
};

}  // namespace qm::cli
