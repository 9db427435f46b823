// DisplayList: the content of one drawing block as a compact list of records, in drawing order.
//
// A plot can hold tens of millions of lines, so a record is a few 32-bit words in large chunks of
// memory: lines that continue each other share one record and cost 8 bytes each, a single line
// costs 20, an attribute change 4 or 8, a point of a polygon 8. The Append functions fill the list,
// Play (display_list_player.h) reads it. Test: tests/host/document_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

#include "common/geometry.h"

namespace qm {

// Kinds of records; the low byte of a record's first word. The other 24 bits are its `detail`.
enum class RecordKind : std::uint8_t {
    kLines,           // detail: points; x, y of each
    kRectangle,       // detail: filled; x1, y1, x2, y2
    kCircle,          // detail: filled; x, y, radius
    kArc,             // x, y, radius x, radius y, start and span as floats
    kPolygon,         // detail: filled; points, x, y of each
    kPolyPolygon,     // detail: filled; rings, points, points of each ring, x, y of each
    kText,            // x1, y1, x2, y2, bytes, UTF-8 text
    kPicture,         // x1, y1, x2, y2, raster operation, bytes, packed bitmap
    kFillPattern,     // index, width, height, bytes, rows
    kClipRegion,      // points, x, y of each
    kEndClipRegion,   //
    kDrawColour,      // detail: 0xBBGGRR
    kFillColour,      // detail: 0xBBGGRR
    kLayer,           // number
    kPen,             // number
    kLineStyle,       // code
    kLineWidth,       // plotter units
    kLineDash,        // detail: lengths; each length
    kLineAttributes,  // bits
    kDrawMode,        // mode
    kFillStyle        // detail: kind; index
};

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

// Coordinates are plotter units, y upward. All Append functions copy what they are given and throw
// std::bad_alloc, the list then being what it was before. Counts are the caller's to check (not
// negative).
class DisplayList {
  public:
    DisplayList() = default;
    DisplayList(DisplayList&&) = default;
    DisplayList& operator=(DisplayList&&) = default;

    // Continues the last record when the line begins where that one ended.
    void AppendLine(PointI from, PointI to) {
        if (chain_ != nullptr && end_ - next_ >= 2 && next_[-2] == from.x && next_[-1] == from.y) {
            next_[0] = to.x;
            next_[1] = to.y;
            next_ += 2;
            *chain_ += 1 << kDetailShift;
            return;
        }
        StartLines(from, to);
    }
    void AppendRectangle(const BoxI& box, bool filled);
    void AppendCircle(PointI centre, std::int32_t radius, bool filled);
    void AppendArc(const ArcShape& arc);
    void AppendPolygon(PointSpan points, bool filled);
    void AppendPolyPolygon(const Rings& rings, bool filled);
    // `text` is UTF-8.
    void AppendText(const BoxI& box, std::string_view text);
    void AppendPicture(const BoxI& box, std::int32_t rasterOperation, ByteRun packedBitmap);
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
    // Frees the records. IsEmpty goes on answering what it did.
    void DropRecords();

    static constexpr int kDetailShift = 8;

    // Words of the index-th chunk, for the player; a record never spans two chunks.
    struct Words {
        const std::int32_t* begin = nullptr;
        const std::int32_t* end = nullptr;
    };
    std::size_t ChunkCount() const { return chunks_.size(); }
    Words Chunk(std::size_t index) const;

  private:
    struct ChunkMemory {
        std::unique_ptr<std::int32_t[]> words;
        std::size_t used = 0;  // of a chunk that is no longer the last
    };

    void StartLines(PointI from, PointI to);
    // Room for a record of `words` words in all, its first word written; returns the second.
    std::int32_t* NewRecord(RecordKind kind, std::size_t detail, std::size_t words);
    std::int32_t* NewContent(RecordKind kind, std::size_t detail, std::size_t words) {
        std::int32_t* record = NewRecord(kind, detail, words);
        hasContent_ = true;
        return record;
    }
    void NewChunk(std::size_t words);

    std::vector<ChunkMemory> chunks_;
    std::int32_t* next_ = nullptr;   // behind the last record
    std::int32_t* end_ = nullptr;    // of the last chunk
    std::int32_t* chain_ = nullptr;  // the last record while it is one of lines
    bool hasContent_ = false;
};

}  // namespace qm
