// Ctrl-C: the first one asks the running import to end through the abort answer of its Progress
// event, the second one ends the program.
#pragma once

#include "common/tool_error.h"

namespace qm::cli {

// From now on SIGINT and SIGTERM only set a flag, once.
void WatchForInterruption();
bool Interrupted() noexcept;

inline void ThrowIfInterrupted() {
    if (Interrupted()) throw ToolError("interrupted, nothing was written", kExitNotAPlot);
}

}  // namespace qm::cli
