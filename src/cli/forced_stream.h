// ForcedStream: a file that the filter takes for a plot, whatever is in it. Test:
// tests/cli/qmplot_test.cpp.
#pragma once

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>

#include "platform/com_ptr.h"
#include "platform/write_only_stream.h"

namespace qm::cli {

// Whoever rewinds it first meets the commands that detection wants in front of the file; whoever
// rewinds it again meets the file alone. The filter rewinds once to detect and once to read.
class ForcedStream final : public WriteOnlyStream {
  public:
    explicit ForcedStream(ComPtr<IStream> file) noexcept : file_(std::move(file)) {}

    HRESULT STDMETHODCALLTYPE Read(void* buffer, ULONG count, ULONG* done) noexcept override {
        if (front_.empty()) return file_->Read(buffer, count, done);
        const std::size_t taken = std::min<std::size_t>(count, front_.size());
        std::memcpy(buffer, front_.data(), taken);
        front_.remove_prefix(taken);
        if (done != nullptr) *done = static_cast<ULONG>(taken);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Seek(LARGE_INTEGER move, DWORD origin,
                                   ULARGE_INTEGER* position) noexcept override {
        if (origin == STREAM_SEEK_SET) {
            front_ = rewound_ ? std::string_view() : kFront;
            rewound_ = true;
        }
        return file_->Seek(move, origin, position);
    }
    HRESULT STDMETHODCALLTYPE Stat(STATSTG* status, DWORD flags) noexcept override {
        return file_->Stat(status, flags);
    }
    HRESULT STDMETHODCALLTYPE Write(const void*, ULONG, ULONG*) noexcept override {
        return E_NOTIMPL;
    }

  private:
    static constexpr std::string_view kFront = "IN;IN;IN;IN;IN;IN;";

    ComPtr<IStream> file_;
    std::string_view front_;
    bool rewound_ = false;
};

}  // namespace qm::cli
