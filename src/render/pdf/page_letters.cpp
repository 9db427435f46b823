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

    void Add(std::int32_t at) {
        low = std::min(low, at);
        high = std::max(high, at);
    }
    bool Meets(const Stretch& other) const { return low <= other.high && other.low <= high; }
};

Stretch StretchOf(PointSpan points, bool upright) {
    Stretch stretch;
    for (const PointI point : points) stretch.Add(upright ? point.x : point.y);
    return stretch;
}

bool Inside(const BoxI& box, PointSpan points) {
    return std::all_of(points.begin(), points.end(), [&](PointI p) {
        return p.x >= box.a.x && p.x <= box.b.x && p.y >= box.a.y && p.y <= box.b.y;
    });
}

}  // namespace

std::size_t PagePainter::FirstStrokeOf(const BoxI& box) const {
    std::size_t first = held_.size();
    while (first > 0 && Inside(box, held_[first - 1])) --first;
    return first;
}

// Strokes that lie above each other belong to one letter: not always so, but what is taken for a
// letter only decides what is written by reference.
bool PagePainter::DrawLetters(std::size_t first, bool upright) {
    Stretch letter;
    Stretch firstLetter;
    std::size_t begin = first;
    for (std::size_t i = first; i <= held_.size(); ++i) {
        Stretch next;
        if (i < held_.size()) next = StretchOf(held_[i], upright);
        if (i > begin && !letter.Meets(next)) {
            if (begin == first) firstLetter = letter;
            DrawLetter({&held_[begin], i - begin});
            begin = i;
            if (i < held_.size()) letter = next;
        } else if (i < held_.size()) {
            letter.Add(next.low);
            letter.Add(next.high);
        }
    }
    EndRow();
    return begin > first && letter.high < firstLetter.low;
}

void PagePainter::EndRow() {
    if (rowLength_ > 0) out_ << "Q\n";
    rowLength_ = 0;
}

void PagePainter::DrawLetter(GlyphShapes::Strokes strokes) {
    const GlyphShapes::Form form = document_.glyphs.Use(strokes);
    if (form.object == 0) {
        EndRow();
        for (std::size_t i = 0; i < strokes.count; ++i) StrokePolyline(strokes.chains[i]);
        return;
    }
    const PointI at = strokes.chains[0][0];
    if (rowLength_ == 0) {
        EndStroke();
        EnterLayer(style_.layer);
        state_.SetStroke(style_, false);
        inked_ = true;
        out_ << "q\n";
        rowAt_ = place_.origin;
    }
    const std::string name = "g" + std::to_string(form.number);
    out_ << "1 0 0 1 " << std::int64_t{at.x} - rowAt_.x << std::int64_t{at.y} - rowAt_.y << "cm/"
         << name << " Do\n";
    rowAt_ = at;
    if (*form.page != number_) {
        *form.page = number_;
        resources_.Add(PageResources::kXObject, name, form.object);
    }
    if (++rowLength_ == kMaxRow) EndRow();
}

void PagePainter::Text(const DrawingStyle& style, const BoxI& box, std::string_view text) {
    const TextPlace place = PlaceOfText(box, text);
    if (!place.shown) return;
    const std::size_t first = FirstStrokeOf(box);
    bool backward = false;
    if (first < held_.size()) {
        // Lines without round ends show dots and corners that forms of others do not have; with
        // exclusive or strokes stay apart.
        const bool byReference = plain_ && blend_ != Blend::kDifference;
        const bool upright = place.toDrawing.a != 0.0;
        for (std::size_t i = 0; i < first; ++i) StrokePolyline(held_[i]);
        Checkpoint();
        if (byReference) {
            backward = DrawLetters(first, upright);
        } else {
            for (std::size_t i = first; i < held_.size(); ++i) StrokePolyline(held_[i]);
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
