// What the memory and the file stream have in common: identity, copying, and the methods that mean
// nothing for them.
#pragma once

#include "platform/com_object.h"
#include "platform/posix/stream.h"

// A stream is answered as its base ISequentialStream too.
class StreamBase : public qm::ComObject<IStream> {
  public:
    // Copies through Read and Write, so each side keeps its own rules; `read` and `written` may be
    // null.
    HRESULT CopyTo(IStream* target, ULARGE_INTEGER bytes, ULARGE_INTEGER* read,
                   ULARGE_INTEGER* written) noexcept override;
    // Nothing is held back, so there is nothing to commit.
    HRESULT Commit(DWORD) noexcept override { return S_OK; }
    HRESULT LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) noexcept override {
        return STG_E_INVALIDFUNCTION;
    }
    HRESULT UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) noexcept override {
        return STG_E_INVALIDFUNCTION;
    }

  protected:
    void* FindInterface(REFIID riid) noexcept override {
        return riid == IID_ISequentialStream ? static_cast<ISequentialStream*>(this) : nullptr;
    }

    // Position after a move of `move` bytes from `base`: STG_E_SEEKERROR before the start or beyond
    // what 63 bits hold.
    static HRESULT MovedPosition(std::uint64_t base, std::int64_t move,
                                 std::uint64_t& position) noexcept;
    // The members every Stat answers; the name stays null.
    static void FillStat(STATSTG& status, std::uint64_t size, DWORD mode) noexcept;
    static void Report(ULONG* done, std::size_t bytes) noexcept {
        if (done != nullptr) *done = static_cast<ULONG>(bytes);
    }
};
