// LetterShapes: the strokes of a display list's letters, each shape once, however often it is
// drawn.
//
// A shape is kept when its letter comes back, because most shapes of a short or scaled plot do not.
// Positions are whole plotter units, so a letter has a few dozen shapes at most for each size and
// direction. Test: tests/host/display_list_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "common/geometry.h"

namespace qm {

class LetterShapes {
  public:
    // The number of the shape of `strokes`, from 0, or kNone: it is not kept (yet), or never will
    // be, because it is large, or a run begins where the one before it ends and the two make one
    // chain. Throws std::bad_alloc.
    static constexpr std::uint32_t kNone = UINT32_MAX;
    std::uint32_t NumberOf(const Strokes& strokes);

    // The strokes of a shape as they lie from the first point, which is 0, 0, and the box around
    // them. Valid until the next NumberOf.
    Strokes StrokesOf(std::uint32_t number) const {
        const Shape& shape = shapes_[number];
        return {&points_[shape.firstPoint], shape.points, &lengths_[shape.firstRun], shape.runs};
    }
    const BoxI& BoxOf(std::uint32_t number) const { return shapes_[number].box; }
    std::uint32_t Count() const { return static_cast<std::uint32_t>(shapes_.size()); }
    // How often NumberOf gave it: about how many letters of the list have the shape.
    std::uint32_t UsesOf(std::uint32_t number) const { return shapes_[number].uses; }

    std::size_t UsedBytes() const;
    // Gives back what only NumberOf needs; later it finds none of the shapes there are.
    void Finish();

    // Letters of more points have no shape.
    static constexpr std::size_t kMostPoints = 64;

  private:
    struct Shape {
        std::uint32_t firstPoint = 0;
        std::uint32_t firstRun = 0;
        std::uint32_t uses = 0;
        std::uint8_t points = 0;
        std::uint8_t runs = 0;
        BoxI box;
    };
    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t number = kNone;
    };

    bool Matches(const Shape& shape, const Strokes& strokes) const;
    std::uint32_t Add(const Strokes& strokes);
    void GrowSlots();

    std::vector<Shape> shapes_;
    std::vector<PointI> points_;
    std::vector<std::uint8_t> lengths_;
    std::vector<Slot> slots_;         // by hash, at most half of them taken
    std::size_t taken_ = 0;           // of the slots
    std::vector<std::uint32_t> met_;  // hashes of letters that are not kept, by hash
};

}  // namespace qm
