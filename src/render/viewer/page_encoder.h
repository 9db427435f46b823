// PageEncoder: a display list as the compact data of a viewer page.
//
// The data is a sequence of blocks. A block is the lengths of its four columns (Unsigned), then the
// columns: records (kinds and counts), x and y (Signed differences to the point before, from 0 at
// the start of a block; sums wrap at 32 bits) and bytes (texts, patterns, floats). Columns of like
// numbers compress better than records one behind the other. src/viewer/decode.js reads it. Test:
// tests/render/viewer_test.cpp.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <unordered_map>

#include "host/display_list_player.h"
#include "render/output_sink.h"
#include "render/viewer/column.h"

namespace qm {

// First byte of a record and what follows in the column of records; "points" stand in x and y.
enum class ViewerRecord : std::uint8_t {
    kStyle,          // number; a number not used before is followed by the definition
    kLines,          // count; points
    kArea,           // rings, points of each ring; points. Filled by the even-odd rule
    kCircle,         // radius; centre
    kDisc,           // radius; centre. Filled
    kArc,            // centre and then radii as two points, start and span in bytes (floats)
    kText,           // bytes; two corners; UTF-8 in bytes
    kPicture,        // blend; two corners. Pictures are numbered as they come
    kPattern,        // width, height; rows in bytes (see FillPattern). Numbered as they come
    kClip,           // two corners of the region's box
    kEndClip,        //
    kLinesOfCount0,  // and above: lines of (byte - this) points
};

// Whether a picture is written: it is one, and its raster operation leaves something to see.
bool IsShownPicture(std::int32_t rasterOperation, ByteRun bitmap);

class PageEncoder final : public DisplayListVisitor {
  public:
    explicit PageEncoder(OutputSink& sink) : sink_(sink) {}

    // Writes the last block.
    void Finish();

    void Lines(const DrawingStyle& style, PointSpan points) override;
    void Rectangle(const DrawingStyle& style, const BoxI& box, bool filled) override;
    void Circle(const DrawingStyle& style, PointI centre, std::int32_t radius,
                bool filled) override;
    void Arc(const DrawingStyle& style, const ArcShape& arc) override;
    void Polygon(const DrawingStyle& style, PointSpan points, bool filled) override;
    void PolyPolygon(const DrawingStyle& style, const Rings& rings, bool filled) override;
    void Text(const DrawingStyle& style, const BoxI& box, std::string_view text) override;
    void Picture(const DrawingStyle& style, const BoxI& box, std::int32_t rasterOperation,
                 ByteRun bitmap) override;
    void Pattern(const FillPattern& pattern) override;
    void ClipRegion(PointSpan points) override;
    void EndClipRegion() override;
    void StyleChange(const DrawingStyle&, RecordKind) override { styleChanged_ = true; }
    void Progress(int percent) override;

    std::function<void(int percent)> progress;  // may be empty

  private:
    // False: the style draws nothing. Else the record's kind is written, its style before it.
    bool Begin(const DrawingStyle& style, ViewerRecord kind);
    void WriteKind(ViewerRecord kind) { records_.Byte(static_cast<std::uint8_t>(kind)); }
    void WriteStyle(const DrawingStyle& style);
    void WritePoint(PointI point);
    void WriteBox(const BoxI& box);
    void EndRecord();
    void WriteBlock();

    OutputSink& sink_;
    Column records_;
    Column x_;
    Column y_;
    Column bytes_;
    PointI at_;
    bool styleChanged_ = true;
    DrawingStyle lastStyle_;
    bool lastDraws_ = true;                                // lastStyle_ leaves ink
    std::unordered_map<std::string, std::size_t> styles_;  // by definition
    std::map<std::int32_t, std::size_t> patterns_;         // number + 1 by index
    std::size_t patternCount_ = 0;
};

}  // namespace qm
