#include "qmfilter/portable/files.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cwchar>
#include <new>
#include <string>
#include <string_view>

#include "platform/posix/descriptor.h"
#include "platform/text.h"

namespace {

// A handle is the descriptor plus one, so that descriptor 0 is not null; INVALID_HANDLE_VALUE
// stands for -2, which is none.
HANDLE HandleOf(int descriptor) noexcept {
    return reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(descriptor) + 1);
}
int DescriptorOf(HANDLE file) noexcept {
    return static_cast<int>(reinterpret_cast<std::intptr_t>(file) - 1);
}

int OpenFlags(DWORD access, DWORD disposition) noexcept {
    constexpr int kCreation[] = {0, O_CREAT | O_EXCL, O_CREAT | O_TRUNC, 0, O_CREAT, O_TRUNC};
    const bool writes = (access & GENERIC_WRITE) != 0;
    const bool reads = (access & GENERIC_READ) != 0;
    return (writes ? (reads ? O_RDWR : O_WRONLY) : O_RDONLY) | kCreation[disposition];
}

BOOL ReportCount(std::int64_t count, DWORD* done) noexcept {
    if (done != nullptr) *done = count > 0 ? static_cast<DWORD>(count) : 0;
    return count >= 0 ? TRUE : FALSE;
}

bool CopyOut(std::wstring_view text, LPWSTR buffer, std::size_t capacity) noexcept {
    if (text.size() >= capacity) return false;
    std::wmemcpy(buffer, text.data(), text.size());
    buffer[text.size()] = L'\0';
    return true;
}

std::wstring TemporaryName(LPCWSTR folder, LPCWSTR prefix, UINT number) {
    std::wstring name(folder);
    if (!name.empty() && name.back() != L'/') name += L'/';
    if (prefix != nullptr) name += std::wstring_view(prefix).substr(0, 3);
    for (int shift = 12; shift >= 0; shift -= 4)
        name += L"0123456789abcdef"[(number >> shift) & 15];
    return name + L".tmp";
}

// Makes the file under a number that nothing has yet. Exclusive creation decides, so two processes
// never share one; the start is spread by time and process only to keep the search short.
UINT ClaimTemporaryName(LPCWSTR folder, LPCWSTR prefix, LPWSTR buffer) {
    constexpr UINT kNumbers = 0xFFFF;
    const auto ticks = std::chrono::steady_clock::now().time_since_epoch().count();
    const auto start = static_cast<UINT>(ticks / 1000) + static_cast<UINT>(getpid()) * 257U;
    for (UINT i = 0; i < kNumbers; ++i) {
        const UINT number = (start + i) % kNumbers + 1;
        const std::wstring name = TemporaryName(folder, prefix, number);
        if (!CopyOut(name, buffer, MAX_PATH)) return 0;
        const int descriptor =
            open(qm::WideToUtf8(name).c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (descriptor >= 0) {
            close(descriptor);
            return number;
        }
        if (errno != EEXIST) return 0;
    }
    return 0;
}

}  // namespace

HANDLE CreateFileW(LPCWSTR path, DWORD access, DWORD, SECURITY_ATTRIBUTES*, DWORD disposition,
                   DWORD, HANDLE) noexcept {
    if (disposition < CREATE_NEW || disposition > TRUNCATE_EXISTING) return INVALID_HANDLE_VALUE;
    const int descriptor = OpenDescriptor(path, OpenFlags(access, disposition));
    return descriptor >= 0 ? HandleOf(descriptor) : INVALID_HANDLE_VALUE;
}

BOOL ReadFile(HANDLE file, LPVOID buffer, DWORD bytes, DWORD* done, void*) noexcept {
    return ReportCount(ReadDescriptor(DescriptorOf(file), buffer, bytes), done);
}

BOOL WriteFile(HANDLE file, LPCVOID buffer, DWORD bytes, DWORD* done, void*) noexcept {
    return ReportCount(WriteDescriptor(DescriptorOf(file), buffer, bytes), done);
}

DWORD GetFileSize(HANDLE file, DWORD* high) noexcept {
    const std::int64_t size = DescriptorSize(DescriptorOf(file));
    if (size < 0) return INVALID_FILE_SIZE;
    if (high != nullptr) *high = static_cast<DWORD>(static_cast<std::uint64_t>(size) >> 32);
    return static_cast<DWORD>(size);
}

DWORD SetFilePointer(HANDLE file, LONG distance, LONG* high, DWORD origin) noexcept {
    if (origin > FILE_END) return INVALID_SET_FILE_POINTER;
    constexpr int kOrigins[] = {SEEK_SET, SEEK_CUR, SEEK_END};
    std::int64_t move = distance;
    if (high != nullptr) {
        move = static_cast<std::int64_t>(*high) * (std::int64_t{1} << 32) +
               static_cast<std::uint32_t>(distance);
    }
    const off_t position = lseek(DescriptorOf(file), move, kOrigins[origin]);
    if (position < 0) return INVALID_SET_FILE_POINTER;
    if (high != nullptr) *high = static_cast<LONG>(position >> 32);
    return static_cast<DWORD>(position);
}

BOOL CloseHandle(HANDLE file) noexcept { return close(DescriptorOf(file)) == 0 ? TRUE : FALSE; }

BOOL DeleteFileW(LPCWSTR path) noexcept try {
    return path != nullptr && unlink(qm::WideToUtf8(path).c_str()) == 0 ? TRUE : FALSE;
} catch (const std::bad_alloc&) {
    return FALSE;
}

DWORD GetTempPathW(DWORD length, LPWSTR buffer) noexcept try {
    const char* folder = std::getenv("TMPDIR");
    std::wstring path = qm::Utf8ToWide(folder != nullptr && *folder != '\0' ? folder : "/tmp");
    if (path.back() != L'/') path += L'/';
    const auto size = static_cast<DWORD>(path.size());
    return buffer != nullptr && CopyOut(path, buffer, length) ? size : size + 1;
} catch (const std::bad_alloc&) {
    return 0;
}

UINT GetTempFileNameW(LPCWSTR folder, LPCWSTR prefix, UINT unique, LPWSTR buffer) noexcept try {
    if (folder == nullptr || buffer == nullptr) return 0;
    if (unique == 0) return ClaimTemporaryName(folder, prefix, buffer);
    return CopyOut(TemporaryName(folder, prefix, unique), buffer, MAX_PATH) ? unique : 0;
} catch (const std::bad_alloc&) {
    return 0;
}
