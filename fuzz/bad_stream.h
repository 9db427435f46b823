// BadStream: a stream of bytes that misbehaves as files on networks and pipes do. Test:
// tests/faults/import_faults_test.cpp.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/write_only_stream.h"

namespace qm {

class BadStream final : public WriteOnlyStream {
  public:
    struct Fault {
        const char* name;
        ULONG most = UINT32_MAX;           // bytes a read hands out
        std::size_t readable = SIZE_MAX;   // bytes there are on the way, whatever Stat says
        HRESULT behind = S_OK;             // what a read behind them answers
        HRESULT full = S_OK;               // what a read that got all it asked for answers
        std::uint64_t size = UINT64_MAX;   // that Stat tells; UINT64_MAX: the true one
        HRESULT stat = S_OK;               // what Stat answers
        std::size_t shrinksAt = SIZE_MAX;  // after this many reads there is nothing more
    };
    BadStream(std::string_view bytes, const Fault& fault) : bytes_(bytes), fault_(fault) {}

    HRESULT STDMETHODCALLTYPE Read(void* buffer, ULONG count, ULONG* done) noexcept override {
        const std::size_t end =
            reads_++ >= fault_.shrinksAt ? 0 : std::min(bytes_.size(), fault_.readable);
        const std::size_t left = end > at_ ? end - at_ : 0;
        const auto given = static_cast<ULONG>(std::min<std::size_t>({count, fault_.most, left}));
        std::copy_n(bytes_.data() + at_, given, static_cast<char*>(buffer));
        at_ += given;
        if (done != nullptr) *done = given;
        if (given == 0) return fault_.behind;
        return given == count ? fault_.full : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Write(const void*, ULONG, ULONG*) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Seek(LARGE_INTEGER move, DWORD origin,
                                   ULARGE_INTEGER* now) noexcept override {
        const std::int64_t base = origin == STREAM_SEEK_SET ? 0 : static_cast<std::int64_t>(at_);
        at_ = static_cast<std::size_t>(base + move.QuadPart);
        if (now != nullptr) now->QuadPart = at_;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Stat(STATSTG* status, DWORD) noexcept override {
        *status = STATSTG{};
        status->cbSize.QuadPart = fault_.size == UINT64_MAX ? bytes_.size() : fault_.size;
        return fault_.stat;
    }

  private:
    const std::string bytes_;
    const Fault fault_;
    std::size_t at_ = 0;
    std::size_t reads_ = 0;
};

}  // namespace qm
