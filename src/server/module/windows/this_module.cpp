#include "server/module/windows/this_module.h"

#include <windows.h>

#include <vector>

namespace qm {
namespace {

// Any address of this module tells which one it is; DllMain and a variable for its argument are not
// needed.
HMODULE ThisModule() noexcept {
    static const char kHere = 0;
    HMODULE module = nullptr;
    GetModuleHandleExW(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        reinterpret_cast<LPCWSTR>(&kHere), &module);
    return module;
}

}  // namespace

std::wstring ModulePath() {
    constexpr std::size_t kLongestPath = 32768;  // the system's limit, in characters
    for (std::wstring path(MAX_PATH, L'\0'); path.size() <= kLongestPath;
         path.resize(path.size() * 2)) {
        const DWORD length =
            GetModuleFileNameW(ThisModule(), path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size()) {  // otherwise it was cut
            path.resize(length);
            return path;
        }
    }
    return {};
}

std::wstring FileVersion(const std::wstring& path) {
    const DWORD size = GetFileVersionInfoSizeW(path.c_str(), nullptr);
    std::vector<BYTE> resource(size);
    void* found = nullptr;
    UINT length = 0;
    if (size == 0 || GetFileVersionInfoW(path.c_str(), 0, size, resource.data()) == FALSE ||
        VerQueryValueW(resource.data(), L"\\", &found, &length) == FALSE ||
        length < sizeof(VS_FIXEDFILEINFO)) {
        return {};
    }
    const auto& info = *static_cast<const VS_FIXEDFILEINFO*>(found);
    std::wstring version;
    for (const DWORD part : {info.dwFileVersionMS, info.dwFileVersionLS}) {
        version += std::to_wstring(part >> 16) + L'.' + std::to_wstring(part & 0xFFFF) + L'.';
    }
    version.pop_back();
    return version;
}

}  // namespace qm
