// qmfilter/plot.h: opens HP-GL, HP-GL/2 and HP-RTL plots and hands out their pages, primitive by
// primitive, for programs that embed the filter and have no document engine of their own. Link the
// CMake target QmFilter::qmfilter or the pkg-config module qmfilter.
//
//   const qmfilter::Plot plot = qmfilter::Plot::Open("plan.plt");
//   for (const qmfilter::Page& page : plot.Pages()) page.Draw(visitor);
//
// Texts are UTF-8. Coordinates are plotter units, y upward, Page::UnitsPerInch() to the inch.
// Colours are 0x00BBGGRR. Plots can be opened on several threads at once; a plot and its pages are
// used by one thread at a time. Every function that is not noexcept may throw std::bad_alloc. Test:
// tests/embed/.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace qmfilter {

enum class Status {
    kUnreadable,  // the file cannot be read
    kNoPlot,      // the bytes are no plot file
    kAborted,     // the progress function answered false
    kInternal     // something else went wrong; the message tells the status code
};

class PlotError : public std::runtime_error {
  public:
    PlotError(Status status, const std::string& message)
        : std::runtime_error(message), status_(status) {}
    Status Reason() const noexcept { return status_; }

  private:
    Status status_;
};

struct Point {
    std::int32_t x = 0;
    std::int32_t y = 0;
};

// Two opposite corners, in no given order.
struct Box {
    Point a;
    Point b;
};

// A run of items in memory that stays as it is until the call that passes the run has returned.
template <typename T>
struct Span {
    const T* data = nullptr;
    std::size_t size = 0;

    const T* begin() const noexcept { return data; }
    const T* end() const noexcept { return data + size; }
    const T& operator[](std::size_t i) const noexcept { return data[i]; }
};

// What holds for the primitive at hand.
struct Style {
    std::int32_t pen = 0;
    std::int32_t layer = 0;
    std::uint32_t drawColour = 0;
    std::uint32_t fillColour = 0;
    // 0 solid, 1 dashed, 2 dotted, 3 dash-dot, 4 dash-dot-dot; anything else counts as solid.
    std::int32_t lineStyle = 0;
    Span<std::int32_t>
        dash;  // lengths of dash, gap, dash, ... in plotter units; empty: see lineStyle
    std::int32_t lineWidth = 0;  // plotter units; 0 is the thinnest line of the device
    std::int32_t lineAttributes =
        0;                       // 0x200 butt, 0x100 square, else round ends; 0x1000 bevel joins
    std::int32_t drawMode = 13;  // binary raster operation: 9 mask pen, 13 copy pen
    std::int32_t fillKind = 0;   // 0 solid, 3 pattern number fillIndex
    std::int32_t fillIndex = 0;
};

// Angles in degrees, counter-clockwise from +x; a negative span runs clockwise.
struct ArcShape {
    Point centre;
    std::int32_t radiusX = 0;
    std::int32_t radiusY = 0;
    float start = 0.0F;
    float span = 0.0F;
};

// `height` rows of one bit a pixel, most significant bit first, a row padded to an even number of
// bytes. A set bit leaves the paper free, a clear bit is ink.
struct Pattern {
    std::int32_t index = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    Span<std::uint8_t> bits;
};

// Receives the primitives of a page in drawing order. Every method does nothing unless it is
// overridden; what it throws passes through Page::Draw.
class Visitor {
  public:
    virtual ~Visitor();

    // Lines that continue each other, points[0] to points[1] to points[2] ...; at least two points.
    virtual void Lines(const Style& style, Span<Point> points);
    virtual void Rectangle(const Style& style, const Box& box, bool filled);
    virtual void Circle(const Style& style, Point centre, std::int32_t radius, bool filled);
    virtual void Arc(const Style& style, const ArcShape& arc);
    // Not filled: an open polyline, closed only when the last point repeats the first.
    virtual void Polygon(const Style& style, Span<Point> points, bool filled);
    // One area of several rings; their points stand one behind the other, lengths[i] belong to ring
    // i.
    virtual void PolyPolygon(const Style& style, Span<std::int32_t> lengths, Span<Point> points,
                             bool filled);
    // A label's text, to search for, and the box of its strokes, which come as lines besides. A
    // label without strokes has an inverted box.
    virtual void Text(const Style& style, const Box& box, std::string_view text);
    // A packed bitmap: a BITMAPINFOHEADER, its colour table and its rows. Check it before use: a
    // plot can hold anything.
    virtual void Picture(const Style& style, const Box& box, std::int32_t rasterOperation,
                         Span<std::uint8_t> bitmap);
    // Comes before the first primitive that is filled with it.
    virtual void DefinePattern(const Pattern& pattern);
    virtual void ClipRegion(Span<Point> corners);
    virtual void EndClipRegion();
};

// A pen of a page; plots have one layer a pen.
struct Layer {
    std::int32_t number = 0;
    std::string name;
    std::uint32_t colour = 0;
    bool visible = true;
};

// What stands in a page's attributes; numbers are printed, objects left out.
struct Attribute {
    std::string name;
    std::string value;
};

struct TextItem {
    std::string text;
    Box box;
};

// Plotter units.
struct Extent {
    double minX = 0.0;
    double minY = 0.0;
    double maxX = 0.0;
    double maxY = 0.0;
    bool empty = true;  // nothing visible is on the page
};

// A finished page. Copies share its contents, which live as long as one of them.
class Page {
  public:
    std::string Name() const;              // "Page 1"; numbers may skip
    double UnitsPerInch() const noexcept;  // 1016 for plots
    double Rotation()
        const noexcept;  // degrees counter-clockwise by which to show it turned; mostly 0
    std::vector<Layer> Layers() const;
    std::vector<Attribute> Attributes() const;
    std::vector<TextItem> Texts() const;
    // What is drawn, pen widths included, not turned.
    Extent DrawnExtent() const;
    // Calls `visitor` for every primitive, in drawing order.
    void Draw(Visitor& visitor) const;

    class Impl;
    explicit Page(std::shared_ptr<const Impl> impl) noexcept;

  private:
    std::shared_ptr<const Impl> impl_;
};

// Told 0 to 100 while a plot is read; false stops the reading. May be empty, must not throw.
using Progress = std::function<bool(int percent)>;

// What a plot's commands mean: what the document engine makes of them, oddities included, or what a
// plotter draws.
enum class Reading { kEngine, kPlotter };

// What is in the plotter of Reading::kPlotter when a plot gives no size of its own: millimetres, 10
// to 10000, either side first. Without them (and for other sizes) A4 with the margins of a desktop
// plotter.
struct Sheet {
    double width = 0.0;
    double height = 0.0;
};

class Plot {
  public:
    // Reads the whole plot at `path` (also a zip archive that holds a plan.prn). Throws PlotError.
    static Plot Open(const std::string& path, const Progress& progress = {},
                     Reading reading = Reading::kEngine, const Sheet& sheet = {});
    // The same for bytes in memory, which are copied; no archives. Throws PlotError.
    static Plot FromBytes(std::string_view bytes, const Progress& progress = {},
                          Reading reading = Reading::kEngine, const Sheet& sheet = {});

    // "HPGL/2" or "Nemetschek Allplan".
    const std::string& Format() const noexcept { return format_; }
    // None when nothing is drawn.
    const std::vector<Page>& Pages() const noexcept { return pages_; }

  private:
    Plot() = default;

    std::string format_;
    std::vector<Page> pages_;
};

}  // namespace qmfilter
