#include "render/pdf/glyph_shapes.h"

#include <cstdlib>
#include <cstring>
#include <string>

namespace qm::pdf {

namespace {

// 3 MB in all.
constexpr std::size_t kSlots = std::size_t{1} << 15;
constexpr std::size_t kMaxShapes = kSlots / 2;
constexpr std::size_t kMaxWords = std::size_t{1} << 19;
// A form takes some 200 bytes of the file, a reference 20 less than the strokes.
constexpr std::uint32_t kUsesBeforeForm = 4;
// Distances are kept in 16 bits.
constexpr std::int64_t kReach = 16000;
// Twice as far, for the pen: a form shows nothing outside its box.
constexpr const char* kFormEntries =
    "/Type/XObject/Subtype/Form/BBox[-32000 -32000 32000 32000]/Resources<<>>";

std::uint32_t Pack(std::int64_t x, std::int64_t y) {
    return static_cast<std::uint32_t>(static_cast<std::uint16_t>(x)) |
           static_cast<std::uint32_t>(static_cast<std::uint16_t>(y)) << 16;
}

std::int32_t UnpackX(std::uint32_t word) { return static_cast<std::int16_t>(word & 0xFFFF); }
std::int32_t UnpackY(std::uint32_t word) { return static_cast<std::int16_t>(word >> 16); }

std::uint32_t HashOf(const std::vector<std::uint32_t>& key) {
    std::uint64_t hash = 0x9E3779B97F4A7C15U;
    for (const std::uint32_t word : key) {
        hash = (hash ^ word) * 0xD6E8FEB86659FD93U;
        hash ^= hash >> 32;
    }
    return static_cast<std::uint32_t>(hash);
}

}  // namespace

bool GlyphShapes::MakeKey(Strokes strokes) {
    key_.clear();
    const PointI first = strokes.chains[0][0];
    for (std::size_t i = 0; i < strokes.count; ++i) {
        const PointSpan chain = strokes.chains[i];
        if (key_.size() + chain.count > kMaxPoints) return false;
        key_.push_back(static_cast<std::uint32_t>(chain.count));
        for (const PointI point : chain) {
            const std::int64_t x = std::int64_t{point.x} - first.x;
            const std::int64_t y = std::int64_t{point.y} - first.y;
            if (std::abs(x) > kReach || std::abs(y) > kReach) return false;
            key_.push_back(Pack(x, y));
        }
    }
    return true;
}

GlyphShapes::Shape* GlyphShapes::FindOrAdd() {
    if (slots_.empty()) slots_.resize(kSlots);
    const std::uint32_t hash = HashOf(key_);
    std::size_t slot = hash % kSlots;
    for (; slots_[slot] != 0; slot = (slot + 1) % kSlots) {
        Shape& shape = shapes_[slots_[slot] - 1];
        if (shape.hash == hash && shape.count == key_.size() &&
            std::memcmp(&words_[shape.first], key_.data(), key_.size() * sizeof(key_[0])) == 0) {
            return &shape;
        }
    }
    if (shapes_.size() >= kMaxShapes || words_.size() + key_.size() > kMaxWords) return nullptr;
    Shape shape;
    shape.hash = hash;
    shape.first = static_cast<std::uint32_t>(words_.size());
    shape.count = static_cast<std::uint32_t>(key_.size());
    words_.insert(words_.end(), key_.begin(), key_.end());
    shapes_.push_back(shape);
    slots_[slot] = static_cast<std::uint32_t>(shapes_.size());
    return &shapes_.back();
}

void GlyphShapes::WriteForm(Shape& shape) {
    std::string content;
    for (std::size_t at = shape.first; at < shape.first + shape.count;) {
        const std::size_t points = words_[at++];
        const std::size_t end = at + points;
        const bool closed = points > 2 && words_[at] == words_[end - 1];
        for (std::size_t i = at; i < end - (closed ? 1 : 0); ++i) {
            content += std::to_string(UnpackX(words_[i])) + ' ' +
                       std::to_string(UnpackY(words_[i])) + (i == at ? " m\n" : " l\n");
        }
        if (closed) content += "h\n";
        at = end;
    }
    shape.form = file_.WriteStream(kFormEntries, content + "S");
}

GlyphShapes::Form GlyphShapes::Use(Strokes strokes) {
    if (!MakeKey(strokes)) return {};
    Shape* const shape = FindOrAdd();
    if (shape == nullptr || (shape->form == 0 && ++shape->uses <= kUsesBeforeForm)) return {};
    if (shape->form == 0) WriteForm(*shape);
    const auto number = static_cast<std::uint32_t>(shape - shapes_.data()) + 1;
    return {shape->form, number, &shape->page};
}

}  // namespace qm::pdf
