// See display_list_player.h.
#include "host/display_list_player.h"

#include <algorithm>
#include <cstring>

namespace qm {

namespace {

// Points were stored as pairs of 32-bit integers, which is what a PointI is.
PointSpan AsPoints(const std::int32_t* words, std::size_t count) {
    return {reinterpret_cast<const PointI*>(words), count};
}

BoxI AsBox(const std::int32_t* words) { return {{words[0], words[1]}, {words[2], words[3]}}; }

ByteRun AsBytes(const std::int32_t* words, std::int32_t size) {
    return {reinterpret_cast<const std::uint8_t*>(words),
            static_cast<std::size_t>(static_cast<std::uint32_t>(size))};
}

std::size_t Count(std::int32_t word) {
    return static_cast<std::size_t>(static_cast<std::uint32_t>(word));
}

class Player {
  public:
    explicit Player(DisplayListVisitor& visitor) : visitor_(visitor) {}

    void PlayChunk(DisplayList::Words words) {
        for (const std::int32_t* at = words.begin; at != words.end;) at = PlayRecord(at);
    }

  private:
    // Each returns the word behind its record; `at` is the record's second word.
    const std::int32_t* PlayRecord(const std::int32_t* record);
    const std::int32_t* PlayArc(const std::int32_t* at);
    const std::int32_t* PlayRings(const std::int32_t* at, bool filled);
    const std::int32_t* PlayText(const std::int32_t* at);
    const std::int32_t* PlayPicture(const std::int32_t* at);
    const std::int32_t* PlayPattern(const std::int32_t* at);
    const std::int32_t* PlayClip(const std::int32_t* at);
    const std::int32_t* PlayStyle(RecordKind kind, std::uint32_t detail, const std::int32_t* at);
    void SetDash(const std::int32_t* lengths, std::size_t count);

    DisplayListVisitor& visitor_;
    DrawingStyle style_;
};

const std::int32_t* Player::PlayRecord(const std::int32_t* record) {
    const auto kind = static_cast<RecordKind>(*record & 0xFF);
    const std::uint32_t detail = static_cast<std::uint32_t>(*record) >> DisplayList::kDetailShift;
    const bool filled = detail != 0;
    const std::int32_t* const at = record + 1;
    switch (kind) {
        case RecordKind::kLines:
            visitor_.Lines(style_, AsPoints(at, detail));
            return at + 2 * std::size_t{detail};
        case RecordKind::kRectangle:
            visitor_.Rectangle(style_, AsBox(at), filled);
            return at + 4;
        case RecordKind::kCircle:
            visitor_.Circle(style_, {at[0], at[1]}, at[2], filled);
            return at + 3;
        case RecordKind::kArc:
            return PlayArc(at);
        case RecordKind::kPolygon:
            visitor_.Polygon(style_, AsPoints(at + 1, Count(at[0])), filled);
            return at + 1 + 2 * Count(at[0]);
        case RecordKind::kPolyPolygon:
            return PlayRings(at, filled);
        case RecordKind::kText:
            return PlayText(at);
        case RecordKind::kPicture:
            return PlayPicture(at);
        case RecordKind::kFillPattern:
            return PlayPattern(at);
        case RecordKind::kClipRegion:
            return PlayClip(at);
        case RecordKind::kEndClipRegion:
            visitor_.EndClipRegion();
            return at;
        default:
            return PlayStyle(kind, detail, at);
    }
}

const std::int32_t* Player::PlayArc(const std::int32_t* at) {
    ArcShape arc{{at[0], at[1]}, at[2], at[3], 0.0F, 0.0F};
    std::memcpy(&arc.start, at + 4, sizeof arc.start);
    std::memcpy(&arc.span, at + 5, sizeof arc.span);
    visitor_.Arc(style_, arc);
    return at + 6;
}

const std::int32_t* Player::PlayRings(const std::int32_t* at, bool filled) {
    const std::size_t count = Count(at[0]);
    const std::size_t points = Count(at[1]);
    const std::int32_t* const lengths = at + 2;
    visitor_.PolyPolygon(style_, {lengths, count, AsPoints(lengths + count, points)}, filled);
    return lengths + count + 2 * points;
}

const std::int32_t* Player::PlayText(const std::int32_t* at) {
    const ByteRun text = AsBytes(at + 5, at[4]);
    visitor_.Text(style_, AsBox(at), {reinterpret_cast<const char*>(text.data), text.size});
    return at + 5 + (text.size + 3) / 4;
}

const std::int32_t* Player::PlayPicture(const std::int32_t* at) {
    const ByteRun bitmap = AsBytes(at + 6, at[5]);
    visitor_.Picture(style_, AsBox(at), at[4], bitmap);
    return at + 6 + (bitmap.size + 3) / 4;
}

const std::int32_t* Player::PlayPattern(const std::int32_t* at) {
    const ByteRun bits = AsBytes(at + 4, at[3]);
    visitor_.Pattern({at[0], at[1], at[2], bits});
    return at + 4 + (bits.size + 3) / 4;
}

const std::int32_t* Player::PlayClip(const std::int32_t* at) {
    visitor_.ClipRegion(AsPoints(at + 1, Count(at[0])));
    return at + 1 + 2 * Count(at[0]);
}

void Player::SetDash(const std::int32_t* lengths, std::size_t count) {
    style_.lineStyle = 0;
    style_.dash = lengths;
    style_.dashCount = count;
}

const std::int32_t* Player::PlayStyle(RecordKind kind, std::uint32_t detail,
                                      const std::int32_t* at) {
    const std::int32_t* next = at + 1;
    switch (kind) {
        case RecordKind::kDrawColour:
            style_.drawColour = detail;
            next = at;
            break;
        case RecordKind::kFillColour:
            style_.fillColour = detail;
            next = at;
            break;
        case RecordKind::kLayer:
            style_.layer = *at;
            break;
        case RecordKind::kPen:
            style_.pen = *at;
            break;
        case RecordKind::kLineStyle:
            SetDash(nullptr, 0);
            style_.lineStyle = *at;
            break;
        case RecordKind::kLineWidth:
            style_.lineWidth = *at;
            break;
        case RecordKind::kLineDash:
            SetDash(at, detail);
            next = at + detail;
            break;
        case RecordKind::kLineAttributes:
            style_.lineAttributes = *at;
            break;
        case RecordKind::kDrawMode:
            style_.drawMode = *at;
            break;
        default:  // kFillStyle, the last kind
            style_.fillKind = static_cast<std::int32_t>(detail);
            style_.fillIndex = *at;
            break;
    }
    visitor_.StyleChange(style_, kind);
    return next;
}

}  // namespace

void Play(const DisplayList& list, DisplayListVisitor& visitor) {
    Player player(visitor);
    const std::size_t total = list.UsedBytes();
    std::size_t done = 0;
    for (std::size_t i = 0; i < list.ChunkCount(); ++i) {
        const DisplayList::Words words = list.Chunk(i);
        player.PlayChunk(words);
        done += static_cast<std::size_t>(words.end - words.begin) * sizeof(*words.begin);
        if (total > 0) visitor.Progress(static_cast<int>(std::min(done, total) * 100 / total));
    }
}

}  // namespace qm
