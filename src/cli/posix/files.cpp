// See files.h.
#include "cli/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <utility>
#include <vector>

#include "cli/console.h"
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

std::optional<FileStatus> StatusOf(const std::string& path) {
    struct stat status {};
    const int failed = path == "-" ? fstat(STDIN_FILENO, &status) : stat(path.c_str(), &status);
    if (failed != 0) return std::nullopt;
    const auto nanoseconds = [](const timespec& time) {
        return std::int64_t{time.tv_sec} * 1000000000 + time.tv_nsec;
    };
    return FileStatus{status.st_dev,
                      status.st_ino,
                      S_ISREG(status.st_mode),
                      S_ISDIR(status.st_mode),
                      static_cast<std::uint64_t>(status.st_size),
                      nanoseconds(status.st_mtim),
                      nanoseconds(status.st_ctim)};
}

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

namespace {

constexpr mode_t kFileMode = 0666;  // cut by the umask

// A name in the folder of `target` that nobody else uses.
std::string NameBeside(const std::string& target) {
    static std::atomic<unsigned> count{0};
    return target + ".part" + std::to_string(getpid()) + "-" + std::to_string(++count);
}

// Where a link points to is replaced, not the link.
std::string FinalName(const std::string& path) {
    std::error_code failure;
    const auto resolved = std::filesystem::canonical(path, failure);
    return failure ? path : resolved.string();
}

}  // namespace

OutputFile::OutputFile(std::string path) : path_(std::move(path)) {
    struct stat status {};
    if (path_ == "-") {
        file_ = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
        path_ = "standard output";
    } else if (stat(path_.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
        file_ = open(path_.c_str(), O_WRONLY | O_CLOEXEC);
    } else {
        OpenBeside();
    }
    if (file_ < 0) throw SystemError(path_, "written");
    buffer_.reserve(kBufferBytes);
}

OutputFile::~OutputFile() {
    if (file_ >= 0) close(file_);
    if (!temporary_.empty()) unlink(temporary_.c_str());
}

void OutputFile::OpenBeside() {
    target_ = FinalName(path_);
    const std::size_t slash = target_.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : target_.substr(0, slash + 1);
    file_ = open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, kFileMode);
    // Old kernels and some file systems know no files without names.
    if (file_ >= 0 || (errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL)) return;
    temporary_ = NameBeside(target_);
    file_ = open(temporary_.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, kFileMode);
    if (file_ < 0) temporary_.clear();
}

void OutputFile::Write(std::string_view bytes) {
    if (buffer_.size() + bytes.size() > kBufferBytes) Flush();
    buffer_ += bytes;
    bytes_ += bytes.size();
}

void OutputFile::Flush() {
    ThrowIfInterrupted();
    for (std::string_view rest = buffer_; !rest.empty();) {
        const ssize_t done = write(file_, rest.data(), rest.size());
        if (done < 0 && errno == EINTR) continue;
        if (done < 0 && errno == EPIPE) throw ReaderGone();
        if (done < 0) throw SystemError(path_, "written");
        rest.remove_prefix(static_cast<std::size_t>(done));
    }
    buffer_.clear();
}

void OutputFile::Finish() {
    Flush();
    buffer_.shrink_to_fit();
    if (!target_.empty() && temporary_.empty()) LinkBeside();
    // Network file systems report a full disk here.
    if (close(std::exchange(file_, -1)) != 0) throw SystemError(path_, "written");
}

// An unnamed file cannot take the place of another one at once, so it gets a name beside it first.
void OutputFile::LinkBeside() {
    const std::string name = NameBeside(target_);
    const std::string source = "/proc/self/fd/" + std::to_string(file_);
    if (linkat(AT_FDCWD, source.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) != 0) {
        throw SystemError(path_, "written");
    }
    temporary_ = name;
}

void OutputFile::Commit() {
    if (temporary_.empty()) return;
    if (std::rename(temporary_.c_str(), target_.c_str()) != 0) throw SystemError(path_, "written");
    temporary_.clear();
}

}  // namespace qm::cli
