#include "platform/file_handle.h"

namespace qm {
namespace {

// Where the name starts: behind the last separator of any kind.
std::size_t NameStart(std::wstring_view path) noexcept {
    const std::size_t separator = path.find_last_of(L"\\:/");
    return separator == std::wstring_view::npos ? 0 : separator + 1;
}

}  // namespace

TemporaryFile TemporaryFile::Create(const wchar_t* prefix) {
    TemporaryFile file;
    wchar_t folder[MAX_PATH];
    wchar_t path[MAX_PATH];
    const DWORD length = GetTempPathW(MAX_PATH, folder);
    if (length == 0 || length >= MAX_PATH) return file;
    // Room first: a failed allocation after the file was made would leave it behind.
    file.path_.reserve(MAX_PATH);
    if (GetTempFileNameW(folder, prefix, 0, path) != 0) file.path_ = path;
    return file;
}

TemporaryFile::~TemporaryFile() {
    if (!path_.empty()) DeleteFileW(path_.c_str());
}

std::wstring TemporaryFile::Folder() const {
    const std::size_t start = NameStart(path_);
    return path_.substr(0, start == 0 ? 0 : start - 1);
}

std::wstring TemporaryFile::Name() const { return path_.substr(NameStart(path_)); }

}  // namespace qm
