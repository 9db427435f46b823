#include "cli/browser.h"

#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "common/tool_error.h"

namespace qm::cli {

namespace {

bool IsSet(const char* variable) {
    const char* value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

}  // namespace

std::string CacheFolder() {
    std::filesystem::path folder;
    if (IsSet("XDG_CACHE_HOME")) {
        folder = std::getenv("XDG_CACHE_HOME");
    } else if (IsSet("HOME")) {
        folder = std::filesystem::path(std::getenv("HOME")) / ".cache";
    } else {
        folder = std::filesystem::temp_directory_path();
    }
    folder /= "qmplot";
    std::error_code failure;
    std::filesystem::create_directories(folder, failure);
    if (failure) throw SystemError(folder.string(), "made", failure.value());
    return folder.string();
}

bool OpenInBrowser(const std::string& path) {
    if (!IsSet("DISPLAY") && !IsSet("WAYLAND_DISPLAY")) return false;
    // What the browser says is not for the terminal.
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    std::string program = "xdg-open";
    std::string file = path;
    char* arguments[] = {program.data(), file.data(), nullptr};
    pid_t child = 0;
    const int failure =
        posix_spawnp(&child, program.c_str(), &actions, nullptr, arguments, environ);
    posix_spawn_file_actions_destroy(&actions);
    return failure == 0;
}

}  // namespace qm::cli
