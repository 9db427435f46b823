#include "cli/browser.h"

#include <windows.h>

#include <shellapi.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>

#include "common/tool_error.h"
#include "platform/text.h"

namespace qm::cli {

std::string CacheFolder() {
    const wchar_t* local = _wgetenv(L"LOCALAPPDATA");
    std::filesystem::path folder =
        local != nullptr ? std::filesystem::path(local) : std::filesystem::temp_directory_path();
    folder /= "qmplot";
    std::error_code failure;
    std::filesystem::create_directories(folder, failure);
    if (failure) throw SystemError(folder.u8string(), "made", failure.value());
    return folder.u8string();
}

bool OpenInBrowser(const std::string& path) {
    const std::wstring file = Utf8ToWide(path);
    const auto status = reinterpret_cast<std::intptr_t>(
        ShellExecuteW(nullptr, L"open", file.c_str(), nullptr, nullptr, SW_SHOWNORMAL));
    constexpr std::intptr_t kMostFailures = 32;  // the function's contract
    return status > kMostFailures;
}

}  // namespace qm::cli
