// The user's browser and where files for it are kept. posix/browser.cpp, windows/browser.cpp.
#pragma once

#include <string>

namespace qm::cli {

// A folder for files that can be made again: $XDG_CACHE_HOME/qmplot or ~/.cache/qmplot; on Windows
// qmplot in the local application data. Made when it is not there. Throws ToolError.
std::string CacheFolder();

// Starts the default browser with a file and does not wait for it. False: there is none, or no
// screen to show it on.
bool OpenInBrowser(const std::string& path);

}  // namespace qm::cli
