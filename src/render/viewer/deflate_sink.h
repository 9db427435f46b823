// DeflateSink: compresses what passes through (RFC 1951 without a wrapper, what browsers call
// deflate-raw). Test: tests/render/viewer_test.cpp.
#pragma once

#include <memory>

#include "render/output_sink.h"

namespace qm {

class DeflateSink final : public OutputSink {
  public:
    // `target` must outlive the sink. Throws std::bad_alloc.
    explicit DeflateSink(OutputSink& target);
    ~DeflateSink() override;

    void Write(std::string_view bytes) override;
    // The rest; nothing can be written afterwards.
    void Finish();

  private:
    struct Stream;
    void Run(int flush);
    void PassOn();
    void EndTrial();

    OutputSink& target_;
    std::unique_ptr<Stream> stream_;
};

}  // namespace qm
