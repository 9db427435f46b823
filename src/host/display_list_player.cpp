// See display_list_player.h.
#include "host/display_list_player.h"

#include <cstring>

#include "host/packed_bytes.h"
#include "host/packed_points.h"

namespace qm {

namespace {

// What the records hold, read from front to back.
class RecordReader {
  public:
    explicit RecordReader(const std::uint8_t* at) : at_(at) {}

    const std::uint8_t* Position() const { return at_; }
    std::uint8_t Byte() { return *at_++; }
    std::uint32_t Count() { return TakeCount(at_); }
    std::int32_t Number() { return TakeNumber(at_); }
    PointI Point() { return TakePoint(at_, last_); }
    BoxI Box() {
        const PointI a = Point();
        return {a, Point()};
    }
    template <typename Value>
    Value Copy() {
        Value value;
        std::memcpy(&value, at_, sizeof value);
        at_ += sizeof value;
        return value;
    }
    std::string_view Text() {
        const std::size_t size = Count();
        const auto* const text = reinterpret_cast<const char*>(at_);
        at_ += size;
        return {text, size};
    }
    ByteRun Kept() {
        const std::size_t size = Count();
        return {Copy<const std::uint8_t*>(), size};
    }
    // Points are valid until the next are read.
    PointSpan ShortLines(std::uint8_t head) {
        const std::size_t lines = (head % kMostShortLines) + 1;
        const unsigned form = (head >> kShortLinesFormShift) & 3U;
        PointI* const points = PointRoom(0, 1 + lines);
        points[0] = Point();
        at_ = TakeBlock(at_, points + 1, lines, form);
        last_ = points[lines];
        return {points, 1 + lines};
    }
    PointSpan Run() {
        PointRoom(0, 1)[0] = Point();
        std::size_t count = 1;
        std::uint8_t head = 0;
        do {
            head = Byte();
            PointI* const points = PointRoom(count, CountInHead(head));
            at_ = TakeBlock(at_, points + count, CountInHead(head), FormInHead(head));
            count += CountInHead(head);
        } while (CountInHead(head) == kBlockPoints);
        last_ = points_[count - 1];
        return {points_.data(), count};
    }
    PointSpan RunIf(unsigned flags) {
        return (flags & kRecordHasPoints) != 0 ? Run() : PointSpan{};
    }
    // Of a part; the points' memory is used again.
    void Restart(const std::uint8_t* at) {
        at_ = at;
        last_ = PointI();
    }

  private:
    // Where `more` points behind `used` ones have room.
    PointI* PointRoom(std::size_t used, std::size_t more) {
        if (points_.size() < used + more) points_.resize(2 * (used + more));
        return points_.data();
    }

    const std::uint8_t* at_;
    PointI last_;
    std::vector<PointI> points_;
};

class Player {
  public:
    Player(DisplayListVisitor& visitor, const LetterShapes& shapes)
        : visitor_(visitor), shapes_(shapes) {}

    void PlayBytes(const std::uint8_t* begin, const std::uint8_t* end) {
        reader_.Restart(begin);
        while (reader_.Position() != end) {
            const std::uint8_t head = reader_.Byte();
            if (head >= kShortLines) {
                visitor_.Lines(style_, reader_.ShortLines(head));
            } else {
                PlayRecord(static_cast<RecordKind>(head & kRecordKindBits), head);
            }
        }
    }
    void PlayPart(const DisplayList::Part& part) {
        if (part.cover.hasDefinitions || visitor_.Wants(part.cover)) {
            const std::uint8_t* const records = RecordsOf(part);
            PlayBytes(records, records + part.size);
        } else {
            style_ = part.after;
        }
    }

  private:
    const std::uint8_t* RecordsOf(const DisplayList::Part& part) {
        if (part.packed == 0) return part.bytes.get();
        unpacked_.resize(part.size);
        Unpack(part.bytes.get(), part.packed, unpacked_.data(), part.size);
        return unpacked_.data();
    }
    void PlayRecord(RecordKind kind, unsigned flags);
    void PlayLetter();
    void PlayCircle(bool filled);
    void PlayArc();
    void PlayRings(unsigned flags);
    void PlayText();
    void PlayPicture();
    void PlayPattern();
    void PlayStyle(RecordKind kind);

    DisplayListVisitor& visitor_;
    const LetterShapes& shapes_;
    RecordReader reader_{nullptr};
    DrawingStyle style_;
    std::vector<std::int32_t> ringLengths_;
    std::vector<std::uint8_t> unpacked_;
};

void Player::PlayRecord(RecordKind kind, unsigned flags) {
    const bool filled = (flags & kRecordFilled) != 0;
    switch (kind) {
        case RecordKind::kLines:
            return visitor_.Lines(style_, reader_.Run());
        case RecordKind::kLetter:
            return PlayLetter();
        case RecordKind::kRectangle:
            return visitor_.Rectangle(style_, reader_.Box(), filled);
        case RecordKind::kCircle:
            return PlayCircle(filled);
        case RecordKind::kArc:
            return PlayArc();
        case RecordKind::kPolygon:
            return visitor_.Polygon(style_, reader_.RunIf(flags), filled);
        case RecordKind::kPolyPolygon:
            return PlayRings(flags);
        case RecordKind::kText:
            return PlayText();
        case RecordKind::kPicture:
            return PlayPicture();
        case RecordKind::kFillPattern:
            return PlayPattern();
        case RecordKind::kClipRegion:
            return visitor_.ClipRegion(reader_.RunIf(flags));
        case RecordKind::kEndClipRegion:
            return visitor_.EndClipRegion();
        default:
            return PlayStyle(kind);
    }
}

void Player::PlayLetter() {
    const std::uint32_t number = reader_.Count();
    const PointI at = reader_.Point();
    const BoxI& box = shapes_.BoxOf(number);
    // The strokes are made where they stay: a copy of what was just written field by field waits.
    const LetterRecord letter{number,
                              shapes_.StrokesOf(number),
                              at,
                              {{at.x + box.a.x, at.y + box.a.y}, {at.x + box.b.x, at.y + box.b.y}}};
    if (visitor_.Letter(style_, letter)) return;
    PlacedLetter(letter).ForEachRun([this](PointSpan run) { visitor_.Lines(style_, run); });
}

void Player::PlayCircle(bool filled) {
    const PointI centre = reader_.Point();
    visitor_.Circle(style_, centre, reader_.Number(), filled);
}

void Player::PlayArc() {
    ArcShape arc;
    arc.centre = reader_.Point();
    arc.radiusX = reader_.Number();
    arc.radiusY = WrapAdd(arc.radiusX, reader_.Number());
    arc.start = reader_.Copy<float>();
    arc.span = reader_.Copy<float>();
    visitor_.Arc(style_, arc);
}

void Player::PlayRings(unsigned flags) {
    ringLengths_.resize(reader_.Count());
    for (std::int32_t& length : ringLengths_) length = reader_.Number();
    const PointSpan points = reader_.RunIf(flags);
    visitor_.PolyPolygon(style_, {ringLengths_.data(), ringLengths_.size(), points},
                         (flags & kRecordFilled) != 0);
}

void Player::PlayText() {
    const BoxI box = reader_.Box();
    visitor_.Text(style_, box, reader_.Text());
}

void Player::PlayPicture() {
    const BoxI box = reader_.Box();
    const std::int32_t operation = reader_.Number();
    visitor_.Picture(style_, box, operation, reader_.Kept());
}

void Player::PlayPattern() {
    FillPattern pattern;
    pattern.index = reader_.Number();
    pattern.width = reader_.Number();
    pattern.height = reader_.Number();
    pattern.bits = reader_.Kept();
    visitor_.Pattern(pattern);
}

void Player::PlayStyle(RecordKind kind) {
    if (kind == RecordKind::kLineDash) {
        const ByteRun lengths = reader_.Kept();
        style_.SetDash(reinterpret_cast<const std::int32_t*>(lengths.data), lengths.size);
    } else if (kind == RecordKind::kFillStyle) {
        style_.fillKind = reader_.Number();
        style_.fillIndex = reader_.Number();
    } else if (kind == RecordKind::kDrawColour || kind == RecordKind::kFillColour) {
        const std::int32_t red = reader_.Byte();
        const std::int32_t green = reader_.Byte();
        SetStyleValue(style_, kind, red | green << 8 | reader_.Byte() << 16);
    } else {
        SetStyleValue(style_, kind, reader_.Number());
    }
    visitor_.StyleChange(style_, kind);
}

}  // namespace

void Play(const DisplayList& list, DisplayListVisitor& visitor) {
    Player player(visitor, list.Shapes());
    const std::vector<std::uint8_t> rest = list.Rest();
    std::size_t total = rest.size();
    for (const DisplayList::Part& part : list.Parts()) total += part.size;
    std::size_t done = 0;
    const auto tell = [&](std::size_t bytes) {
        done += bytes;
        if (bytes > 0) visitor.Progress(static_cast<int>(done * 100 / total));
    };
    for (const DisplayList::Part& part : list.Parts()) {
        player.PlayPart(part);
        tell(part.size);
    }
    player.PlayBytes(rest.data(), rest.data() + rest.size());
    tell(rest.size());
}

}  // namespace qm
