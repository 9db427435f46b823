// DisplayList: the content of one drawing block as a compact list of records, in drawing order.
//
// A plot can hold tens of millions of lines, so records are bytes (packed_points.h): lines that
// continue each other share one record and cost 2 to 4 bytes each where points are near, a single
// line 6 to 12, an attribute change 2 to 6. The Append functions fill the list, Play
// (display_list_player.h) reads it, part by part. Test: tests/host/display_list_test.cpp.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "common/geometry.h"
#include "host/drawing_style.h"
#include "host/letter_shapes.h"
#include "host/packed_points.h"

namespace qm {

// Kinds of records. A record's first byte is the kind with two flags, or stands for a chain of a
// few lines (kShortLines). A point is written as it lies from the last point of the record before.
enum class RecordKind : std::uint8_t {
    kLines,           // run of points
    kRectangle,       // kRecordFilled; corner, corner
    kCircle,          // kRecordFilled; centre, radius
    kArc,             // centre, radius x, radius y - radius x, start and span as floats
    kPolygon,         // kRecordFilled; run of points
    kPolyPolygon,     // kRecordFilled; rings, points of each ring, run of points
    kText,            // corner, corner, bytes, UTF-8 text
    kPicture,         // corner, corner, raster operation, bytes, where the packed bitmap is
    kFillPattern,     // index, width, height, bytes, where the rows are
    kClipRegion,      // run of points
    kEndClipRegion,   //
    kDrawColour,      // three bytes: blue, green, red
    kFillColour,      // three bytes
    kLayer,           // number
    kPen,             // number
    kLineStyle,       // code
    kLineWidth,       // plotter units
    kLineDash,        // lengths, where they are
    kLineAttributes,  // bits
    kDrawMode,        // mode
    kFillStyle,       // kind; index
    kLetter           // number of the shape, its first point
};
inline constexpr unsigned kRecordKindBits = 0x1F;
inline constexpr unsigned kRecordFilled = 0x20;
inline constexpr unsigned kRecordHasPoints = 0x40;  // else the run of points is missing
// A chain of lines without a kind: the low bits are its lines less one, those between the form of
// its only block; the first point and the differences of the others follow.
inline constexpr unsigned kShortLines = 0x80;
inline constexpr unsigned kShortLinesFormShift = 5;
inline constexpr std::size_t kMostShortLines = 32;

// Angles in degrees, counter-clockwise from +x; a negative span runs clockwise.
struct ArcShape {
    PointI centre;
    std::int32_t radiusX = 0;
    std::int32_t radiusY = 0;
    float start = 0.0F;
    float span = 0.0F;
};

// A run of points or bytes in somebody else's memory.
struct PointSpan {
    const PointI* data = nullptr;
    std::size_t count = 0;

    const PointI* begin() const { return data; }
    const PointI* end() const { return data + count; }
    PointI operator[](std::size_t i) const { return data[i]; }
};
struct ByteRun {
    const std::uint8_t* data = nullptr;
    std::size_t size = 0;
};

// Rings of one area, their points one behind the other; the lengths sum up to points.count.
struct Rings {
    const std::int32_t* lengths = nullptr;
    std::size_t count = 0;
    PointSpan points;
};

// User fill pattern: `height` rows of one bit a pixel, most significant bit first, a row padded to
// an even number of bytes. A set bit leaves the paper free, a clear bit is ink.
struct FillPattern {
    std::int32_t index = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    ByteRun bits;

    // Of a width above 0.
    std::size_t RowBytes() const { return (static_cast<std::size_t>(width) + 15) / 16 * 2; }
};

// Takes over the value of a record from kDrawColour to kDrawMode, dashes excepted.
void SetStyleValue(DrawingStyle& style, RecordKind kind, std::int32_t value);

// What a part of a list shows at most, so that a reader who does not want it can leave it out.
// Radii lead beyond 32 bits.
struct PartCover {
    std::int64_t minX = INT64_MAX;  // of all primitives' points, without line widths
    std::int64_t minY = INT64_MAX;
    std::int64_t maxX = INT64_MIN;
    std::int64_t maxY = INT64_MIN;
    std::int32_t widestLine = 0;  // plotter units
    // Holds fill patterns or clip regions, which later parts need.
    bool hasDefinitions = false;
    bool hasPictures = false;

    void Add(std::int64_t x, std::int64_t y) {
        minX = std::min(minX, x);
        minY = std::min(minY, y);
        maxX = std::max(maxX, x);
        maxY = std::max(maxY, y);
    }
    void Add(const BoxI& box) {
        Add(box.a.x, box.a.y);
        Add(box.b.x, box.b.y);
    }
    bool IsEmpty() const { return minX > maxX; }
};

// Coordinates are plotter units, y upward. All Append functions copy what they are given unless
// they say otherwise, and throw std::bad_alloc, the list then being what it was before. Counts are
// the caller's to check (not negative).
class DisplayList {
  public:
    DisplayList() = default;
    DisplayList(DisplayList&&) = default;
    DisplayList& operator=(DisplayList&&) = default;

    // Continues the last record when the line begins where that one ended.
    void AppendLine(PointI from, PointI to) {
        if (chainCount_ > 0 && chainCount_ < chain_.size() && words_ >= 2 &&
            chain_[chainCount_ - 1] == from) {
            words_ -= 2;
            chain_[chainCount_++] = to;
            return;
        }
        StartLines(from, to);
    }
    // AppendLine for every two neighbours.
    void AppendLines(PointSpan points);
    // AppendLine for every line of a letter's strokes, of which there is at least one; letters that
    // come back take 4 to 7 bytes each. `box` receives what lies around them.
    void AppendLetter(const Strokes& strokes, BoxI& box);
    void AppendRectangle(const BoxI& box, bool filled);
    void AppendCircle(PointI centre, std::int32_t radius, bool filled);
    void AppendArc(const ArcShape& arc);
    void AppendPolygon(PointSpan points, bool filled);
    void AppendPolyPolygon(const Rings& rings, bool filled);
    // `text` is UTF-8.
    void AppendText(const BoxI& box, std::string_view text);
    void AppendPicture(const BoxI& box, std::int32_t rasterOperation, ByteRun packedBitmap);
    // The same without a copy: the list keeps `packedBitmap`, which has `size` bytes.
    void AppendPicture(const BoxI& box, std::int32_t rasterOperation,
                       std::shared_ptr<const std::uint8_t> packedBitmap, std::size_t size);
    void DefineFillPattern(const FillPattern& pattern);
    void AppendClipRegion(PointSpan points);
    void EndClipRegion();
    // kDrawColour or kFillColour with 0x00BBGGRR.
    void AppendColour(RecordKind kind, std::uint32_t colour);
    // kLayer, kPen, kLineStyle, kLineWidth, kLineAttributes or kDrawMode.
    void AppendValue(RecordKind kind, std::int32_t value);
    // At most 0xFFFFFF lengths are kept.
    void AppendLineDash(const std::int32_t* lengths, std::size_t count);
    // `kind` is kept to 24 bits.
    void AppendFillStyle(std::int32_t kind, std::int32_t index);

    // Nothing to see: attributes, patterns and clip regions alone leave a list empty.
    bool IsEmpty() const { return !hasContent_; }
    // Memory that the records take.
    std::size_t UsedBytes() const;
    // Gives back the memory that was taken for further records; further records can follow all the
    // same. Throws std::bad_alloc, the list then holding what it did.
    void Finish();
    // Frees the records. IsEmpty goes on answering what it did.
    void DropRecords();

    // For the player. A record never spans two parts, and the points of a part do not depend on
    // those of another.
    struct Part {
        std::unique_ptr<std::uint8_t[]> bytes;
        std::size_t size = 0;    // of the records
        std::size_t packed = 0;  // bytes that hold them (packed_bytes.h); 0: they are not packed
        PartCover cover;
        DrawingStyle after;  // what holds behind it
    };
    const std::vector<Part>& Parts() const { return parts_; }
    const LetterShapes& Shapes() const { return shapes_; }
    // The records behind the parts, as the bytes of one more.
    std::vector<std::uint8_t> Rest() const;

  private:
    // Memory that is filled from the front.
    struct Block {
        std::unique_ptr<std::uint8_t[]> bytes;
        std::size_t size = 0;
        std::size_t used = 0;
    };

    // A letter filed as such, as long as a line that begins where it ends would continue its last
    // chain; it is then filed anew as lines.
    struct OpenLetter {
        std::uint32_t shape = LetterShapes::kNone;
        PointI at;
        PointI end;
        std::size_t offset = 0;  // of its record in open_
        PointI last;             // what last_ was before it
        std::size_t words = 0;   // and words_
    };

    void StartLines(PointI from, PointI to);
    // Lines go on where the last one ended, in the same chain.
    bool Continues(PointI from) const {
        return words_ >= 2 && chainCount_ > 0 && chain_[chainCount_ - 1] == from;
    }
    void AppendRuns(const Strokes& strokes);
    void ReopenLetter(PointI from);
    void EndLetter() { letter_.shape = LetterShapes::kNone; }
    void PutPicture(const BoxI& box, std::int32_t rasterOperation, ByteRun kept);
    void FlushChain();
    std::uint8_t* PutChainEnd(std::uint8_t* at, unsigned form) const;
    void EndChain();
    std::uint8_t* Room(std::size_t bytes);
    std::size_t PackOpen();
    void EndPart();
    void TakeWords(std::size_t words);
    std::uint8_t* NewRecord(RecordKind kind, unsigned flags, std::size_t words, std::size_t bytes);
    std::uint8_t* NewContent(RecordKind kind, unsigned flags, std::size_t words, std::size_t bytes);
    std::uint8_t* PutCoveredRun(std::uint8_t* at, PointSpan points);
    std::uint8_t* PutBox(std::uint8_t* at, const BoxI& box);
    const std::uint8_t* Keep(const void* data, std::size_t bytes);
    void EndRecord(const std::uint8_t* end) {
        open_.used = static_cast<std::size_t>(end - open_.bytes.get());
    }

    std::vector<Part> parts_;
    Block open_;                 // records that are not in a part yet
    Block packing_;              // room to pack them
    unsigned partsToLeave_ = 0;  // parts that are not tried, because one before them did not pack
    std::vector<Block> kept_;    // what readers may keep a pointer to
    std::vector<std::shared_ptr<const std::uint8_t>> pictures_;  // the same, not copied
    std::size_t usedBytes_ = 0;                                  // of parts_, kept_ and pictures_
    PartCover cover_;                                            // of open_
    DrawingStyle style_;  // what holds behind the last record
    PointI last_;         // the last point in open_
    LetterShapes shapes_;
    OpenLetter letter_;

    // The chain of lines that the next one may continue: the points of its last block and the one
    // in front of them. None: chainCount_ is 0.
    std::array<PointI, 1 + kBlockPoints> chain_;
    std::size_t chainCount_ = 0;
    bool chainBegun_ = false;  // open_ holds its first blocks

    // Where a chain of lines is cut in two shows in what is written of it, by the ends of dashes
    // for one. So this rule must not change: records take words of a supply, and a chain ends with
    // the supply.
    std::size_t words_ = 0;
    std::size_t supplies_ = 0;  // so far
    bool hasContent_ = false;
};

}  // namespace qm
