// See encoded_points.h.
#include "render/compact/encoded_points.h"

#include <string_view>

namespace qm::compact {

namespace {

constexpr unsigned kBits = 6;
constexpr std::uint64_t kMask = (1U << kBits) - 1;
constexpr unsigned kOpenDigit = 63;
constexpr unsigned kFinalDigit = 191;

}  // namespace

void EncodedPoints::Open() {
    if (!isOpen_) out_ << "PE";
    isOpen_ = true;
}

// The sign stands in the lowest bit, the lowest digit first.
void EncodedPoints::Number(std::int64_t value) {
    const bool negative = value < 0;
    std::uint64_t rest = static_cast<std::uint64_t>(negative ? -value : value) << 1;
    if (negative) rest |= 1;
    for (; rest > kMask; rest >>= kBits) out_ << static_cast<char>(kOpenDigit + (rest & kMask));
    out_ << static_cast<char>(kFinalDigit + rest);
}

void EncodedPoints::Start(PointI point) {
    Open();
    out_ << '<';
    if (isKnown_) {
        Pair(std::int64_t{point.x} - pen_.x, std::int64_t{point.y} - pen_.y);
    } else {
        out_ << '=';
        Pair(point.x, point.y);
    }
    pen_ = point;
    isKnown_ = true;
    count_ = 1;
}

void EncodedPoints::Add(PointI point) {
    if (count_ == kMostPoints) Start(pen_);
    AddVertex(point);
    ++count_;
}

void EncodedPoints::AddVertex(PointI point) {
    Open();
    Pair(std::int64_t{point.x} - pen_.x, std::int64_t{point.y} - pen_.y);
    pen_ = point;
}

void EncodedPoints::MoveTo(PointI point) {
    if (!IsAt(point)) Start(point);
}

void EncodedPoints::End() {
    if (isOpen_) out_ << ';';
    isOpen_ = false;
    count_ = 0;
}

}  // namespace qm::compact
