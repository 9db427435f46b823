#include "cli/output_file.h"

#include <fcntl.h>
#include <io.h>
#include <process.h>
#include <sys/stat.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <utility>

#include "cli/interruption.h"
#include "common/tool_error.h"
#include "platform/text.h"

namespace qm::cli {

namespace {

int OpenFile(const std::string& path, int flags) {
    return _wopen(Utf8ToWide(path).c_str(), flags | _O_WRONLY | _O_BINARY | _O_NOINHERIT,
                  _S_IREAD | _S_IWRITE);
}

// A name in the folder of `target` that nobody else uses.
std::string NameBeside(const std::string& target) {
    static std::atomic<unsigned> count{0};
    return target + ".part" + std::to_string(_getpid()) + "-" + std::to_string(++count);
}

}  // namespace

OutputFile::OutputFile(std::string path) : path_(std::move(path)) {
    std::error_code failure;
    const auto status = std::filesystem::status(std::filesystem::u8path(path_), failure);
    if (path_ == "-") {
        file_ = _dup(_fileno(stdout));
        path_ = "standard output";
    } else if (std::filesystem::is_other(status)) {
        file_ = OpenFile(path_, 0);
    } else {
        OpenBeside();
    }
    if (file_ < 0) throw SystemError(path_, "written");
    buffer_.reserve(kBufferBytes);
}

OutputFile::~OutputFile() {
    if (file_ >= 0) _close(file_);
    if (!temporary_.empty()) _wunlink(Utf8ToWide(temporary_).c_str());
}

void OutputFile::OpenBeside() {
    target_ = path_;
    temporary_ = NameBeside(target_);
    file_ = OpenFile(temporary_, _O_CREAT | _O_EXCL);
    if (file_ < 0) temporary_.clear();
}

void OutputFile::Write(std::string_view bytes) {
    if (buffer_.size() + bytes.size() > kBufferBytes) Flush();
    buffer_ += bytes;
}

void OutputFile::Flush() {
    ThrowIfInterrupted();
    constexpr std::size_t kMostAtOnce = std::size_t{1} << 30;
    for (std::string_view rest = buffer_; !rest.empty();) {
        const auto count = static_cast<unsigned>(std::min(rest.size(), kMostAtOnce));
        const int done = _write(file_, rest.data(), count);
        if (done < 0) throw SystemError(path_, "written");
        rest.remove_prefix(static_cast<std::size_t>(done));
    }
    buffer_.clear();
}

void OutputFile::Finish() {
    Flush();
    buffer_.shrink_to_fit();
    if (_close(std::exchange(file_, -1)) != 0) throw SystemError(path_, "written");
}

void OutputFile::Commit() {
    if (temporary_.empty()) return;
    std::error_code failure;
    std::filesystem::rename(std::filesystem::u8path(temporary_), std::filesystem::u8path(target_),
                            failure);
    if (failure) throw ToolError(path_ + ": cannot be written: " + failure.message());
    temporary_.clear();
}

}  // namespace qm::cli
