// PngWriter: a PNG file (ISO/IEC 15948) row by row, for PNG pages and for pictures inside SVG, on
// zlib alone so that it is there on every system. Test: tests/render/png_writer_test.cpp.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "common/packed_bitmap.h"
#include "host/display_list.h"
#include "render/deflater.h"
#include "render/output_sink.h"

namespace qm {

// How a row is written before it is compressed: as it is, as differences to the left, or each row
// in the one of both that looks smaller.
enum class PngFilter { kNone, kLeft, kAsFits };

struct PngHeader {
    std::int32_t width = 0;
    std::int32_t height = 0;
    int bits = 8;  // a sample: 1, 2, 4 or 8 with a palette, 8 without
    // Colours in order, at most 2^bits; empty for red, green, blue samples or shades of grey.
    std::vector<PaletteEntry> palette;
    bool isGrey = false;        // without a palette: one sample a dot
    bool hasAlpha = false;      // without a palette: red, green, blue and opacity samples
    bool whiteIsClear = false;  // pure white is transparent
    double dotsPerInch = 0.0;   // 0: not told
    // Keywords of the format ("Title") and what they say in UTF-8.
    std::vector<std::pair<std::string, std::string>> texts = {};
    bool fast = false;  // compressed fast rather than small
};

// The bytes of a row.
std::size_t PngRowBytes(const PngHeader& header);

// What stands in a file before the rows and behind them.
void WritePngStart(const PngHeader& header, OutputSink& sink);
void WritePngEnd(OutputSink& sink);

// The rows between them, which need not be written where they end up: WritePngStart may come later,
// when the colours are known. Throws what the sink throws, std::bad_alloc, and PageError.
class PngRows {
  public:
    PngRows(const PngHeader& header, PngFilter filter, OutputSink& sink);

    // `row`: (width x samples x bits + 7) / 8 bytes, as the packed bitmaps have them but red first.
    void Write(const std::uint8_t* row);
    void Finish();

  private:
    // Each piece becomes a chunk.
    class Chunks final : public OutputSink {
      public:
        explicit Chunks(OutputSink& sink) : sink_(sink) {}
        void Write(std::string_view bytes) override;

      private:
        OutputSink& sink_;
    };

    // True for differences to the left.
    bool Choose(const std::uint8_t* row);
    void Filter(const std::uint8_t* row);
    void Deflate();
    void AdaptToDensity();

    Chunks chunks_;
    PngFilter filter_;
    std::size_t rowBytes_;
    std::size_t dotBytes_;                // distance of the filter's left neighbour
    std::vector<std::uint8_t> filtered_;  // the row at hand
    std::string ready_;                   // rows before they are compressed
    std::size_t rows_ = 0;
    std::size_t changesOfRow_ = 0;  // bytes unlike their left neighbour
    std::size_t changes_ = 0;       // of the last rows
    bool isDense_ = false;
    std::unique_ptr<Deflater> deflater_;
};

// Every row from the top, then Finish.
class PngWriter {
  public:
    PngWriter(const PngHeader& header, OutputSink& sink);

    void WriteRow(const std::uint8_t* row) { rows_.Write(row); }
    void Finish();

  private:
    OutputSink& sink_;
    PngRows rows_;
};

// A whole packed bitmap as PNG in its own depth.
void WritePicture(const PackedBitmapView& picture, bool whiteIsClear, OutputSink& sink);

}  // namespace qm
