// VectorBlockPusher: plays a drawing into the vector sink of a save component.
//
//   VectorBlockPusher pusher(*sink, QuarterTurn{});
//   Play(page.Drawing(), pusher);
//   pusher.Finish();
//   if (SUCCEEDED(pusher.Status())) ... pusher.Pictures() ...
//
// Colours, pens and the like go out with the first primitive that shows them, so that changes which
// nothing is drawn with leave no trace in the file. What comes back when such a file is opened is
// pushed as it was: outlines that continue each other go out as one without repeated points, arcs
// as the points that a sink would make of them, widths as they are read again, and of an area
// neither the dot nor the last point that the sink adds itself. What a vector sink has no method or
// no text for (searchable texts, clip regions, line ends, dashes of the plot's own) stays behind;
// see docs/unsupported.md. Test: tests/host/document_walker_test.cpp.
#pragma once

#include <qmfilter.h>

#include <cstdint>
#include <optional>
#include <vector>

#include "host/display_list_player.h"

namespace qm {

// A turn about the origin by quarters of a full turn, counter-clockwise: 0 to 3. Coordinates wrap.
struct QuarterTurn {
    int quarters = 0;

    float Degrees() const { return 90.0F * static_cast<float>(quarters); }
    PointI operator()(PointI point) const;
    // Exact for multiples of 90 degrees, which are all that plots ask for; others are not turned.
    static QuarterTurn Of(double degrees);
};

// A picture of the drawing as the host was given it; the bytes belong to the display list.
struct PagePicture {
    BoxI box;
    ByteRun packedBitmap;
};

class VectorBlockPusher final : public DisplayListVisitor {
  public:
    // Everything is sent turned by `turn`. `sink` must outlive the pusher.
    VectorBlockPusher(IQmSaveVectorData& sink, QuarterTurn turn) : sink_(sink), turn_(turn) {}

    // The sink's first failure, behind which nothing more was sent; else S_OK.
    HRESULT Status() const { return status_; }
    // What the sink does not take: the pictures met so far, in drawing order.
    const std::vector<PagePicture>& Pictures() const { return pictures_; }

    // To be called at the end.
    void Finish() { FlushPath(); }

    // Two points go out as a line, more as an open polygon: half as long a text, and dashes go on
    // from one line to the next.
    void Lines(const DrawingStyle& style, PointSpan points) override;
    void Rectangle(const DrawingStyle& style, const BoxI& box, bool filled) override;
    void Circle(const DrawingStyle& style, PointI centre, std::int32_t radius,
                bool filled) override;
    void Arc(const DrawingStyle& style, const ArcShape& arc) override;
    void Polygon(const DrawingStyle& style, PointSpan points, bool filled) override;
    void PolyPolygon(const DrawingStyle& style, const Rings& rings, bool filled) override;
    void Picture(const DrawingStyle& style, const BoxI& box, std::int32_t rasterOperation,
                 ByteRun packedBitmap) override;
    // Patterns without all of their bits stay behind; their areas come out as the plotter likes.
    void Pattern(const FillPattern& pattern) override;

  private:
    template <typename... Parameters, typename... Arguments>
    void Push(HRESULT (STDMETHODCALLTYPE IQmSaveVectorData::*method)(Parameters...),
              Arguments... arguments);
    // What the sink knows.
    struct Sent {
        std::optional<LONG> drawMode;
        std::optional<LONG> layer;
        std::optional<LONG> lineStyle;
        std::optional<LONG> pen;
        std::optional<std::uint32_t> colour;
        std::optional<LONG> lineWidth;
        std::optional<LONG> fillKind;
        std::optional<LONG> fillIndex;
    };

    // What the sink has to know for a primitive.
    Sent Wanted(const DrawingStyle& style, bool filled) const;
    bool Knows(const Sent& wanted) const;
    // Tells the sink what has changed since the last primitive.
    void Select(const Sent& wanted);

    // Of an outline: its look, then its points as the sink gets them.
    void BeginOutline(const DrawingStyle& style);
    void AddPoint(PointI point);
    void SendPath();
    void FlushPath();
    // Adds a ring to the area at hand, unless there is nothing in it to fill.
    void AddRing(PointSpan points);
    void SendArea(const DrawingStyle& style);

    IQmSaveVectorData& sink_;
    QuarterTurn turn_;
    HRESULT status_ = S_OK;
    Sent sent_;
    std::vector<PagePicture> pictures_;
    std::vector<PointI> path_;  // of the outline at hand, not sent yet
    bool pathGoesOn_ = false;   // its first point is the last one that was sent
    bool begins_ = false;       // the next point is the first of an outline
    std::vector<PointI> area_;  // rings of the area at hand, one behind the other
    std::vector<LONG> rings_;   // their lengths
};

}  // namespace qm
