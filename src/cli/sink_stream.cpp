#include "cli/sink_stream.h"

namespace qm::cli {

HRESULT SinkStream::Write(const void* bytes, ULONG count, ULONG* done) noexcept {
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

}  // namespace qm::cli
