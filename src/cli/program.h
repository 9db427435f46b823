// What the entry points of both systems call: posix/main.cpp, windows/main.cpp. Test:
// tests/cli/qmplot_test.cpp.
#pragma once

#include <string>
#include <vector>

namespace qm::cli {

// Runs qmplot with `words`, the command line behind the program's name, in UTF-8 (elsewhere as the
// system has them). Returns the exit status; throws nothing.
int RunProgram(const std::vector<std::string>& words);

}  // namespace qm::cli
