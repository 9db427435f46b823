// See files.h.
#include "cli/files.h"

#include <fcntl.h>
#include <io.h>
#include <process.h>
#include <sys/stat.h>
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <utility>
#include <vector>

#include "cli/console.h"
#include "common/tool_error.h"
#include "platform/file_handle.h"
#include "platform/text.h"

namespace qm::cli {

namespace {

constexpr std::size_t kCopyBytes = std::size_t{1} << 18;

int OpenFile(const std::wstring& path, int flags) {
    return _wopen(path.c_str(), flags | _O_BINARY | _O_NOINHERIT, _S_IREAD | _S_IWRITE);
}

}  // namespace

std::optional<FileStatus> StatusOf(const std::string& path) {
    FileHandle opened;
    HANDLE file = GetStdHandle(STD_INPUT_HANDLE);
    if (path != "-") {
        constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
        opened = FileHandle(CreateFileW(Utf8ToWide(path).c_str(), 0, kShareAll, nullptr,
                                        OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
        if (!opened) return std::nullopt;
        file = opened.Get();
    }
    BY_HANDLE_FILE_INFORMATION info{};
    if (GetFileType(file) != FILE_TYPE_DISK) return FileStatus{};
    if (GetFileInformationByHandle(file, &info) == FALSE) return std::nullopt;
    const auto joined = [](DWORD high, DWORD low) { return std::uint64_t{high} << 32 | low; };
    const auto written = static_cast<std::int64_t>(
        joined(info.ftLastWriteTime.dwHighDateTime, info.ftLastWriteTime.dwLowDateTime));
    const bool folder = (info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    return FileStatus{info.dwVolumeSerialNumber,
                      joined(info.nFileIndexHigh, info.nFileIndexLow),
                      !folder,
                      folder,
                      joined(info.nFileSizeHigh, info.nFileSizeLow),
                      written,
                      written};
}

InputFile::InputFile(const std::string& path)
    : name_(path == "-" ? "standard input" : path), path_(path) {
    file_ = path == "-" ? _dup(_fileno(stdin)) : OpenFile(Utf8ToWide(path), _O_RDONLY);
    if (file_ < 0) throw SystemError(name_, "read");
    try {
        const __int64 length = _filelengthi64(file_);
        if (path == "-" || length < 0) {
            _setmode(file_, _O_BINARY);
            Spool();
        } else {
            size_ = static_cast<std::uint64_t>(length);
        }
    } catch (...) {
        _close(file_);
        throw;
    }
}

InputFile::~InputFile() { _close(file_); }

std::string InputFile::Path() const { return path_; }

std::size_t InputFile::Read(void* buffer, std::size_t size) {
    const int done = _read(file_, buffer, static_cast<unsigned>(std::min(size, kCopyBytes)));
    if (done < 0) throw SystemError(name_, "read");
    ThrowIfInterrupted();
    return static_cast<std::size_t>(done);
}

void InputFile::Spool() {
    // It keeps its name, for the filter opens the input a second time.
    const auto temporary = std::make_shared<TemporaryFile>(TemporaryFile::Create(L"qmp"));
    const int copy = OpenFile(temporary->Path(), _O_RDWR | _O_TRUNC);
    if (copy < 0) throw SystemError("temporary copy of the input", "made");
    try {
        std::vector<char> buffer(kCopyBytes);
        while (const std::size_t count = Read(buffer.data(), buffer.size())) {
            if (_write(copy, buffer.data(), static_cast<unsigned>(count)) !=
                static_cast<int>(count)) {
                throw SystemError("temporary copy of the input", "written");
            }
            size_ += count;
        }
        _lseeki64(copy, 0, SEEK_SET);
    } catch (...) {
        _close(copy);
        throw;
    }
    _close(file_);
    file_ = copy;
    path_ = WideToUtf8(temporary->Path());
    copy_ = temporary;
}

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
    bytes_ += bytes.size();
}

void OutputFile::Flush() {
    ThrowIfInterrupted();
    constexpr std::size_t kMostAtOnce = std::size_t{1} << 30;
    for (std::string_view rest = buffer_; !rest.empty();) {
        const auto count = static_cast<unsigned>(std::min(rest.size(), kMostAtOnce));
        const int done = _write(file_, rest.data(), count);
        const DWORD error = done < 0 ? GetLastError() : ERROR_SUCCESS;
        if (error == ERROR_NO_DATA || error == ERROR_BROKEN_PIPE) throw ReaderGone();
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
