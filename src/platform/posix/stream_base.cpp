#include "platform/posix/stream_base.h"

#include <algorithm>
#include <limits>

HRESULT StreamBase::CopyTo(IStream* target, ULARGE_INTEGER bytes, ULARGE_INTEGER* read,
                           ULARGE_INTEGER* written) noexcept {
    if (target == nullptr) return STG_E_INVALIDPOINTER;
    constexpr ULONGLONG kChunk = 16384;
    char buffer[kChunk];
    ULONGLONG copied = 0;
    ULONGLONG taken = 0;
    HRESULT status = S_OK;
    while (taken < bytes.QuadPart) {
        ULONG got = 0;
        ULONG put = 0;
        status = Read(buffer, static_cast<ULONG>(std::min(kChunk, bytes.QuadPart - taken)), &got);
        if (FAILED(status) || got == 0) break;
        taken += got;
        status = target->Write(buffer, got, &put);
        copied += put;
        if (FAILED(status) || put < got) break;
    }
    if (read != nullptr) read->QuadPart = taken;
    if (written != nullptr) written->QuadPart = copied;
    return FAILED(status) ? status : S_OK;
}

HRESULT StreamBase::MovedPosition(std::uint64_t base, std::int64_t move,
                                  std::uint64_t& position) noexcept {
    constexpr auto kLast = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    const std::uint64_t back = move < 0 ? 0 - static_cast<std::uint64_t>(move) : 0;
    if (back > base) return STG_E_SEEKERROR;
    if (move > 0 && static_cast<std::uint64_t>(move) > kLast - base) return STG_E_SEEKERROR;
    position = base + static_cast<std::uint64_t>(move);  // wraps back for a negative move
    return S_OK;
}

void StreamBase::FillStat(STATSTG& status, std::uint64_t size, DWORD mode) noexcept {
    status = STATSTG{};
    status.type = STGTY_STREAM;
    status.cbSize.QuadPart = size;
    status.grfMode = mode;
}
