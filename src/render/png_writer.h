// PngWriter: a PNG file (ISO/IEC 15948) row by row, for PNG pages and for pictures inside SVG, on
// zlib alone so that it is there on every system. Test: tests/render/png_writer_test.cpp.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "common/packed_bitmap.h"
#include "host/display_list.h"
#include "render/output_sink.h"

namespace qm {

struct PngHeader {
    std::int32_t width = 0;
    std::int32_t height = 0;
    int bits = 8;  // a sample: 1, 2, 4 or 8 with a palette, 8 without
    // Colours in order, at most 2^bits; empty for red, green, blue samples.
    std::vector<PaletteEntry> palette;
    bool whiteIsClear = false;  // pure white is transparent
    double dotsPerInch = 0.0;   // 0: not told
    int level = 6;              // of compression, 1 (fast) to 9
};

// Every row from the top, then Finish. Throws what the sink throws, std::bad_alloc, and ToolError
// when zlib refuses.
class PngWriter {
  public:
    PngWriter(const PngHeader& header, OutputSink& sink);
    ~PngWriter();

    // `row`: (width x samples x bits + 7) / 8 bytes, as the packed bitmaps have them but red first.
    void WriteRow(const std::uint8_t* row);
    void Finish();

  private:
    struct Deflater;

    void WriteChunk(const char* type, std::string_view data);
    void WriteHeader(const PngHeader& header);
    void WritePalette(const PngHeader& header);
    void Deflate(int flush);

    OutputSink& sink_;
    std::size_t rowBytes_;
    std::size_t pixelBytes_;  // distance of the filter's left neighbour; 0: rows are not filtered
    std::vector<std::uint8_t> filtered_;
    std::unique_ptr<Deflater> deflater_;
};

// A whole packed bitmap as PNG in its own depth.
void WritePicture(const PackedBitmapView& picture, bool whiteIsClear, OutputSink& sink);

}  // namespace qm
