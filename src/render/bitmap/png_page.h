// PngPage: the rows of a page as a PNG in the smallest format that holds its colours: 1, 2, 4 or 8
// bits indexed, shades of grey, or true colours. Test: tests/render/bitmap/png_page_test.cpp.
//
// How many colours a page has shows when it is drawn. As long as they are few, rows are kept
// compressed as they would be written in that format; when one colour too many comes, they are
// written anew in the next one. Only true colours, the last format, go straight to the sink. So a
// page is drawn once and kept in a hundredth of its size or so.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "render/bitmap/band.h"
#include "render/bitmap/colour_table.h"
#include "render/output_sink.h"
#include "render/png_writer.h"

namespace qm::bitmap {

class PngPage {
  public:
    // `header` gives the size and the resolution. Nothing is written before the format is known.
    PngPage(const PngHeader& header, OutputSink& sink);

    // The next row from the top, of header.width dots.
    void Write(const BandDot* row);
    void Finish();

  private:
    enum class Format { kOneBit, kTwoBits, kFourBits, kGrey, kByte, kColours };
    // Compressed bytes in pieces, so that they are never copied to grow.
    class Kept final : public OutputSink {
      public:
        void Write(std::string_view bytes) override {
            pieces.emplace_back(bytes);
            size += bytes.size();
        }
        std::vector<std::string> pieces;
        std::size_t size = 0;
    };

    PngHeader HeaderOf(Format format) const;
    void StartRows();
    // A format that holds the colour too, which has this number.
    Format Wider(std::size_t number, std::uint32_t colour) const;
    void Rewrite(Format format);
    bool TakeNumbers(const BandDot* row);
    void WriteNumbers(const std::uint8_t* numbers);
    void WriteColours(const BandDot* row);

    PngHeader header_;
    OutputSink& sink_;
    Format format_ = Format::kOneBit;
    unsigned bits_ = 1;  // of a sample
    ColourTable colours_;
    bool isGrey_ = true;  // all colours so far
    std::int32_t rowCount_ = 0;
    std::unique_ptr<Kept> kept_;
    std::unique_ptr<PngRows> rows_;
    std::vector<std::uint8_t> numbers_;
    std::vector<std::uint8_t> packed_;
};

}  // namespace qm::bitmap
