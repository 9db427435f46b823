// IStream over a file, as SHCreateStreamOnFileW makes it.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cwchar>
#include <string>

#include "platform/posix/descriptor.h"
#include "platform/posix/stream_base.h"
#include "platform/posix/task_memory.h"

namespace {

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
