// FileHandle owns an open file, TemporaryFile owns a file on disk and deletes it. Test:
// tests/platform/files_test.cpp.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <utility>

namespace qm {

class FileHandle {
  public:
    FileHandle() noexcept = default;
    // Takes over `file`, which may be INVALID_HANDLE_VALUE.
    explicit FileHandle(HANDLE file) noexcept : file_(file) {}
    // An existing file for reading, others may read it too; false when it cannot be opened.
    static FileHandle OpenForReading(const wchar_t* path) noexcept {
        return FileHandle(CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
    }
    FileHandle(FileHandle&& other) noexcept : file_(other.Detach()) {}
    FileHandle& operator=(FileHandle other) noexcept {
        std::swap(file_, other.file_);
        return *this;
    }
    ~FileHandle() {
        if (*this) CloseHandle(file_);
    }

    HANDLE Get() const noexcept { return file_; }
    explicit operator bool() const noexcept { return file_ != INVALID_HANDLE_VALUE; }
    [[nodiscard]] HANDLE Detach() noexcept { return std::exchange(file_, INVALID_HANDLE_VALUE); }

  private:
    HANDLE file_ = INVALID_HANDLE_VALUE;
};

// A name in the folder for temporary files whose file exists, empty, from Create on and is deleted
// at the end.
class TemporaryFile {
  public:
    TemporaryFile() noexcept = default;
    // `prefix`: the first three characters of the name. False when no file could be made. Throws
    // std::bad_alloc.
    static TemporaryFile Create(const wchar_t* prefix);
    TemporaryFile(TemporaryFile&& other) noexcept : path_(std::exchange(other.path_, {})) {}
    TemporaryFile& operator=(TemporaryFile other) noexcept {
        std::swap(path_, other.path_);
        return *this;
    }
    // Close handles of the file first: Windows does not delete an open one.
    ~TemporaryFile();

    explicit operator bool() const noexcept { return !path_.empty(); }
    const std::wstring& Path() const noexcept { return path_; }
    // The folder without its closing slash, and the name in it.
    std::wstring Folder() const;
    std::wstring Name() const;

  private:
    std::wstring path_;
};

}  // namespace qm
