// See child_process.h: none on this system.
#include "cli/child_process.h"

#include "common/tool_error.h"

namespace qm::cli {

bool ChildrenAreSupported() { return false; }

ChildResult RunChild(const std::vector<std::string>&, const ChildLimits&, const ChildAnswer&) {
    throw ToolError("child processes are not used on this system");
}

std::string AskParent(const std::string&) {
    throw ToolError("child processes are not used on this system");
}

}  // namespace qm::cli
