// A library that is loaded in front of the C library (LD_PRELOAD) and makes the AT-th call (from 0)
// of one function fail, as a full disk or a broken network does. The environment says which:
//
//   QM_FAULT="write 3 28"    the fourth write fails with errno 28; with 0 it takes one byte only
//   QM_FAULT_LOG=FILE        "write 7" and so on: the calls that were made, at the end of the
//   program
//
// Test: tests/faults/file_faults_test.cpp.
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

enum Function {
    kOpen,
    kRead,
    kPread,
    kWrite,
    kClose,
    kFstat,
    kLseek,
    kLinkat,
    kRename,
    kUnlink,
    kMkostemp,
    kFunctions
};
constexpr const char* kNames[] = {"open",  "read",   "pread",  "write",  "close",   "fstat",
                                  "lseek", "linkat", "rename", "unlink", "mkostemp"};

struct Faults {
    std::array<std::atomic<int>, kFunctions> calls{};
    int function = -1;
    int at = -1;
    int error = 0;

    Faults() {
        char name[16] = "";
        const char* const wish = std::getenv("QM_FAULT");
        if (wish == nullptr || std::sscanf(wish, "%15s %d %d", name, &at, &error) != 3) return;
        for (int i = 0; i < kFunctions; ++i) {
            if (std::strcmp(kNames[i], name) == 0) function = i;
        }
    }
    ~Faults() {
        const char* const path = std::getenv("QM_FAULT_LOG");
        std::FILE* const log = path != nullptr ? std::fopen(path, "w") : nullptr;
        if (log == nullptr) return;
        for (int i = 0; i < kFunctions; ++i)
            std::fprintf(log, "%s %d\n", kNames[i], calls[static_cast<std::size_t>(i)].load());
        std::fclose(log);
    }
};

Faults& All() {
    static Faults faults;
    return faults;
}

bool Fails(Function function) {
    Faults& faults = All();
    const int call = faults.calls[function]++;
    if (function != faults.function || call != faults.at) return false;
    errno = faults.error;
    return true;
}

template <typename Signature>
Signature* Next(const char* name) {
    return reinterpret_cast<Signature*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" {

int open(const char* path, int flags, ...) {
    va_list more;
    va_start(more, flags);
    const auto mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(more, mode_t) : 0;
    va_end(more);
    return Fails(kOpen) ? -1 : Next<int(const char*, int, mode_t)>("open")(path, flags, mode);
}

ssize_t read(int file, void* buffer, size_t count) {
    const bool fails = Fails(kRead);
    if (fails && errno != 0) return -1;
    return Next<ssize_t(int, void*, size_t)>("read")(file, buffer, fails && count > 0 ? 1 : count);
}

ssize_t pread(int file, void* buffer, size_t count, off_t from) {
    if (Fails(kPread)) return -1;
    return Next<ssize_t(int, void*, size_t, off_t)>("pread")(file, buffer, count, from);
}

ssize_t write(int file, const void* buffer, size_t count) {
    const bool fails = Fails(kWrite);
    if (fails && errno != 0) return -1;
    return Next<ssize_t(int, const void*, size_t)>("write")(file, buffer,
                                                            fails && count > 0 ? 1 : count);
}

// A file whose closing fails is closed all the same.
int close(int file) {
    const int status = Next<int(int)>("close")(file);
    return Fails(kClose) ? -1 : status;
}

int fstat(int file, struct stat* status) {
    return Fails(kFstat) ? -1 : Next<int(int, struct stat*)>("fstat")(file, status);
}

off_t lseek(int file, off_t offset, int origin) {
    return Fails(kLseek) ? -1 : Next<off_t(int, off_t, int)>("lseek")(file, offset, origin);
}

int linkat(int from, const char* path, int to, const char* name, int flags) {
    return Fails(kLinkat) ? -1
                          : Next<int(int, const char*, int, const char*, int)>("linkat")(
                                from, path, to, name, flags);
}

int rename(const char* from, const char* to) {
    return Fails(kRename) ? -1 : Next<int(const char*, const char*)>("rename")(from, to);
}

int unlink(const char* path) {
    return Fails(kUnlink) ? -1 : Next<int(const char*)>("unlink")(path);
}

int mkostemp(char* name, int flags) {
    return Fails(kMkostemp) ? -1 : Next<int(char*, int)>("mkostemp")(name, flags);
}

}  // extern "C"
