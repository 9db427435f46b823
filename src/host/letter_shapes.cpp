// See letter_shapes.h.
#include "host/letter_shapes.h"

#include <algorithm>
#include <array>

#include "common/numbers.h"

namespace qm {

namespace {

// Some 2 MB in all.
constexpr std::size_t kMostShapes = std::size_t{1} << 14;
constexpr std::size_t kMostShapePoints = std::size_t{1} << 17;
constexpr std::size_t kFirstSlots =
    64;  // a power of two; small, because a document can have many pages
constexpr std::size_t kMet = 1024;
// First points and shapes stay so near to 0 that sums of both do not wrap.
constexpr std::int32_t kReach = 1 << 29;

bool IsNear(PointI p) { return p.x > -kReach && p.x < kReach && p.y > -kReach && p.y < kReach; }

// How `to` lies from `from`; differences wrap.
PointI Difference(PointI from, PointI to) {
    return {WrapSubtract(to.x, from.x), WrapSubtract(to.y, from.y)};
}

// A few points are enough to tell most letters apart.
std::uint32_t HashOf(const Strokes& strokes) {
    std::uint64_t hash = strokes.count;
    const std::size_t last = strokes.count - 1;
    for (const std::size_t i : {std::size_t{1}, last / 4, last / 2, last - last / 4, last}) {
        const PointI way = Difference(strokes.points[0], strokes.points[i]);
        const auto x = static_cast<std::uint32_t>(way.x);
        hash = (hash ^ (x | std::uint64_t{static_cast<std::uint32_t>(way.y)} << 32)) *
               0xD6E8FEB86659FD93U;
        hash ^= hash >> 32;
    }
    return static_cast<std::uint32_t>(hash);
}

// All points are near, and no run begins where the one before it ends.
bool IsKeepable(const Strokes& strokes) {
    if (!std::all_of(strokes.points, strokes.points + strokes.count, IsNear)) return false;
    const PointI* run = strokes.points;
    for (std::size_t i = 0; i + 1 < strokes.runs; ++i) {
        run += strokes.lengths[i];
        if (run[-1] == run[0]) return false;
    }
    return true;
}

}  // namespace

bool LetterShapes::Matches(const Shape& shape, const Strokes& strokes) const {
    if (shape.points != strokes.count || shape.runs != strokes.runs) return false;
    const PointI* const points = &points_[shape.firstPoint];
    const PointI first = strokes.points[0];
    PointI differences;
    for (std::size_t i = 0; i < strokes.count; ++i) {
        const PointI begin = Difference(points[i], strokes.points[i]);
        differences = {differences.x | (begin.x ^ first.x), differences.y | (begin.y ^ first.y)};
    }
    return differences == PointI() &&
           std::equal(strokes.lengths, strokes.lengths + strokes.runs, &lengths_[shape.firstRun]);
}

std::uint32_t LetterShapes::NumberOf(const Strokes& strokes) {
    if (strokes.count > kMostPoints || !IsNear(strokes.points[0])) return kNone;
    const std::uint32_t hash = HashOf(strokes);
    if (slots_.empty()) GrowSlots();
    const std::size_t mask = slots_.size() - 1;
    std::size_t slot = hash & mask;
    for (; slots_[slot].number != kNone; slot = (slot + 1) & mask) {
        const std::uint32_t number = slots_[slot].number;
        if (slots_[slot].hash != hash || !Matches(shapes_[number], strokes)) continue;
        ++shapes_[number].uses;
        return number;
    }
    std::uint32_t& met = met_[hash % kMet];
    if (met != hash) {
        met = hash;
        return kNone;
    }
    if (shapes_.size() >= kMostShapes || points_.size() + strokes.count > kMostShapePoints) {
        return kNone;
    }
    std::array<PointI, kMostPoints> points;
    for (std::size_t i = 0; i < strokes.count; ++i) {
        points[i] = Difference(strokes.points[0], strokes.points[i]);
    }
    const Strokes shape{points.data(), strokes.count, strokes.lengths, strokes.runs};
    if (!IsKeepable(shape)) return kNone;
    const std::uint32_t number = Add(shape);
    slots_[slot] = {hash, number};
    if (++taken_ > slots_.size() / 2) GrowSlots();
    return number;
}

std::uint32_t LetterShapes::Add(const Strokes& strokes) {
    Shape shape;
    shape.firstPoint = static_cast<std::uint32_t>(points_.size());
    shape.firstRun = static_cast<std::uint32_t>(lengths_.size());
    shape.points = static_cast<std::uint8_t>(strokes.count);
    shape.runs = static_cast<std::uint8_t>(strokes.runs);
    shape.uses = 1;
    shape.box = BoxAround(strokes.points, strokes.count);
    shapes_.push_back(shape);  // first: without a slot nobody finds it
    points_.insert(points_.end(), strokes.points, strokes.points + strokes.count);
    lengths_.insert(lengths_.end(), strokes.lengths, strokes.lengths + strokes.runs);
    return static_cast<std::uint32_t>(shapes_.size() - 1);
}

void LetterShapes::GrowSlots() {
    met_.resize(kMet);
    std::vector<Slot> larger(std::max(kFirstSlots, 2 * slots_.size()));
    for (const Slot& each : slots_) {
        if (each.number == kNone) continue;
        std::size_t slot = each.hash & (larger.size() - 1);
        while (larger[slot].number != kNone) slot = (slot + 1) & (larger.size() - 1);
        larger[slot] = each;
    }
    slots_.swap(larger);
}

std::size_t LetterShapes::UsedBytes() const {
    return shapes_.capacity() * sizeof(Shape) + points_.capacity() * sizeof(PointI) +
           lengths_.capacity() + slots_.capacity() * sizeof(Slot) +
           met_.capacity() * sizeof(std::uint32_t);
}

void LetterShapes::Finish() {
    slots_ = {};
    met_ = {};
    taken_ = 0;
    shapes_.shrink_to_fit();
    points_.shrink_to_fit();
    lengths_.shrink_to_fit();
}

}  // namespace qm
