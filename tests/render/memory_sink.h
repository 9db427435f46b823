// A sink that keeps what it is given, and one whose disk is full.
#pragma once

#include <string>

#include "common/tool_error.h"
#include "render/output_sink.h"

namespace qm {

class MemorySink final : public OutputSink {
  public:
    void Write(std::string_view bytes) override { text += bytes; }
    std::string text;
};

class FullSink final : public OutputSink {
  public:
    void Write(std::string_view) override { throw ToolError("disk full"); }
};

}  // namespace qm
