// Deflater: zlib streams (RFC 1950) for PDF and PNG files, fast by ISA-L where it is built in
// (x86-64 Linux), small and on every system by zlib. docs/performance.md has the measurements.
// Test: tests/render/deflater_test.cpp.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "render/output_sink.h"

namespace qm {

// One stream after the other: Begin, any number of Write, End. The same bytes in, the same bytes
// out, on every processor. Hands on pieces of 64 KB, of which only the last one may be smaller.
// Throws what the sink throws, std::bad_alloc and PageError.
class Deflater {
  public:
    virtual ~Deflater() = default;
    Deflater(const Deflater&) = delete;
    Deflater& operator=(const Deflater&) = delete;

    virtual void Begin() = 0;
    void Write(std::string_view bytes, OutputSink& sink) { Run(bytes, false, sink); }
    void End(OutputSink& sink) { Run({}, true, sink); }
    // From here on most bytes are unlike their neighbours, or are no longer: looking for anything
    // but runs is a waste. Hands on what is ready.
    virtual void SetDense(bool /*dense*/, OutputSink&) {}

  protected:
    static constexpr std::size_t kPieceBytes = std::size_t{1} << 16;

    Deflater() = default;
    virtual void Run(std::string_view bytes, bool last, OutputSink& sink) = 0;
};

// `level` 1 (fast) to 9 (small).
std::unique_ptr<Deflater> MakeZlibDeflater(int level);
// Four to ten times as fast as zlib at level 1 to 6, for about the size of level 1; without ISA-L
// it is zlib at `level`.
std::unique_ptr<Deflater> MakeFastDeflater(int level);

}  // namespace qm
