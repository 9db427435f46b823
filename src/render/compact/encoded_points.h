// EncodedPoints: points as the numbers of PE, base 64, each as it lies from the one before
// (HP-GL/2 reference, "Encoding and decoding PE data"). Test:
// tests/render/compact_writer_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>

#include "common/geometry.h"
#include "render/text_buffer.h"

namespace qm::compact {

class EncodedPoints {
  public:
    explicit EncodedPoints(TextBuffer& out) : out_(out) {}

    // A line begins here.
    void Start(PointI point);
    // It goes on to there.
    void Add(PointI point);
    // The same for a corner of an area, of which a reader takes any number.
    void AddVertex(PointI point);
    // Only moves the pen, unless it is there.
    void MoveTo(PointI point);
    // Ends the command, if one is open; other commands may follow.
    void End();
    // The pen is somewhere unknown.
    void Forget() { isKnown_ = false; }
    // The pen is there without having been moved by PE.
    void PenIsAt(PointI point) { pen_ = point; }

    bool IsOpen() const { return isOpen_; }
    bool IsAt(PointI point) const { return isKnown_ && pen_ == point; }
    PointI Pen() const { return pen_; }
    // Points of the line at hand.
    std::size_t Count() const { return count_; }

    // Points that a reader takes as one line; this module's gives up the line behind them.
    static constexpr std::size_t kMostPoints = 255;

  private:
    void Open();
    void Number(std::int64_t value);
    void Pair(std::int64_t x, std::int64_t y) {
        Number(x);
        Number(y);
    }

    TextBuffer& out_;
    PointI pen_;
    bool isKnown_ = false;
    bool isOpen_ = false;
    std::size_t count_ = 0;
};

}  // namespace qm::compact
