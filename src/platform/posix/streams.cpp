// See stream.h.
#include "qmfilter/portable/stream.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <memory>
#include <string>

#include "platform/com_object.h"
#include "platform/posix/descriptor.h"
#include "qmfilter/portable/memory.h"

namespace {

// What the memory and the file stream have in common: identity, copying, and the methods that mean
// nothing for them.
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

// ---------------------------------------------------------------- On a global block

// Clones share the block and have positions of their own.
//
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

// ---------------------------------------------------------------- On a file

HRESULT StatusOfErrno(HRESULT otherwise) noexcept {
    switch (errno) {
        case ENOENT:
        case ENOTDIR:
            return STG_E_FILENOTFOUND;
        case EACCES:
        case EPERM:
        case EROFS:
        case EISDIR:
            return STG_E_ACCESSDENIED;
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
            return STG_E_MEDIUMFULL;
        case ENOMEM:
            return E_OUTOFMEMORY;
        default:
            return otherwise;
    }
}

class FileStream final : public StreamBase {
  public:
    // Takes over `descriptor` once constructed.
    FileStream(int descriptor, DWORD mode, std::wstring name) noexcept
        : descriptor_(descriptor), mode_(mode), name_(std::move(name)) {}
    ~FileStream() override { close(descriptor_); }

    // S_FALSE tells that the file ended early.
    HRESULT Read(void* buffer, ULONG bytes, ULONG* done) noexcept override {
        Report(done, 0);
        if (buffer == nullptr) return STG_E_INVALIDPOINTER;
        const std::int64_t count = ReadDescriptor(descriptor_, buffer, bytes);
        if (count < 0) return StatusOfErrno(STG_E_READFAULT);
        Report(done, static_cast<std::size_t>(count));
        return count < static_cast<std::int64_t>(bytes) ? S_FALSE : S_OK;
    }

    HRESULT Write(const void* buffer, ULONG bytes, ULONG* done) noexcept override {
        Report(done, 0);
        if (buffer == nullptr) return STG_E_INVALIDPOINTER;
        const std::int64_t count = WriteDescriptor(descriptor_, buffer, bytes);
        if (count < 0) return StatusOfErrno(STG_E_WRITEFAULT);
        Report(done, static_cast<std::size_t>(count));
        return count < static_cast<std::int64_t>(bytes) ? STG_E_MEDIUMFULL : S_OK;
    }

    HRESULT Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* position) noexcept override {
        if (origin > STREAM_SEEK_END) return STG_E_INVALIDFUNCTION;
        constexpr int kOrigins[] = {SEEK_SET, SEEK_CUR, SEEK_END};
        const off_t moved = lseek(descriptor_, move.QuadPart, kOrigins[origin]);
        const off_t now = moved >= 0 ? moved : lseek(descriptor_, 0, SEEK_CUR);
        if (position != nullptr) position->QuadPart = static_cast<ULONGLONG>(now);
        return moved >= 0 ? S_OK : STG_E_SEEKERROR;
    }

    HRESULT SetSize(ULARGE_INTEGER size) noexcept override {
        return ftruncate(descriptor_, static_cast<off_t>(size.QuadPart)) == 0
                   ? S_OK
                   : StatusOfErrno(STG_E_WRITEFAULT);
    }

    HRESULT Revert() noexcept override { return E_NOTIMPL; }
    HRESULT Clone(IStream**) noexcept override { return E_NOTIMPL; }

    HRESULT Stat(STATSTG* status, DWORD flags) noexcept override {
        if (status == nullptr) return STG_E_INVALIDPOINTER;
        const std::int64_t size = DescriptorSize(descriptor_);
        if (size < 0) return STG_E_READFAULT;
        FillStat(*status, static_cast<std::uint64_t>(size), mode_);
        if ((flags & STATFLAG_NONAME) != 0) return S_OK;
        const SIZE_T bytes = (name_.size() + 1) * sizeof(OLECHAR);
        status->pwcsName = static_cast<LPOLESTR>(CoTaskMemAlloc(bytes));
        if (status->pwcsName == nullptr) return E_OUTOFMEMORY;
        std::memcpy(status->pwcsName, name_.c_str(), bytes);
        return S_OK;
    }

  private:
    int descriptor_;
    DWORD mode_;
    std::wstring name_;
};

int OpenFlags(DWORD mode) noexcept {
    const DWORD access = mode & (STGM_WRITE | STGM_READWRITE);
    const int flags = access == STGM_READWRITE ? O_RDWR
                      : access == STGM_WRITE   ? O_WRONLY
                                               : O_RDONLY;
    return (mode & STGM_CREATE) != 0 ? flags | O_CREAT | O_TRUNC : flags;
}

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

HRESULT SHCreateStreamOnFileW(LPCWSTR path, DWORD mode, IStream** stream) noexcept {
    if (path == nullptr || stream == nullptr) return E_INVALIDARG;
    *stream = nullptr;
    const int descriptor = OpenDescriptor(path, OpenFlags(mode));
    if (descriptor < 0) return StatusOfErrno(STG_E_ACCESSDENIED);
    try {
        *stream = qm::MakeObject<FileStream>(descriptor, mode, std::wstring(path)).Detach();
    } catch (const std::bad_alloc&) {
    }
    if (*stream != nullptr) return S_OK;
    close(descriptor);
    return E_OUTOFMEMORY;
}
