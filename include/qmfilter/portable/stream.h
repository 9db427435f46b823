// ISequentialStream, IStream and the two makers of streams: on global memory and on files.
//
// Behaviour that callers may meet on both systems: a Read past the end answers S_OK with a short
// count on memory and S_FALSE on files, so look at the count only; a Seek before the start fails
// and leaves the position. streams.cpp. Test:
// tests/platform/stream_test.cpp.
#pragma once

#include "qmfilter/portable/interfaces.h"

enum STREAM_SEEK : DWORD { STREAM_SEEK_SET = 0, STREAM_SEEK_CUR = 1, STREAM_SEEK_END = 2 };
enum STATFLAG : DWORD { STATFLAG_DEFAULT = 0, STATFLAG_NONAME = 1 };
enum STGTY : DWORD { STGTY_STORAGE = 1, STGTY_STREAM = 2 };

inline constexpr DWORD STGM_READ = 0x0;
inline constexpr DWORD STGM_WRITE = 0x1;
inline constexpr DWORD STGM_READWRITE = 0x2;
inline constexpr DWORD STGM_SHARE_DENY_NONE = 0x40;
inline constexpr DWORD STGM_SHARE_DENY_WRITE = 0x20;
inline constexpr DWORD STGM_SHARE_EXCLUSIVE = 0x10;
inline constexpr DWORD STGM_CREATE = 0x1000;

struct STATSTG {
    LPOLESTR pwcsName;
    DWORD type;
    ULARGE_INTEGER cbSize;
    FILETIME mtime;
    FILETIME ctime;
    FILETIME atime;
    DWORD grfMode;
    DWORD grfLocksSupported;
    CLSID clsid;
    DWORD grfStateBits;
    DWORD reserved;
};

struct ISequentialStream : public IUnknown {
    // `done` may be null.
    virtual HRESULT Read(void* buffer, ULONG bytes, ULONG* done) = 0;
    virtual HRESULT Write(const void* buffer, ULONG bytes, ULONG* done) = 0;
};

struct IStream : public ISequentialStream {
    // `position` may be null. Beyond the end is allowed; the gap reads as 0 once something is
    // written behind it.
    virtual HRESULT Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* position) = 0;
    virtual HRESULT SetSize(ULARGE_INTEGER size) = 0;
    virtual HRESULT CopyTo(IStream* target, ULARGE_INTEGER bytes, ULARGE_INTEGER* read,
                           ULARGE_INTEGER* written) = 0;
    virtual HRESULT Commit(DWORD flags) = 0;
    virtual HRESULT Revert() = 0;
    virtual HRESULT LockRegion(ULARGE_INTEGER offset, ULARGE_INTEGER bytes, DWORD type) = 0;
    virtual HRESULT UnlockRegion(ULARGE_INTEGER offset, ULARGE_INTEGER bytes, DWORD type) = 0;
    // Without STATFLAG_NONAME the name, if the stream has one, is the caller's (CoTaskMemFree).
    virtual HRESULT Stat(STATSTG* status, DWORD flags) = 0;
    virtual HRESULT Clone(IStream** stream) = 0;
};
using LPSTREAM = IStream*;

// clang-format off
__CRT_UUID_DECL(ISequentialStream, 0x0c733a30, 0x2a1c, 0x11ce, 0xad, 0xe5, 0x00, 0xaa, 0x00, 0x44, 0x77, 0x3d)
__CRT_UUID_DECL(IStream, 0x0000000c, 0x0000, 0x0000, 0xc0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46)
// clang-format on

extern "C" const IID IID_ISequentialStream;
extern "C" const IID IID_IStream;

// Stream over a movable block (null: a new, empty one). With `deleteOnRelease` the last Release
// frees the block.
HRESULT CreateStreamOnHGlobal(HGLOBAL memory, BOOL deleteOnRelease, IStream** stream) noexcept;
// Stream over a file. `mode`: STGM_READ, STGM_WRITE or STGM_READWRITE, with STGM_CREATE to truncate
// or make it; sharing bits are accepted and not enforced. A missing file or one without permission
// gives a failure and a null stream.
HRESULT SHCreateStreamOnFileW(LPCWSTR path, DWORD mode, IStream** stream) noexcept;
