// See display_list.h.
#include "host/display_list.h"

#include <algorithm>
#include <new>

namespace qm {

namespace {

// The first chunk is small because a document can have many pages with little on each; each further
// one is twice as large, up to 1 MiB, so that long lists take few allocations.
constexpr std::size_t kFirstChunkWords = 1024;
constexpr std::size_t kLargestChunkWords = std::size_t{1} << 18;
constexpr std::size_t kMaxDetail = 0xFFFFFF;
// More words than this in one record can only come from a broken caller.
constexpr std::size_t kMaxRecordWords = std::size_t{1} << 34;

static_assert(kLargestChunkWords / 2 < kMaxDetail, "a chain's point count must fit its detail");

std::size_t WordsFor(std::size_t bytes) { return (bytes + 3) / 4; }

std::int32_t* Put(std::int32_t* at, const BoxI& box) {
    at[0] = box.a.x;
    at[1] = box.a.y;
    at[2] = box.b.x;
    at[3] = box.b.y;
    return at + 4;
}

// memcpy must not see the null pointer of an empty run.
void PutBytes(std::int32_t* at, const void* data, std::size_t bytes) {
    if (bytes > 0) std::memcpy(at, data, bytes);
}

void PutPoints(std::int32_t* at, PointSpan points) {
    PutBytes(at, points.data, points.count * sizeof(PointI));
}

}  // namespace

void DisplayList::NewChunk(std::size_t words) {
    std::size_t size = kFirstChunkWords;
    if (!chunks_.empty()) {
        const std::size_t shift = std::min<std::size_t>(chunks_.size(), 8);
        size = std::min(kFirstChunkWords << shift, kLargestChunkWords);
    }
    size = std::max(size, words);
    ChunkMemory chunk{std::unique_ptr<std::int32_t[]>(new std::int32_t[size]), 0};
    std::int32_t* const first = chunk.words.get();
    chunks_.push_back(std::move(chunk));
    if (chunks_.size() > 1) {
        ChunkMemory& full = chunks_[chunks_.size() - 2];
        full.used = static_cast<std::size_t>(next_ - full.words.get());
    }
    next_ = first;
    end_ = first + size;
}

std::int32_t* DisplayList::NewRecord(RecordKind kind, std::size_t detail, std::size_t words) {
    if (words > kMaxRecordWords) throw std::bad_alloc();
    if (static_cast<std::size_t>(end_ - next_) < words) NewChunk(words);
    chain_ = nullptr;
    std::int32_t* const record = next_;
    record[0] = static_cast<std::int32_t>(
        static_cast<std::uint32_t>(kind) |
        (static_cast<std::uint32_t>(detail & kMaxDetail) << kDetailShift));
    next_ += words;
    return record + 1;
}

void DisplayList::StartLines(PointI from, PointI to) {
    std::int32_t* const record = NewContent(RecordKind::kLines, 2, 5);
    Put(record, {from, to});
    chain_ = record - 1;
}

void DisplayList::AppendRectangle(const BoxI& box, bool filled) {
    Put(NewContent(RecordKind::kRectangle, filled ? 1 : 0, 5), box);
}

void DisplayList::AppendCircle(PointI centre, std::int32_t radius, bool filled) {
    std::int32_t* const record = NewContent(RecordKind::kCircle, filled ? 1 : 0, 4);
    record[0] = centre.x;
    record[1] = centre.y;
    record[2] = radius;
}

void DisplayList::AppendArc(const ArcShape& arc) {
    std::int32_t* const record = NewContent(RecordKind::kArc, 0, 7);
    Put(record, {arc.centre, {arc.radiusX, arc.radiusY}});
    std::memcpy(record + 4, &arc.start, sizeof arc.start);
    std::memcpy(record + 5, &arc.span, sizeof arc.span);
}

void DisplayList::AppendPolygon(PointSpan points, bool filled) {
    std::int32_t* const record =
        NewContent(RecordKind::kPolygon, filled ? 1 : 0, 2 + 2 * points.count);
    record[0] = static_cast<std::int32_t>(points.count);
    PutPoints(record + 1, points);
}

void DisplayList::AppendPolyPolygon(const Rings& rings, bool filled) {
    std::int32_t* const record = NewContent(RecordKind::kPolyPolygon, filled ? 1 : 0,
                                            3 + rings.count + 2 * rings.points.count);
    record[0] = static_cast<std::int32_t>(rings.count);
    record[1] = static_cast<std::int32_t>(rings.points.count);
    PutBytes(record + 2, rings.lengths, rings.count * sizeof(std::int32_t));
    PutPoints(record + 2 + rings.count, rings.points);
}

void DisplayList::AppendText(const BoxI& box, std::string_view text) {
    std::int32_t* record = NewContent(RecordKind::kText, 0, 6 + WordsFor(text.size()));
    record = Put(record, box);
    record[0] = static_cast<std::int32_t>(text.size());
    PutBytes(record + 1, text.data(), text.size());
}

void DisplayList::AppendPicture(const BoxI& box, std::int32_t rasterOperation, ByteRun bitmap) {
    std::int32_t* record = NewContent(RecordKind::kPicture, 0, 7 + WordsFor(bitmap.size));
    record = Put(record, box);
    record[0] = rasterOperation;
    record[1] = static_cast<std::int32_t>(bitmap.size);
    PutBytes(record + 2, bitmap.data, bitmap.size);
}

void DisplayList::DefineFillPattern(const FillPattern& pattern) {
    std::int32_t* const record =
        NewRecord(RecordKind::kFillPattern, 0, 5 + WordsFor(pattern.bits.size));
    record[0] = pattern.index;
    record[1] = pattern.width;
    record[2] = pattern.height;
    record[3] = static_cast<std::int32_t>(pattern.bits.size);
    PutBytes(record + 4, pattern.bits.data, pattern.bits.size);
}

void DisplayList::AppendClipRegion(PointSpan points) {
    std::int32_t* const record = NewRecord(RecordKind::kClipRegion, 0, 2 + 2 * points.count);
    record[0] = static_cast<std::int32_t>(points.count);
    PutPoints(record + 1, points);
}

void DisplayList::EndClipRegion() { NewRecord(RecordKind::kEndClipRegion, 0, 1); }

void DisplayList::AppendColour(RecordKind kind, std::uint32_t colour) {
    NewRecord(kind, colour, 1);
}

void DisplayList::AppendValue(RecordKind kind, std::int32_t value) {
    *NewRecord(kind, 0, 2) = value;
}

void DisplayList::AppendLineDash(const std::int32_t* lengths, std::size_t count) {
    count = std::min(count, kMaxDetail);
    PutBytes(NewRecord(RecordKind::kLineDash, count, 1 + count), lengths,
             count * sizeof(std::int32_t));
}

void DisplayList::AppendFillStyle(std::int32_t kind, std::int32_t index) {
    *NewRecord(RecordKind::kFillStyle, static_cast<std::uint32_t>(kind), 2) = index;
}

DisplayList::Words DisplayList::Chunk(std::size_t index) const {
    const std::int32_t* const first = chunks_[index].words.get();
    const bool last = index + 1 == chunks_.size();
    return {first, last ? next_ : first + chunks_[index].used};
}

std::size_t DisplayList::UsedBytes() const {
    std::size_t words = 0;
    for (std::size_t i = 0; i < chunks_.size(); ++i) {
        words += static_cast<std::size_t>(Chunk(i).end - Chunk(i).begin);
    }
    return words * sizeof(std::int32_t);
}

void DisplayList::DropRecords() {
    chunks_.clear();
    next_ = end_ = chain_ = nullptr;
}

}  // namespace qm
