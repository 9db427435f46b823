// DrawOwnPicture: the dots of a page that is one picture, as they are: drawn anew they would grow
// by a dot a side each time that a saved page is saved again. Test: tests/cli/qmplot_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "common/picture_sink.h"
#include "render/page_writers.h"

namespace qm {

// Gives the page's dots to `sink`, or false and nothing unless the page stands upright and shows
// one picture alone, of `bits` (1, 8 or 24) a dot and as many dots as `dpi` asks for. What is
// higher than wide comes turned by 90 degrees to the right, and so does what is as high as wide.
// Throws std::bad_alloc.
bool DrawOwnPicture(const PageSource& page, int dpi, int bits, PictureSink& sink);

// Passes on a picture as wide as high with its last column twice, any other as it is: readers of
// HP-RTL turn squares (docs/unsupported.md). 1, 8 or 24 bits a dot.
class SquareWidener final : public PictureSink {
  public:
    explicit SquareWidener(PictureSink& sink) : sink_(sink) {}

    void Begin(const PictureHead& head) override;
    void Row(const std::uint8_t* row) override;

  private:
    PictureSink& sink_;
    int bits_ = 0;
    std::size_t side_ = 0;           // dots of a square
    std::vector<std::uint8_t> row_;  // of a square, widened; else empty
};

}  // namespace qm
