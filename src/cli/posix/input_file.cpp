#include "cli/input_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <vector>

#include "cli/interruption.h"
#include "common/tool_error.h"

namespace qm::cli {

namespace {

constexpr std::size_t kCopyBytes = std::size_t{1} << 18;

// A file without a name: it is gone with its last handle, whatever ends the program.
int OpenUnnamedFile() {
    const char* folder = std::getenv("TMPDIR");
    std::string name = std::string(folder != nullptr ? folder : P_tmpdir) + "/qmplot-XXXXXX";
    const int file = mkostemp(name.data(), O_CLOEXEC);
    if (file < 0) throw SystemError(name, "made");
    unlink(name.c_str());
    return file;
}

void WriteAll(int file, const char* bytes, std::size_t count) {
    while (count > 0) {
        const ssize_t done = write(file, bytes, count);
        if (done < 0 && errno == EINTR) continue;
        if (done < 0) throw SystemError("temporary copy of the input", "written");
        bytes += done;
        count -= static_cast<std::size_t>(done);
    }
}

}  // namespace

InputFile::InputFile(const std::string& path)
    : name_(path == "-" ? "standard input" : path), path_(path) {
    file_ = path == "-" ? fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 3)
                        : open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file_ < 0) throw SystemError(name_, "read");
    try {
        struct stat status {};
        if (fstat(file_, &status) != 0) throw SystemError(name_, "read");
        if (S_ISDIR(status.st_mode)) throw SystemError(name_, "read", EISDIR);
        if (path == "-" || !S_ISREG(status.st_mode)) {
            Spool();
        } else {
            size_ = static_cast<std::uint64_t>(status.st_size);
            // Behind the filter's stream a file that cannot be read looks like no plot.
            char first = 0;
            if (pread(file_, &first, 1, 0) < 0) throw SystemError(name_, "read");
        }
    } catch (...) {
        close(file_);
        throw;
    }
}

InputFile::~InputFile() { close(file_); }

std::string InputFile::Path() const {
    return path_.empty() ? "/dev/fd/" + std::to_string(file_) : path_;
}

std::size_t InputFile::Read(void* buffer, std::size_t size) {
    for (;;) {
        const ssize_t done = read(file_, buffer, size);
        if (done >= 0) return static_cast<std::size_t>(done);
        if (errno != EINTR) throw SystemError(name_, "read");
        ThrowIfInterrupted();
    }
}

void InputFile::Spool() {
    const int copy = OpenUnnamedFile();
    try {
        std::vector<char> buffer(kCopyBytes);
        while (const std::size_t count = Read(buffer.data(), buffer.size())) {
            WriteAll(copy, buffer.data(), count);
            size_ += count;
        }
        lseek(copy, 0, SEEK_SET);
    } catch (...) {
        close(copy);
        throw;
    }
    close(file_);
    file_ = copy;
    path_.clear();
}

}  // namespace qm::cli
