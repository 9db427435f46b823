// See display_list.h.
#include "host/display_list.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "host/packed_bytes.h"

namespace qm {

namespace {

// A part is the unit that readers leave out, and has its own memory of just its size.
constexpr std::size_t kPartBytes = std::size_t{32} << 10;
// Smaller and larger parts are not packed; nor are so many behind one that lost less than a
// quarter.
constexpr std::size_t kLeastPacked = std::size_t{4} << 10;
constexpr std::size_t kMostPacked = std::size_t{1} << 20;
constexpr unsigned kPartsToLeave = 15;
constexpr std::size_t kFirstRoom = 256;  // small, because a document can have many pages
constexpr std::size_t kKeptBytes = std::size_t{4} << 10;
constexpr std::size_t kAlignment = 4;  // of what is kept
constexpr std::size_t kFirstSupply = 1024;
constexpr std::size_t kLargestSupply = std::size_t{1} << 18;
constexpr std::size_t kMaxDash = 0xFFFFFF;
// More words than this in one record can only come from a broken caller.
constexpr std::size_t kMaxRecordWords = std::size_t{1} << 34;
constexpr std::size_t kBoxBytes = 4 * kMaxNumberBytes;
constexpr std::size_t kAddressBytes = kMaxNumberBytes + sizeof(const std::uint8_t*);
constexpr std::size_t kMaxChainBytes = 1 + MaxRunBytes(1 + kBlockPoints);

std::size_t WordsFor(std::size_t bytes) { return (bytes + 3) / 4; }

std::uint32_t Count(std::size_t count) { return static_cast<std::uint32_t>(count); }

std::uint8_t* PutHead(std::uint8_t* at, RecordKind kind, unsigned flags) {
    *at = static_cast<std::uint8_t>(static_cast<unsigned>(kind) | flags);
    return at + 1;
}

// memcpy must not see the null pointer of an empty run.
std::uint8_t* PutBytes(std::uint8_t* at, const void* data, std::size_t bytes) {
    if (bytes > 0) std::memcpy(at, data, bytes);
    return at + bytes;
}

// Bytes that are kept elsewhere.
std::uint8_t* PutAddress(std::uint8_t* at, const std::uint8_t* kept, std::size_t count) {
    return PutBytes(PutCount(at, Count(count)), &kept, sizeof kept);
}

unsigned FillFlag(bool filled) { return filled ? kRecordFilled : 0; }
unsigned PointsFlag(std::size_t count) { return count > 0 ? kRecordHasPoints : 0; }

}  // namespace

void SetStyleValue(DrawingStyle& style, RecordKind kind, std::int32_t value) {
    switch (kind) {
        case RecordKind::kDrawColour:
            style.drawColour = static_cast<std::uint32_t>(value);
            return;
        case RecordKind::kFillColour:
            style.fillColour = static_cast<std::uint32_t>(value);
            return;
        case RecordKind::kLayer:
            style.layer = value;
            return;
        case RecordKind::kPen:
            style.pen = value;
            return;
        case RecordKind::kLineStyle:
            return style.SetLineStyle(value);
        case RecordKind::kLineWidth:
            style.lineWidth = value;
            return;
        case RecordKind::kLineAttributes:
            style.lineAttributes = value;
            return;
        default:  // kDrawMode
            style.drawMode = value;
            return;
    }
}

// -------------------------------------------------------------------------------- memory and parts

// Room for `bytes` bytes behind the records; they count once EndRecord says so.
std::uint8_t* DisplayList::Room(std::size_t bytes) {
    if (open_.size - open_.used < bytes) {
        Block larger;
        larger.size = std::max({kFirstRoom, 2 * open_.size, open_.used + bytes});
        larger.bytes.reset(new std::uint8_t[larger.size]);
        larger.used = open_.used;
        PutBytes(larger.bytes.get(), open_.bytes.get(), open_.used);
        open_ = std::move(larger);
    }
    return open_.bytes.get() + open_.used;
}

// Packs the records at hand into packing_; returns how many bytes they take there, 0 when it is not
// worth it.
std::size_t DisplayList::PackOpen() {
    if (open_.used < kLeastPacked || open_.used > kMostPacked) return 0;
    if (partsToLeave_ > 0) {
        --partsToLeave_;
        return 0;
    }
    const std::size_t room = MaxPackedBytes(open_.used);
    if (packing_.size < room) {
        packing_.bytes.reset(new std::uint8_t[room]);
        packing_.size = room;
    }
    const std::size_t packed = Pack(open_.bytes.get(), open_.used, packing_.bytes.get());
    if (packed <= open_.used / 4 * 3) return packed;
    partsToLeave_ = kPartsToLeave;
    return 0;
}

// Makes the records at hand a part; needs a chain that has ended.
void DisplayList::EndPart() {
    EndLetter();
    if (open_.used == 0) return;
    Part part;
    part.size = open_.used;
    part.packed = PackOpen();
    const std::size_t size = part.packed > 0 ? part.packed : part.size;
    part.bytes.reset(new std::uint8_t[size]);
    PutBytes(part.bytes.get(), part.packed > 0 ? packing_.bytes.get() : open_.bytes.get(), size);
    part.cover = cover_;
    part.after = style_;
    parts_.push_back(std::move(part));
    usedBytes_ += size;
    open_.used = 0;
    if (open_.size > 4 * kPartBytes) open_ = Block();
    cover_ = PartCover();
    cover_.widestLine = style_.lineWidth;
    last_ = PointI();
}

void DisplayList::TakeWords(std::size_t words) {
    if (words_ < words) {
        const std::size_t shift = std::min<std::size_t>(supplies_++, 8);
        words_ = std::max(std::min(kFirstSupply << shift, kLargestSupply), words);
    }
    words_ -= words;
}

// A copy of bytes that stays where it is as long as the list.
const std::uint8_t* DisplayList::Keep(const void* data, std::size_t bytes) {
    const std::size_t taken = (bytes + kAlignment - 1) / kAlignment * kAlignment;
    if (kept_.empty() || kept_.back().size - kept_.back().used < taken) {
        Block block;
        // Large ones do not share, so that nothing of a block is left over.
        block.size = taken > kKeptBytes / 4 ? taken : kKeptBytes;
        block.bytes.reset(new std::uint8_t[block.size]);
        kept_.push_back(std::move(block));
        usedBytes_ += kept_.back().size;
    }
    Block& block = kept_.back();
    std::uint8_t* const at = block.bytes.get() + block.used;
    PutBytes(at, data, bytes);
    block.used += taken;
    return at;
}

// Room for a record whose first byte is written; returns the second. `words` are its share of the
// supply.
std::uint8_t* DisplayList::NewRecord(RecordKind kind, unsigned flags, std::size_t words,
                                     std::size_t bytes) {
    if (words > kMaxRecordWords) throw std::bad_alloc();
    EndLetter();
    EndChain();
    if (open_.used >= kPartBytes) EndPart();
    std::uint8_t* const at = Room(1 + bytes);
    TakeWords(words);
    return PutHead(at, kind, flags);
}

std::uint8_t* DisplayList::NewContent(RecordKind kind, unsigned flags, std::size_t words,
                                      std::size_t bytes) {
    std::uint8_t* const at = NewRecord(kind, flags, words, bytes);
    hasContent_ = true;
    return at;
}

// ------------------------------------------------------------------------------------------- lines

void DisplayList::StartLines(PointI from, PointI to) {
    ReopenLetter(from);
    if (Continues(from)) {
        if (chainCount_ == chain_.size()) FlushChain();
        words_ -= 2;
        chain_[chainCount_++] = to;
        return;
    }
    EndChain();
    if (open_.used >= kPartBytes) EndPart();
    TakeWords(5);
    chain_[0] = from;
    chain_[1] = to;
    chainCount_ = 2;
    hasContent_ = true;
}

void DisplayList::AppendLines(PointSpan points) {
    std::size_t next = 1;
    while (next < points.count) {
        AppendLine(points[next - 1], points[next]);
        ++next;
        // What follows continues that line as far as the block and the supply reach.
        const std::size_t more =
            std::min({points.count - next, chain_.size() - chainCount_, words_ / 2});
        std::copy_n(points.data + next, more, chain_.data() + chainCount_);
        chainCount_ += more;
        words_ -= 2 * more;
        next += more;
    }
}

// Writes the full block of a chain that goes on.
void DisplayList::FlushChain() {
    std::uint8_t* at = Room(kMaxChainBytes);
    const BlockShape shape = ShapeOf(&chain_[1], kBlockPoints);
    cover_.Add(shape.box);
    if (!chainBegun_) {
        at = PutHead(at, RecordKind::kLines, kRecordHasPoints);
        at = PutPoint(at, chain_[0], last_);
    }
    *at++ = BlockHead(shape.form, kBlockPoints);
    EndRecord(PutBlock(at, &chain_[1], kBlockPoints, shape.form));
    chainBegun_ = true;
    chain_[0] = chain_.back();
    chainCount_ = 1;
}

// Writes what is missing of the chain at hand.
std::uint8_t* DisplayList::PutChainEnd(std::uint8_t* at, unsigned form) const {
    const std::size_t lines = chainCount_ - 1;
    PointI last = last_;
    if (!chainBegun_ && lines <= kMostShortLines) {
        *at++ = static_cast<std::uint8_t>(kShortLines | form << kShortLinesFormShift | (lines - 1));
        at = PutPoint(at, chain_[0], last);
        return PutBlock(at, &chain_[1], lines, form);
    }
    if (!chainBegun_) {
        at = PutHead(at, RecordKind::kLines, kRecordHasPoints);
        at = PutPoint(at, chain_[0], last);
    }
    *at++ = BlockHead(form, lines);
    at = PutBlock(at, &chain_[1], lines, form);
    // A full block says that another follows.
    if (lines == kBlockPoints) *at++ = BlockHead(0, 0);
    return at;
}

void DisplayList::EndChain() {
    if (chainCount_ == 0) return;
    const BlockShape shape = ShapeOf(&chain_[1], chainCount_ - 1);
    EndRecord(PutChainEnd(Room(kMaxChainBytes), shape.form));
    cover_.Add(shape.box);
    last_ = chain_[chainCount_ - 1];
    chainCount_ = 0;
    chainBegun_ = false;
}

// ---------------------------------------------------------------------------------- other contents

std::uint8_t* DisplayList::PutBox(std::uint8_t* at, const BoxI& box) {
    cover_.Add(box);
    return PutPoint(PutPoint(at, box.a, last_), box.b, last_);
}

std::uint8_t* DisplayList::PutCoveredRun(std::uint8_t* at, PointSpan points) {
    if (points.count == 0) return at;
    BoxI box;
    at = PutRun(at, points.data, points.count, last_, box);
    cover_.Add(box);
    return at;
}

void DisplayList::AppendRectangle(const BoxI& box, bool filled) {
    EndRecord(PutBox(NewContent(RecordKind::kRectangle, FillFlag(filled), 5, kBoxBytes), box));
}

void DisplayList::AppendCircle(PointI centre, std::int32_t radius, bool filled) {
    std::uint8_t* at = NewContent(RecordKind::kCircle, FillFlag(filled), 4, 3 * kMaxNumberBytes);
    const std::int64_t reach = std::abs(std::int64_t{radius});
    cover_.Add(centre.x - reach, centre.y - reach);
    cover_.Add(centre.x + reach, centre.y + reach);
    at = PutPoint(at, centre, last_);
    EndRecord(PutNumber(at, radius));
}

void DisplayList::AppendArc(const ArcShape& arc) {
    std::uint8_t* at = NewContent(RecordKind::kArc, 0, 7, kBoxBytes + 2 * sizeof(float));
    const PointI centre = arc.centre;
    const std::int64_t reachX = std::abs(std::int64_t{arc.radiusX});
    const std::int64_t reachY = std::abs(std::int64_t{arc.radiusY});
    cover_.Add(centre.x - reachX, centre.y - reachY);
    cover_.Add(centre.x + reachX, centre.y + reachY);
    at = PutPoint(at, centre, last_);
    at = PutNumber(at, arc.radiusX);
    at = PutNumber(at, WrapSubtract(arc.radiusY, arc.radiusX));
    at = PutBytes(at, &arc.start, sizeof arc.start);
    EndRecord(PutBytes(at, &arc.span, sizeof arc.span));
}

void DisplayList::AppendPolygon(PointSpan points, bool filled) {
    std::uint8_t* const at =
        NewContent(RecordKind::kPolygon, FillFlag(filled) | PointsFlag(points.count),
                   2 + 2 * points.count, MaxRunBytes(points.count));
    EndRecord(PutCoveredRun(at, points));
}

void DisplayList::AppendPolyPolygon(const Rings& rings, bool filled) {
    std::uint8_t* at =
        NewContent(RecordKind::kPolyPolygon, FillFlag(filled) | PointsFlag(rings.points.count),
                   3 + rings.count + 2 * rings.points.count,
                   (1 + rings.count) * kMaxNumberBytes + MaxRunBytes(rings.points.count));
    at = PutCount(at, Count(rings.count));
    for (std::size_t i = 0; i < rings.count; ++i) at = PutNumber(at, rings.lengths[i]);
    EndRecord(PutCoveredRun(at, rings.points));
}

void DisplayList::AppendText(const BoxI& box, std::string_view text) {
    std::uint8_t* at = NewContent(RecordKind::kText, 0, 6 + WordsFor(text.size()),
                                  kBoxBytes + kMaxNumberBytes + text.size());
    // The strokes cover what there is to see.
    at = PutPoint(PutPoint(at, box.a, last_), box.b, last_);
    at = PutCount(at, Count(text.size()));
    EndRecord(PutBytes(at, text.data(), text.size()));
}

void DisplayList::PutPicture(const BoxI& box, std::int32_t rasterOperation, ByteRun kept) {
    std::uint8_t* at = NewContent(RecordKind::kPicture, 0, 7 + WordsFor(kept.size),
                                  kBoxBytes + kMaxNumberBytes + kAddressBytes);
    at = PutBox(at, box);
    cover_.hasPictures = true;
    at = PutNumber(at, rasterOperation);
    EndRecord(PutAddress(at, kept.data, kept.size));
}

void DisplayList::AppendPicture(const BoxI& box, std::int32_t rasterOperation, ByteRun bitmap) {
    PutPicture(box, rasterOperation, {Keep(bitmap.data, bitmap.size), bitmap.size});
}

void DisplayList::AppendPicture(const BoxI& box, std::int32_t rasterOperation,
                                std::shared_ptr<const std::uint8_t> packedBitmap,
                                std::size_t size) {
    pictures_.push_back(std::move(packedBitmap));
    usedBytes_ += size;
    PutPicture(box, rasterOperation, {pictures_.back().get(), size});
}

void DisplayList::DefineFillPattern(const FillPattern& pattern) {
    const std::uint8_t* const kept = Keep(pattern.bits.data, pattern.bits.size);
    std::uint8_t* at = NewRecord(RecordKind::kFillPattern, 0, 5 + WordsFor(pattern.bits.size),
                                 3 * kMaxNumberBytes + kAddressBytes);
    cover_.hasDefinitions = true;
    at = PutNumber(at, pattern.index);
    at = PutNumber(at, pattern.width);
    at = PutNumber(at, pattern.height);
    EndRecord(PutAddress(at, kept, pattern.bits.size));
}

void DisplayList::AppendClipRegion(PointSpan points) {
    std::uint8_t* const at = NewRecord(RecordKind::kClipRegion, PointsFlag(points.count),
                                       2 + 2 * points.count, MaxRunBytes(points.count));
    cover_.hasDefinitions = true;
    EndRecord(PutCoveredRun(at, points));
}

void DisplayList::EndClipRegion() {
    EndRecord(NewRecord(RecordKind::kEndClipRegion, 0, 1, 0));
    cover_.hasDefinitions = true;
}

// -------------------------------------------------------------------------------------- attributes

void DisplayList::AppendColour(RecordKind kind, std::uint32_t colour) {
    std::uint8_t* const at = NewRecord(kind, 0, 1, 3);
    for (unsigned i = 0; i < 3; ++i) at[i] = static_cast<std::uint8_t>(colour >> (8 * i));
    EndRecord(at + 3);
    SetStyleValue(style_, kind, static_cast<std::int32_t>(colour & 0xFFFFFF));
}

void DisplayList::AppendValue(RecordKind kind, std::int32_t value) {
    EndRecord(PutNumber(NewRecord(kind, 0, 2, kMaxNumberBytes), value));
    SetStyleValue(style_, kind, value);
    cover_.widestLine = std::max(cover_.widestLine, style_.lineWidth);
}

void DisplayList::AppendLineDash(const std::int32_t* lengths, std::size_t count) {
    count = std::min(count, kMaxDash);
    const std::uint8_t* const kept = Keep(lengths, count * sizeof(std::int32_t));
    std::uint8_t* const at = NewRecord(RecordKind::kLineDash, 0, 1 + count, kAddressBytes);
    EndRecord(PutAddress(at, kept, count));
    style_.SetDash(reinterpret_cast<const std::int32_t*>(kept), count);
}

void DisplayList::AppendFillStyle(std::int32_t kind, std::int32_t index) {
    kind &= 0xFFFFFF;
    std::uint8_t* at = NewRecord(RecordKind::kFillStyle, 0, 2, 2 * kMaxNumberBytes);
    at = PutNumber(at, kind);
    EndRecord(PutNumber(at, index));
    style_.fillKind = kind;
    style_.fillIndex = index;
}

// --------------------------------------------------------------------------------------- the whole

std::vector<std::uint8_t> DisplayList::Rest() const {
    std::vector<std::uint8_t> bytes(open_.used + kMaxChainBytes);
    PutBytes(bytes.data(), open_.bytes.get(), open_.used);
    const std::uint8_t* end = bytes.data() + open_.used;
    if (chainCount_ > 0) {
        end = PutChainEnd(bytes.data() + open_.used, ShapeOf(&chain_[1], chainCount_ - 1).form);
    }
    bytes.resize(static_cast<std::size_t>(end - bytes.data()));
    return bytes;
}

std::size_t DisplayList::UsedBytes() const {
    return usedBytes_ + shapes_.UsedBytes() + open_.used + chainCount_ * sizeof(PointI);
}

void DisplayList::Finish() {
    EndChain();
    EndPart();
    shapes_.Finish();
    open_ = Block();
    packing_ = Block();
}

void DisplayList::DropRecords() {
    parts_.clear();
    kept_.clear();
    pictures_.clear();
    shapes_ = LetterShapes();
    EndLetter();
    open_ = Block();
    usedBytes_ = 0;
    cover_ = PartCover();
    style_ = DrawingStyle();
    last_ = PointI();
    chainCount_ = 0;
    chainBegun_ = false;
    words_ = supplies_ = 0;
}

}  // namespace qm
