// Deflater: zlib streams (RFC 1950) for the streams of a PDF file, by the fastest library there is:
// ISA-L on x86-64 Linux, else zlib itself (docs/performance.md has the measurements). Test:
// tests/render/pdf/pdf_file_test.cpp.
#pragma once

#include <memory>
#include <string_view>

#include "render/output_sink.h"

namespace qm::pdf {

// One stream after the other: Begin, any number of Write, End. The same bytes in, the same bytes
// out, on every processor. Throws what the sink throws, std::bad_alloc and PageError.
class Deflater {
  public:
    Deflater();
    ~Deflater();

    void Begin();
    void Write(std::string_view bytes, OutputSink& sink) { Run(bytes, false, sink); }
    void End(OutputSink& sink) { Run({}, true, sink); }

  private:
    struct State;

    void Run(std::string_view bytes, bool last, OutputSink& sink);

    std::unique_ptr<State> state_;
};

}  // namespace qm::pdf
