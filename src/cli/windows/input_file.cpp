#include "cli/input_file.h"

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#include <windows.h>

#include <algorithm>
#include <vector>

#include "cli/interruption.h"
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

}  // namespace qm::cli
