#include "render/pdf/glyph_shapes.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "common/numbers.h"

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

constexpr std::string_view kBeforeName = "cm/";
constexpr std::string_view kBehindName = " Do\n";

// Short names, because most of a page of labels are those of letters: a lower-case letter, then
// digits and letters. Those of pictures begin with another.
std::string NameOf(std::uint32_t number) {
    constexpr std::string_view kSigns =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    constexpr std::uint32_t kFirstSigns = 26;
    constexpr std::uint32_t kSignCount = kSigns.size();
    std::string name(1, kSigns[number % kFirstSigns]);
    for (number /= kFirstSigns; number > 0; number /= kSignCount) {
        name += kSigns[number % kSignCount];
    }
    return name;
}

std::uint32_t Pack(std::int64_t x, std::int64_t y) {
    return static_cast<std::uint32_t>(static_cast<std::uint16_t>(x)) |
           static_cast<std::uint32_t>(static_cast<std::uint16_t>(y)) << 16;
}

std::int32_t UnpackX(std::uint32_t word) { return static_cast<std::int16_t>(word & 0xFFFF); }
std::int32_t UnpackY(std::uint32_t word) { return static_cast<std::int16_t>(word >> 16); }

std::uint64_t Mix(std::uint64_t hash, std::uint32_t word) {
    hash = (hash ^ word) * 0xD6E8FEB86659FD93U;
    return hash ^ hash >> 32;
}

// Of how `to` lies from `from`; distances wrap.
std::uint32_t DistanceWord(PointI from, PointI to) {
    return Pack(WrapSubtract(to.x, from.x), WrapSubtract(to.y, from.y));
}

std::size_t WordsOf(GlyphShapes::Strokes strokes) {
    std::size_t words = strokes.count;
    for (std::size_t i = 0; i < strokes.count; ++i) words += strokes.chains[i].points.count;
    return words;
}

// All distances from the first point fit.
bool IsSmall(GlyphShapes::Strokes strokes) {
    BoxI all = strokes.chains[0].box;
    for (std::size_t i = 1; i < strokes.count; ++i) {
        const BoxI& box = strokes.chains[i].box;
        all = {{std::min(all.a.x, box.a.x), std::min(all.a.y, box.a.y)},
               {std::max(all.b.x, box.b.x), std::max(all.b.y, box.b.y)}};
    }
    return std::int64_t{all.b.x} - all.a.x <= kReach && std::int64_t{all.b.y} - all.a.y <= kReach;
}

}  // namespace

// A few points are enough to tell most letters apart.
GlyphShapes::Chain GlyphShapes::ChainOf(PointSpan points) {
    PointI low = points[0];
    PointI high = points[0];
    for (const PointI p : points) {
        low = {std::min(low.x, p.x), std::min(low.y, p.y)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y)};
    }
    std::uint64_t hash = Mix(0x9E3779B97F4A7C15U, static_cast<std::uint32_t>(points.count));
    const std::size_t last = points.count - 1;
    for (const PointI p : {low, high, points[last], points[last / 2], points[last / 4]}) {
        hash = Mix(hash, DistanceWord(points[0], p));
    }
    return {points, {low, high}, hash};
}

bool GlyphShapes::Matches(const Shape& shape, Strokes strokes) const {
    const PointI first = strokes.chains[0].points[0];
    const std::uint32_t* word = &words_[shape.first];
    for (std::size_t i = 0; i < strokes.count; ++i) {
        const PointSpan chain = strokes.chains[i].points;
        if (*word++ != chain.count) return false;
        for (const PointI point : chain) {
            if (*word++ != DistanceWord(first, point)) return false;
        }
    }
    return true;
}

std::uint32_t GlyphShapes::NumberOf(Strokes strokes) {
    const std::size_t words = WordsOf(strokes);
    if (words > kMaxPoints || !IsSmall(strokes)) return 0;
    if (slots_.empty()) slots_.resize(kSlots);
    const PointI first = strokes.chains[0].points[0];
    std::uint64_t mixed = 0;
    for (std::size_t i = 0; i < strokes.count; ++i) {
        const Chain& chain = strokes.chains[i];
        mixed = Mix(mixed ^ chain.hash, DistanceWord(first, chain.points[0]));
    }
    const auto hash = static_cast<std::uint32_t>(mixed);
    std::size_t slot = hash % kSlots;
    for (; slots_[slot] != 0; slot = (slot + 1) % kSlots) {
        const Shape& shape = shapes_[slots_[slot] - 1];
        if (shape.hash == hash && shape.count == words && Matches(shape, strokes)) {
            return slots_[slot];
        }
    }
    if (shapes_.size() >= kMaxShapes || words_.size() + words > kMaxWords) return 0;
    Shape shape;
    shape.hash = hash;
    shape.first = static_cast<std::uint32_t>(words_.size());
    shape.count = static_cast<std::uint32_t>(words);
    for (std::size_t i = 0; i < strokes.count; ++i) {
        const PointSpan chain = strokes.chains[i].points;
        words_.push_back(static_cast<std::uint32_t>(chain.count));
        for (const PointI point : chain) words_.push_back(DistanceWord(first, point));
    }
    shapes_.push_back(shape);
    slots_[slot] = static_cast<std::uint32_t>(shapes_.size());
    return slots_[slot];
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
    const std::string draw = std::string(kBeforeName).append(NameOf(forms_++)).append(kBehindName);
    std::copy(draw.begin(), draw.end(), shape.draw.text.begin());
    shape.draw.size = static_cast<std::uint8_t>(draw.size());
}

GlyphShapes::Form GlyphShapes::Use(std::uint32_t number) {
    if (number == 0) return {};
    Shape& shape = shapes_[number - 1];
    if (shape.form == 0 && ++shape.uses <= kUsesBeforeForm) return {};
    if (shape.form == 0) WriteForm(shape);
    return {shape.form, &shape.draw, &shape.page};
}

std::string GlyphShapes::Form::Name() const {
    const std::string text(draw->text.data(), draw->size);
    return text.substr(kBeforeName.size(), text.size() - kBeforeName.size() - kBehindName.size());
}

}  // namespace qm::pdf
