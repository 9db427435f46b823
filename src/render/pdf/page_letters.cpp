// See page_painter.h: texts and the strokes that show them.
#include <algorithm>
#include <array>

#include "render/pdf/page_painter.h"

namespace qm::pdf {

namespace {

// Each letter of a row is placed from the one before; viewers compute that in single precision.
constexpr int kMaxRow = 32;

// A stretch of the direction in which letters follow each other.
struct Stretch {
    std::int32_t low = INT32_MAX;
    std::int32_t high = INT32_MIN;

    void Add(const Stretch& other) {
        low = std::min(low, other.low);
        high = std::max(high, other.high);
    }
    bool Meets(const Stretch& other) const { return low <= other.high && other.low <= high; }
};

Stretch StretchOf(const BoxI& box, bool upright) {
    return upright ? Stretch{box.a.x, box.b.x} : Stretch{box.a.y, box.b.y};
}

bool Holds(const BoxI& box, const BoxI& inner) {
    return inner.a.x >= box.a.x && inner.b.x <= box.b.x && inner.a.y >= box.a.y &&
           inner.b.y <= box.b.y;
}

}  // namespace

std::size_t PagePainter::StrokesOf(const BoxI& box) {
    std::size_t begin = held_.size();
    for (; begin > 0; --begin) {
        Held& held = held_[begin - 1];
        if (!held.IsLetter()) {
            if (held.points.count > kMaxSegments) break;
            held.letter.box = BoxAround(held.points.data, held.points.count);
        }
        if (!Holds(box, held.letter.box)) break;
    }
    return begin;
}

// Lines that lie above each other belong to one letter: not always so, but what is taken for a
// letter only decides what is written by reference.
bool PagePainter::DrawLetters(std::size_t begin, bool upright) {
    const auto stretchOf = [&](std::size_t i) { return StretchOf(held_[i].letter.box, upright); };
    Stretch letter;
    Stretch firstLetter;
    std::size_t letters = 0;
    while (begin < held_.size()) {
        letter = stretchOf(begin);
        std::size_t end = begin + 1;
        for (; !held_[begin].IsLetter() && end < held_.size(); ++end) {
            const Stretch next = stretchOf(end);
            if (held_[end].IsLetter() || !letter.Meets(next)) break;
            letter.Add(next);
        }
        if (letters++ == 0) firstLetter = letter;
        DrawLetter(begin, end);
        begin = end;
    }
    EndRow();
    return letters > 1 && letter.high < firstLetter.low;
}

void PagePainter::EndRow() {
    if (rowLength_ > 0) out_ << "Q\n";
    rowLength_ = 0;
}

std::uint32_t PagePainter::ShapeOfLines(std::size_t begin, std::size_t end) {
    chains_.clear();
    for (; begin < end; ++begin) chains_.push_back(GlyphShapes::ChainOf(held_[begin].points));
    return document_.glyphs.NumberOf({chains_.data(), chains_.size()});
}

std::uint32_t PagePainter::ShapeOfLetter(const LetterRecord& letter) {
    if (shapes_.size() <= letter.number) shapes_.resize(letter.number + 1);
    std::uint32_t& shape = shapes_[letter.number];
    if (shape != 0) return shape;
    chains_.clear();
    const PointI* run = letter.shape.points;
    for (std::size_t i = 0; i < letter.shape.runs; ++i) {
        chains_.push_back(GlyphShapes::ChainOf({run, letter.shape.lengths[i]}));
        run += letter.shape.lengths[i];
    }
    return shape = document_.glyphs.NumberOf({chains_.data(), chains_.size()});
}

void PagePainter::DrawLetter(std::size_t begin, std::size_t end) {
    const Held& first = held_[begin];
    const GlyphShapes::Form form = document_.glyphs.Use(
        first.IsLetter() ? ShapeOfLetter(first.letter) : ShapeOfLines(begin, end));
    if (form.object == 0) {
        EndRow();
        for (std::size_t i = begin; i < end; ++i) Stroke(held_[i]);
        return;
    }
    const PointI at = first.IsLetter() ? first.letter.at : first.points[0];
    if (rowLength_ == 0) {
        EndStroke();
        EnterLayer(style_.layer);
        state_.SetStroke(style_, false);
        inked_ = true;
        out_ << "q\n";
        rowAt_ = place_.origin;
    }
    out_.Letter(std::int64_t{at.x} - rowAt_.x, std::int64_t{at.y} - rowAt_.y, *form.draw);
    rowAt_ = at;
    if (*form.page != number_) {
        *form.page = number_;
        resources_.Add(PageResources::kXObject, form.Name(), form.object);
    }
    if (++rowLength_ == kMaxRow) EndRow();
}

void PagePainter::Text(const DrawingStyle& style, const BoxI& box, std::string_view text) {
    const TextPlace place = PlaceOfText(box, text);
    if (!place.shown) return;
    const std::size_t begin = StrokesOf(box);
    bool backward = false;
    if (begin < held_.size()) {
        // Lines without round ends show dots and corners that forms of others do not have; with
        // exclusive or strokes stay apart.
        const bool byReference = plain_ && blend_ != Blend::kDifference;
        for (std::size_t i = 0; i < (byReference ? begin : held_.size()); ++i) Stroke(held_[i]);
        Checkpoint();
        if (byReference) backward = DrawLetters(begin, place.toDrawing.a != 0.0);
        held_.clear();
        heldPoints_.clear();
    }
    texts_.Add(box, text, backward, style.layer);
    if (texts_.Full()) {
        Flush();
        WriteTexts();
    }
}

}  // namespace qm::pdf
