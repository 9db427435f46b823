// LetterMasks: what a letter covers of the dots around it, drawn once for many letters of a shape
// and put down again and again, which takes a fifth of the time that their strokes take. Test:
// tests/render/bitmap/letter_masks_test.cpp.
//
// Such letters lie at eighths of a dot: up to 1/16 dot from where they are, which nobody sees. Only
// letters that a page has hundreds of are drawn so. Which do, and where they lie, follows from the
// list alone, so that the dots are the same whatever the bands and the threads are.
#pragma once

#include <cstdint>
#include <vector>

#include "common/geometry.h"
#include "host/display_list_player.h"
#include "render/bitmap/band.h"
#include "render/bitmap/capsule_strokes.h"
#include "render/page_frame.h"

namespace qm::bitmap {

// The shapes of a list's letters that are drawn by masks.
class FrequentLetters {
  public:
    // `toDots` leads from the list to the dots of the page. Throws std::bad_alloc.
    FrequentLetters(const LetterShapes& shapes, const Matrix& toDots);

    static constexpr std::uint32_t kNone = UINT32_MAX;
    // From 0, or kNone.
    std::uint32_t NumberOf(std::uint32_t shape) const { return numbers_[shape]; }
    std::size_t Count() const { return boxes_.size(); }
    // In dots from the letter's first point.
    const Box<double>& BoxOf(std::uint32_t number) const { return boxes_[number]; }

    // Letters fewer than these, of a shape, are drawn stroke by stroke: places in a dot are 64.
    static constexpr std::uint32_t kFewest = 256;
    // Letters that are larger, in dots, are, too.
    static constexpr double kLargest = 36.0;
    // Of all masks together, with a thin pen; further shapes are drawn stroke by stroke.
    static constexpr double kMostDots = 1 << 23;

  private:
    std::vector<std::uint32_t> numbers_;  // by shape
    std::vector<Box<double>> boxes_;
};

class LetterMasks {
  public:
    // What draws the letters.
    struct Pen {
        double halfWidth = 0.0;  // in dots
        CapsuleStrokes::End end = CapsuleStrokes::End::kRound;
        bool operator==(const Pen& other) const {
            return halfWidth == other.halfWidth && end == other.end;
        }
    };

    // `letters` must outlive this; `toDots` as it was for them.
    LetterMasks(const FrequentLetters& letters, const Matrix& toDots);

    // Draws a letter into what `bounds` shows of a band, in a colour 0x00RRGGBB. False when the
    // letter, or the pen, is not for masks: nothing is drawn then. Throws std::bad_alloc.
    bool Draw(const LetterRecord& letter, const Pen& pen, std::uint32_t colour, Band& band,
              const DotBox& bounds);

  private:
    // Masks of further pens, and those that more bytes are kept of, are drawn anew for each letter.
    static constexpr std::size_t kMostPens = 8;
    static constexpr std::size_t kMostBytes = std::size_t{1} << 23;  // in each thread
    static constexpr double kWidestPen = 2.0;                        // half of it, in dots
    static constexpr std::int32_t kSide = 48;                        // of the largest mask

    // Coverages, row by row; rows are filled up to whole fours.
    struct Mask {
        std::int16_t left = 0;  // from the dot in which the letter's first point lies
        std::int16_t top = 0;
        std::uint16_t fours = 0;
        std::uint16_t rows = 0;
        std::size_t first = 0;  // of coverages_
    };
    struct PenMasks {
        Pen pen;
        std::vector<std::uint32_t> masks;  // by number and place in the dot; 0: not drawn yet
    };
    // A dot and the eighths in it.
    struct Place {
        std::int32_t x;
        std::int32_t y;
        std::uint32_t part;  // 8 * y + x
    };

    PenMasks* MasksOf(const Pen& pen);
    Mask MakeMask(const LetterRecord& letter, const Pen& pen, const Box<double>& box,
                  std::uint32_t part);
    void DrawStrokes(const Strokes& shape, const Pen& pen, PointD first);
    void Put(const Mask& mask, const Place& place, std::uint32_t colour, Band& band,
             const DotBox& bounds) const;

    const FrequentLetters& letters_;
    Matrix toDots_;
    Band scratch_;
    CapsuleStrokes strokes_;
    std::vector<PointD> path_;
    std::vector<PenMasks> pens_;
    std::vector<Mask> masks_;
    std::vector<std::uint8_t> coverages_;
};

}  // namespace qm::bitmap
