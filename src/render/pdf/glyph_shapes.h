// GlyphShapes: the letters of labels as forms that are written once and used by reference.
//
// A display list holds letters as strokes. Strokes that came with the same coordinates several
// times become a form XObject; used by reference it looks exactly as the strokes themselves. Type 3
// fonts would be shorter, but their letters would be copied along with the searchable text. Test:
// tests/render/pdf/pdf_writer_test.cpp.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/display_list_player.h"
#include "render/pdf/content_stream.h"
#include "render/pdf/pdf_file.h"

namespace qm::pdf {

class GlyphShapes {
  public:
    explicit GlyphShapes(PdfFile& file) : file_(file) {}

    // A polyline of a letter, open unless it ends where it begins, and what letters are looked up
    // by.
    struct Chain {
        PointSpan points;  // at least one
        BoxI box;
        std::uint64_t hash = 0;  // of the shape
    };
    static Chain ChainOf(PointSpan points);
    struct Strokes {
        const Chain* chains = nullptr;
        std::size_t count = 0;  // at least one
    };
    struct Form {
        ObjectNumber object = 0;  // 0: draw the strokes themselves
        const FormOperators* draw = nullptr;
        std::uint32_t* page = nullptr;  // for the caller: the last page that used the form, 0 none

        std::string Name() const;
    };

    // The number of the shape of `strokes`, from 1; 0 when it is too large or there are too many:
    // the number of shapes is bounded, so are their points.
    std::uint32_t NumberOf(Strokes strokes);
    // The form that draws a shape (0: none) when its first point is moved to the origin, written
    // when the shape comes often enough. Valid until the next NumberOf.
    Form Use(std::uint32_t shape);

    // Letters of more points and chains are not taken.
    static constexpr std::size_t kMaxPoints = 100;

  private:
    struct Shape {
        std::uint32_t hash = 0;
        std::uint32_t first = 0;  // in words_
        std::uint32_t count = 0;
        std::uint32_t uses = 0;
        std::uint32_t page = 0;
        ObjectNumber form = 0;
        FormOperators draw;
    };

    bool Matches(const Shape& shape, Strokes strokes) const;
    void WriteForm(Shape& shape);

    PdfFile& file_;
    // For each chain its points' number, then their distances from the first point of the letter.
    std::vector<std::uint32_t> words_;
    std::vector<Shape> shapes_;
    std::vector<std::uint32_t> slots_;  // shape + 1, by hash; 0 empty
    std::uint32_t forms_ = 0;           // so far
};

}  // namespace qm::pdf
