// IStream over a movable global block; clones share the block and have positions of their own.
#include <algorithm>
#include <memory>

#include "platform/posix/global_memory.h"
#include "platform/posix/stream_base.h"

namespace {

// The bytes behind a stream and its clones. `size` is the stream's; the block may be larger, to
// grow by doubling.
struct SharedBlock {
    HGLOBAL memory;
    std::uint64_t size;
    bool owned;

    SharedBlock(HGLOBAL block, bool own) noexcept
        : memory(block), size(GlobalSize(block)), owned(own) {}
    ~SharedBlock() {
        if (owned) GlobalFree(memory);
    }
    SharedBlock(const SharedBlock&) = delete;
    SharedBlock& operator=(const SharedBlock&) = delete;

    // Makes the stream at least `wanted` bytes long; bytes that come into being are 0.
    HRESULT GrowTo(std::uint64_t wanted) noexcept {
        if (wanted <= size) return S_OK;
        const std::uint64_t capacity = GlobalSize(memory);
        if (wanted > capacity &&
            GlobalReAlloc(memory, std::max(wanted, capacity * 2), GMEM_MOVEABLE) == nullptr &&
            GlobalReAlloc(memory, wanted, GMEM_MOVEABLE) == nullptr) {
            return E_OUTOFMEMORY;
        }
        std::memset(static_cast<char*>(GlobalLock(memory)) + size, 0, wanted - size);
        GlobalUnlock(memory);
        size = wanted;
        return S_OK;
    }
};

class MemoryStream final : public StreamBase {
  public:
    explicit MemoryStream(std::shared_ptr<SharedBlock> block, std::uint64_t position = 0) noexcept
        : block_(std::move(block)), position_(position) {}

    HGLOBAL Memory() const noexcept { return block_->memory; }

    HRESULT Read(void* buffer, ULONG bytes, ULONG* done) noexcept override {
        Report(done, 0);
        if (buffer == nullptr) return STG_E_INVALIDPOINTER;
        if (position_ >= block_->size) return S_OK;
        const auto count =
            static_cast<std::size_t>(std::min<std::uint64_t>(bytes, block_->size - position_));
        std::memcpy(buffer, static_cast<char*>(GlobalLock(block_->memory)) + position_, count);
        GlobalUnlock(block_->memory);
        position_ += count;
        Report(done, count);
        return S_OK;
    }

    HRESULT Write(const void* buffer, ULONG bytes, ULONG* done) noexcept override {
        Report(done, 0);
        if (buffer == nullptr) return STG_E_INVALIDPOINTER;
        if (bytes == 0) return S_OK;
        const HRESULT status = block_->GrowTo(position_ + bytes);
        if (FAILED(status)) return status;
        std::memcpy(static_cast<char*>(GlobalLock(block_->memory)) + position_, buffer, bytes);
        GlobalUnlock(block_->memory);
        position_ += bytes;
        Report(done, bytes);
        return S_OK;
    }

    HRESULT Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* position) noexcept override {
        if (origin > STREAM_SEEK_END) return STG_E_INVALIDFUNCTION;
        const std::uint64_t bases[] = {0, position_, block_->size};
        const HRESULT status = MovedPosition(bases[origin], move.QuadPart, position_);
        if (position != nullptr) position->QuadPart = position_;
        return status;
    }

    HRESULT SetSize(ULARGE_INTEGER size) noexcept override {
        if (size.QuadPart > block_->size) return block_->GrowTo(size.QuadPart);
        block_->size = size.QuadPart;
        return S_OK;
    }

    HRESULT Revert() noexcept override { return S_OK; }

    HRESULT Stat(STATSTG* status, DWORD) noexcept override {
        if (status == nullptr) return STG_E_INVALIDPOINTER;
        FillStat(*status, block_->size, STGM_READWRITE);
        return S_OK;
    }

    HRESULT Clone(IStream** stream) noexcept override {
        if (stream == nullptr) return STG_E_INVALIDPOINTER;
        *stream = qm::MakeObject<MemoryStream>(block_, position_).Detach();
        return *stream != nullptr ? S_OK : E_OUTOFMEMORY;
    }

  private:
    std::shared_ptr<SharedBlock> block_;
    std::uint64_t position_;
};

}  // namespace

HRESULT CreateStreamOnHGlobal(HGLOBAL memory, BOOL deleteOnRelease, IStream** stream) noexcept {
    if (stream == nullptr) return E_INVALIDARG;
    *stream = nullptr;
    const HGLOBAL block = memory != nullptr ? memory : GlobalAlloc(GMEM_MOVEABLE, 0);
    if (block == nullptr) return E_OUTOFMEMORY;
    try {
        auto shared = std::make_shared<SharedBlock>(block, false);
        *stream = qm::MakeObject<MemoryStream>(shared).Detach();
        // Ownership passes only with success: after a failure the block is still the caller's.
        shared->owned = *stream != nullptr && deleteOnRelease != FALSE;
    } catch (const std::bad_alloc&) {
    }
    if (*stream != nullptr) return S_OK;
    if (memory == nullptr) GlobalFree(block);
    return E_OUTOFMEMORY;
}

HRESULT GetHGlobalFromStream(IStream* stream, HGLOBAL* memory) noexcept {
    const auto* ours = dynamic_cast<MemoryStream*>(stream);
    if (ours == nullptr || memory == nullptr) return E_INVALIDARG;
    *memory = ours->Memory();
    return S_OK;
}
