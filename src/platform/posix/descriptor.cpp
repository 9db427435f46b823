#include "platform/posix/descriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <new>

#include "platform/text.h"

namespace {

// Repeats `step(done)` until all `bytes` are done; the step answers as read(2) does.
template <typename Step>
std::int64_t Transfer(ULONG bytes, Step step) noexcept {
    std::size_t done = 0;
    while (done < bytes) {
        const ssize_t count = step(done);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0 && done == 0) return -1;
        if (count <= 0) break;
        done += static_cast<std::size_t>(count);
    }
    return static_cast<std::int64_t>(done);
}

}  // namespace

int OpenDescriptor(LPCWSTR path, int flags) noexcept try {
    if (path == nullptr) return -1;
    const int descriptor = open(qm::WideToUtf8(path).c_str(), flags | O_CLOEXEC, 0666);
    if (descriptor < 0) return -1;
    struct stat status = {};
    if (fstat(descriptor, &status) == 0 && !S_ISDIR(status.st_mode)) return descriptor;
    close(descriptor);
    errno = EISDIR;
    return -1;
} catch (const std::bad_alloc&) {
    errno = ENOMEM;
    return -1;
}

std::int64_t ReadDescriptor(int descriptor, void* buffer, ULONG bytes) noexcept {
    return Transfer(bytes, [=](std::size_t done) {
        return read(descriptor, static_cast<char*>(buffer) + done, bytes - done);
    });
}

std::int64_t WriteDescriptor(int descriptor, const void* buffer, ULONG bytes) noexcept {
    return Transfer(bytes, [=](std::size_t done) {
        return write(descriptor, static_cast<const char*>(buffer) + done, bytes - done);
    });
}

std::int64_t DescriptorSize(int descriptor) noexcept {
    struct stat status = {};
    return fstat(descriptor, &status) == 0 ? static_cast<std::int64_t>(status.st_size) : -1;
}
