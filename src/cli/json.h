// JSON for other programs: one object a file, a line each (docs/json.md). Test:
// tests/cli/transcripts_test.cpp.
#pragma once

#include <string>
#include <string_view>

#include "cli/command.h"
#include "common/tool_error.h"

namespace qm::cli {

// `utf8` in quotes, escaped. A byte that is no UTF-8, of a file's name for instance, becomes the
// lone surrogate U+DC80 to U+DCFF.
std::string JsonText(std::string_view utf8);

// {"file":...,"error":...,"status":...}
std::string JsonOfError(const std::string& file, const ToolError& error);

// --json; `json` must outlive it.
Option JsonOption(bool& json);

}  // namespace qm::cli
