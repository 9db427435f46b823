#include "tests/server/windows/registry_text.h"

#include <cstring>
#include <set>

#include "platform/text.h"

namespace qm {
namespace {

constexpr DWORD kLongestName = 256;

std::set<std::wstring> SubkeyNames(HKEY key) {
    std::set<std::wstring> names;
    wchar_t name[kLongestName];
    for (DWORD index = 0;; ++index) {
        DWORD length = kLongestName;
        if (RegEnumKeyExW(key, index, name, &length, nullptr, nullptr, nullptr, nullptr) !=
            ERROR_SUCCESS) {
            return names;
        }
        names.emplace(name, length);
    }
}

std::set<std::wstring> ValueNames(HKEY key) {
    std::set<std::wstring> names;
    wchar_t name[kLongestName];
    for (DWORD index = 0;; ++index) {
        DWORD length = kLongestName;
        if (RegEnumValueW(key, index, name, &length, nullptr, nullptr, nullptr, nullptr) !=
            ERROR_SUCCESS) {
            return names;
        }
        names.emplace(name, length);
    }
}

std::string ValueText(HKEY key, const std::wstring& name) {
    wchar_t data[1024] = {};
    DWORD size = sizeof(data);
    DWORD type = 0;
    RegQueryValueExW(key, name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(data), &size);
    if (type == REG_SZ) return WideToUtf8(data);
    DWORD number = 0;
    std::memcpy(&number, data, sizeof(number));
    return (type == REG_DWORD ? "dword " : "of another type ") + std::to_string(number);
}

std::string Text(HKEY key, const std::string& path) {
    std::string text;
    for (const std::wstring& name : ValueNames(key)) {
        const std::string bracket = name.empty() ? "" : "[" + WideToUtf8(name) + "] ";
        text += path + (path.empty() ? "" : " ") + bracket + "= " + ValueText(key, name) + "\n";
    }
    for (const std::wstring& name : SubkeyNames(key)) {
        HKEY subkey = nullptr;
        RegOpenKeyExW(key, name.c_str(), 0, KEY_READ, &subkey);
        const std::string subpath = path + (path.empty() ? "" : "\\") + WideToUtf8(name);
        const std::string below = Text(subkey, subpath);
        text += below.empty() ? subpath + "\n" : below;
        RegCloseKey(subkey);
    }
    return text;
}

}  // namespace

std::string RegistryText(HKEY root, const std::wstring& path) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return {};
    std::string text = Text(key, "");
    RegCloseKey(key);
    return text;
}

std::string RegistryKeys(HKEY root, const std::wstring& path) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return {};
    std::string text;
    for (const std::wstring& name : SubkeyNames(key)) text += WideToUtf8(name) + "\n";
    RegCloseKey(key);
    return text;
}

}  // namespace qm
