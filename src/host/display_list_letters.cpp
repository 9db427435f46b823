// Letters in a display list: filed as a shape and a place, as long as nobody can tell from the
// lines that are played back. See display_list.h. Test: tests/host/display_list_test.cpp.
#include <array>

#include "common/numbers.h"
#include "host/display_list.h"

namespace qm {

namespace {

PointI Sum(PointI a, PointI b) { return {a.x + b.x, a.y + b.y}; }

}  // namespace

void DisplayList::AppendRuns(const Strokes& strokes) {
    const PointI* run = strokes.points;
    for (std::size_t i = 0; i < strokes.runs; ++i) {
        AppendLines({run, strokes.lengths[i]});
        run += strokes.lengths[i];
    }
}

// What is filed next is a line from `from`: the chain that it continues must be lines.
void DisplayList::ReopenLetter(PointI from) {
    if (letter_.shape == LetterShapes::kNone) return;
    const OpenLetter letter = letter_;
    EndLetter();
    if (words_ < 2 || !(letter.end == from)) return;
    open_.used = letter.offset;
    last_ = letter.last;
    words_ = letter.words;
    const Strokes shape = shapes_.StrokesOf(letter.shape);
    std::array<PointI, LetterShapes::kMostPoints> points;
    for (std::size_t i = 0; i < shape.count; ++i) points[i] = Sum(letter.at, shape.points[i]);
    AppendRuns({points.data(), shape.count, shape.lengths, shape.runs});
}

// A letter whose first line continues a chain, or that the supply of words cuts in two, is filed as
// lines, and so is one without a shape.
void DisplayList::AppendLetter(const Strokes& strokes, BoxI& box) {
    const PointI at = strokes.points[0];
    ReopenLetter(at);
    const std::size_t words = 2 * strokes.count + strokes.runs;  // as its lines would take
    std::uint32_t shape = LetterShapes::kNone;
    if (words <= words_ && !Continues(at)) shape = shapes_.NumberOf(strokes);
    if (shape == LetterShapes::kNone) {
        box = BoxAround(strokes.points, strokes.count);
        return AppendRuns(strokes);
    }
    const BoxI& around = shapes_.BoxOf(shape);
    box = {Sum(at, around.a), Sum(at, around.b)};
    std::uint8_t* const record = NewContent(RecordKind::kLetter, 0, words, 3 * kMaxNumberBytes);
    letter_ = {shape, at, strokes.points[strokes.count - 1], open_.used, last_, words_ + words};
    cover_.Add(box);
    EndRecord(PutPoint(PutCount(record, shape), at, last_));
}

}  // namespace qm
