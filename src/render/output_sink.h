// OutputSink: where the page writers put their bytes. Formats are written front to back in one go,
// so a sink needs no seeking.
#pragma once

#include <string_view>

namespace qm {

class OutputSink {
  public:
    virtual ~OutputSink() = default;
    // Takes all of `bytes` or throws (ToolError where it is a file that cannot be written).
    virtual void Write(std::string_view bytes) = 0;
};

}  // namespace qm
