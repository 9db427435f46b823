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

void PagePainter::TakeStrokesOf(const BoxI& box) {
    strokes_.clear();
    while (strokes_.size() < held_.size()) {
        const PointSpan points = held_[held_.size() - 1 - strokes_.size()];
        if (points.count > kMaxSegments) break;
        const GlyphShapes::Chain chain = GlyphShapes::ChainOf(points);
        if (!Holds(box, chain.box)) break;
        strokes_.push_back(chain);
    }
    std::reverse(strokes_.begin(), strokes_.end());
    held_.resize(held_.size() - strokes_.size());
}

// Strokes that lie above each other belong to one letter: not always so, but what is taken for a
// letter only decides what is written by reference.
bool PagePainter::DrawLetters(bool upright) {
    Stretch letter = StretchOf(strokes_[0].box, upright);
    Stretch firstLetter;
    std::size_t begin = 0;
    for (std::size_t i = 1; i <= strokes_.size(); ++i) {
        const bool ends = i == strokes_.size();
        const Stretch next = ends ? Stretch() : StretchOf(strokes_[i].box, upright);
        if (!ends && letter.Meets(next)) {
            letter.Add(next);
            continue;
        }
        if (begin == 0) firstLetter = letter;
        DrawLetter({&strokes_[begin], i - begin});
        if (ends) break;
        begin = i;
        letter = next;
    }
    EndRow();
    return begin > 0 && letter.high < firstLetter.low;
}

void PagePainter::EndRow() {
    if (rowLength_ > 0) out_ << "Q\n";
    rowLength_ = 0;
}

void PagePainter::DrawLetter(GlyphShapes::Strokes strokes) {
    const GlyphShapes::Form form = document_.glyphs.Use(strokes);
    if (form.object == 0) {
        EndRow();
        for (std::size_t i = 0; i < strokes.count; ++i) StrokePolyline(strokes.chains[i].points);
        return;
    }
    const PointI at = strokes.chains[0].points[0];
    if (rowLength_ == 0) {
        EndStroke();
        EnterLayer(style_.layer);
        state_.SetStroke(style_, false);
        inked_ = true;
        out_ << "q\n";
        rowAt_ = place_.origin;
    }
    out_.Letter(std::int64_t{at.x} - rowAt_.x, std::int64_t{at.y} - rowAt_.y, form.number);
    rowAt_ = at;
    if (*form.page != number_) {
        *form.page = number_;
        resources_.Add(PageResources::kXObject, "g" + std::to_string(form.number), form.object);
    }
    if (++rowLength_ == kMaxRow) EndRow();
}

void PagePainter::Text(const DrawingStyle& style, const BoxI& box, std::string_view text) {
    const TextPlace place = PlaceOfText(box, text);
    if (!place.shown) return;
    TakeStrokesOf(box);
    bool backward = false;
    if (!strokes_.empty()) {
        // Lines without round ends show dots and corners that forms of others do not have; with
        // exclusive or strokes stay apart.
        const bool byReference = plain_ && blend_ != Blend::kDifference;
        for (const PointSpan points : held_) StrokePolyline(points);
        Checkpoint();
        if (byReference) {
            backward = DrawLetters(place.toDrawing.a != 0.0);
        } else {
            for (const GlyphShapes::Chain& chain : strokes_) StrokePolyline(chain.points);
        }
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
