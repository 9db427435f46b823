#include "qmfilter/portable/modules.h"

#include <dlfcn.h>

#include <filesystem>
#include <new>
#include <string>
#include <string_view>

#include "platform/text.h"

namespace {

// "X.dll" becomes "X.so"; other names stay.
std::string NativeName(std::string_view name) {
    constexpr std::wstring_view kEnding = L".dll";
    if (name.size() > kEnding.size()) {
        const std::string_view ending = name.substr(name.size() - kEnding.size());
        if (qm::EqualIgnoringAsciiCase(qm::BytesToWide(ending), kEnding)) {
            name.remove_suffix(kEnding.size());
            return std::string(name) + ".so";
        }
    }
    return std::string(name);
}

// Folder of the running program, with a closing slash; empty when the system does not tell.
std::string ProgramFolder() {
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::string() : (program.parent_path() / "").string();
}

HMODULE Open(const std::string& name) noexcept {
    return dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL);
}

HMODULE Load(std::string_view name) {
    const std::string native = NativeName(name);
    if (native.find('/') != std::string::npos) return Open(native);
    if (const std::string folder = ProgramFolder(); !folder.empty()) {
        if (const HMODULE module = Open(folder + native); module != nullptr) return module;
    }
    return Open(native);
}

}  // namespace

HMODULE LoadLibraryA(LPCSTR name) noexcept try {
    return name == nullptr || *name == '\0' ? nullptr : Load(name);
} catch (const std::bad_alloc&) {
    return nullptr;
}

FARPROC GetProcAddress(HMODULE module, LPCSTR name) noexcept {
    return module == nullptr ? nullptr : reinterpret_cast<FARPROC>(dlsym(module, name));
}

BOOL FreeLibrary(HMODULE module) noexcept {
    return module != nullptr && dlclose(module) == 0 ? TRUE : FALSE;
}
