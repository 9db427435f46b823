// Targets of the page writers and of saving; see targets.h.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "common/tool_error.h"
#include "export/save_filter.h"
#include "fuzz/components.h"
#include "fuzz/targets.h"
#include "host/document_walker.h"
#include "host/page_summary.h"
#include "host/source_and_events.h"
#include "platform/text.h"
#include "render/bitmap/page_bitmap.h"
#include "render/page_writers.h"
#include "render/viewer/viewer_writer.h"

namespace qm::fuzz {

namespace {

class NullSink final : public OutputSink {
  public:
    void Write(std::string_view) override {}
};

// So many dots an inch that the longer side has a hundred of them.
double SmallDpi(const PageSource& page) {
    constexpr double kDots = 100.0;
    constexpr double kLeast = 1e-6;  // coordinates reach as far as their 32 bits
    const Extent extent = Summarise(*page.drawing).extent;
    if (extent.empty) return 10.0;
    const double side = std::max({extent.Width(), extent.Height(), 1.0});
    return std::clamp(kDots * page.unitsPerInch / side, kLeast, 300.0);
}

PageOptions SmallPage(const PageSource& page) {
    PageOptions options;
    options.dpi = SmallDpi(page);
    options.marginMillimetres = 0.0;
    return options;
}

// `write` may refuse a page: it is too large, say.
template <typename Write>
void Quietly(Write&& write) {
    try {
        write();
    } catch (const ToolError&) {
    }
}

void WritePagePdf(const std::vector<PageSource>& pages) {
    NullSink sink;
    Quietly([&] { WritePdf(pages, PageOptions(), sink); });
}

void WritePageSvg(const PageSource& page) {
    NullSink sink;
    Quietly([&] { WriteSvg(page, PageOptions(), sink); });
}

void WritePagePng(const PageSource& page) {
    NullSink sink;
    PageOptions options = SmallPage(page);
    Quietly([&] { WritePng(page, options, sink); });
    options.smooth = false;
    Quietly([&] { WritePng(page, options, sink); });
}

void WriteViewerFile(std::vector<PageSource> pages) {
    NullSink sink;
    Quietly([&] { WriteViewer({"plot.plt", "HPGL/2", 1, std::move(pages)}, PageOptions(), sink); });
}

std::vector<PageSource> SourcesOf(const OpenedPlot& plot) {
    std::vector<PageSource> sources;
    for (const PlotPage& page : plot.pages) sources.push_back(SourceOf(page));
    return sources;
}

template <typename Filter>
void SaveTo(const OpenedPlot& plot, const PageDrawer& drawPage) {
    const auto filter = MakeObject<Filter>();
    const auto target =
        MakeObject<DataObject>(ComPtr<IStream>(MakeObject<NullStream>().Get()), std::wstring());
    Quietly([&] { SaveDocument(*filter.Get(), target.Get(), nullptr, plot.pages, drawPage); });
}

// ------------------------------------------------------------------------- Drawings out of bytes

// Hands out the input as numbers, zeros when there is nothing left.
class Numbers {
  public:
    explicit Numbers(std::string_view bytes) : bytes_(bytes) {}

    bool Over() const { return bytes_.empty(); }
    template <typename T>
    T Take() {
        T value{};
        const std::size_t count = std::min(sizeof value, bytes_.size());
        std::memcpy(&value, bytes_.data(), count);
        bytes_.remove_prefix(count);
        return value;
    }
    std::uint8_t Byte() { return Take<std::uint8_t>(); }
    // Mostly on the page, else anywhere.
    std::int32_t Coordinate() {
        const auto nearby = Take<std::int16_t>();
        return nearby == INT16_MAX ? Take<std::int32_t>() : nearby;
    }
    PointI Point() {
        const std::int32_t x = Coordinate();
        return {x, Coordinate()};
    }
    BoxI Box() {
        const PointI from = Point();
        return {from, Point()};
    }
    std::vector<PointI> Points(std::size_t count) {
        std::vector<PointI> points(count);
        for (PointI& point : points) point = Point();
        return points;
    }
    std::vector<std::uint8_t> Bytes(std::size_t count) {
        const auto* const data = reinterpret_cast<const std::uint8_t*>(bytes_.data());
        std::vector<std::uint8_t> bytes(data, data + std::min(count, bytes_.size()));
        bytes_.remove_prefix(bytes.size());
        return bytes;
    }

  private:
    std::string_view bytes_;
};

void AppendText(Numbers& in, DisplayList& list) {
    const BoxI box = in.Box();
    std::wstring text(in.Byte() % 16, L' ');
    for (wchar_t& letter : text) letter = static_cast<wchar_t>(in.Take<std::uint16_t>());
    list.AppendText(box, WideToUtf8(text));
}

void AppendPattern(Numbers& in, DisplayList& list) {
    FillPattern pattern;
    pattern.index = in.Byte();
    pattern.width = in.Byte() % 40 + 1;
    pattern.height = in.Byte() % 40 + 1;
    std::vector<std::uint8_t> bits = in.Bytes(in.Byte());
    bits.resize(pattern.RowBytes() * static_cast<std::size_t>(pattern.height));
    pattern.bits = {bits.data(), bits.size()};
    list.DefineFillPattern(pattern);
}

void AppendRings(Numbers& in, DisplayList& list) {
    std::vector<std::int32_t> lengths(in.Byte() % 4 + 1);
    std::int32_t count = 0;
    for (std::int32_t& length : lengths) count += length = in.Byte() % 8;
    const auto points = in.Points(static_cast<std::size_t>(count));
    list.AppendPolyPolygon({lengths.data(), lengths.size(), {points.data(), points.size()}},
                           in.Byte() % 2 != 0);
}

void AppendRecord(Numbers& in, DisplayList& list) {
    const auto kind =
        static_cast<RecordKind>(in.Byte() % (static_cast<int>(RecordKind::kFillStyle) + 1));
    switch (kind) {
        case RecordKind::kLines: {
            const PointI from = in.Point();
            return list.AppendLine(from, in.Point());
        }
        case RecordKind::kRectangle:
            return list.AppendRectangle(in.Box(), in.Byte() % 2 != 0);
        case RecordKind::kCircle: {
            const PointI centre = in.Point();
            const std::int32_t radius = in.Coordinate();
            return list.AppendCircle(centre, radius, in.Byte() % 2 != 0);
        }
        case RecordKind::kArc: {
            ArcShape arc;
            arc.centre = in.Point();
            arc.radiusX = in.Coordinate();
            arc.radiusY = in.Coordinate();
            arc.start = in.Take<float>();
            arc.span = in.Take<float>();
            return list.AppendArc(arc);
        }
        case RecordKind::kPolygon: {
            const auto points = in.Points(in.Byte() % 16);
            return list.AppendPolygon({points.data(), points.size()}, in.Byte() % 2 != 0);
        }
        case RecordKind::kPolyPolygon:
            return AppendRings(in, list);
        case RecordKind::kText:
            return AppendText(in, list);
        case RecordKind::kPicture: {
            const BoxI box = in.Box();
            const std::int32_t operation = in.Byte();
            const auto packed = in.Bytes(in.Byte());
            return list.AppendPicture(box, operation, {packed.data(), packed.size()});
        }
        case RecordKind::kFillPattern:
            return AppendPattern(in, list);
        case RecordKind::kClipRegion: {
            const auto points = in.Points(in.Byte() % 8);
            return list.AppendClipRegion({points.data(), points.size()});
        }
        case RecordKind::kEndClipRegion:
            return list.EndClipRegion();
        case RecordKind::kDrawColour:
        case RecordKind::kFillColour:
            return list.AppendColour(kind, in.Take<std::uint32_t>());
        case RecordKind::kLineDash: {
            std::vector<std::int32_t> lengths(in.Byte() % 8);
            for (std::int32_t& length : lengths) length = in.Coordinate();
            return list.AppendLineDash(lengths.data(), lengths.size());
        }
        case RecordKind::kFillStyle: {
            const std::int32_t fill = in.Byte() % 5;
            return list.AppendFillStyle(fill, in.Byte());
        }
        default:
            return list.AppendValue(kind, in.Coordinate());
    }
}

}  // namespace

void Svg(std::string_view plot) {
    const Session session;
    const OpenedPlot opened = Session::Open(plot);
    for (const PageSource& page : SourcesOf(opened)) WritePageSvg(page);
}

void Pdf(std::string_view plot) {
    const Session session;
    const OpenedPlot opened = Session::Open(plot);
    WritePagePdf(SourcesOf(opened));
}

void Png(std::string_view plot) {
    const Session session;
    const OpenedPlot opened = Session::Open(plot);
    for (const PageSource& page : SourcesOf(opened)) WritePagePng(page);
}

void Viewer(std::string_view plot) {
    const Session session;
    const OpenedPlot opened = Session::Open(plot);
    WriteViewerFile(SourcesOf(opened));
}

void Save(std::string_view plot) {
    const Session session;
    const OpenedPlot opened = Session::Open(plot);
    SaveTo<CQmFilterSaveHPGL>(opened, {});
    for (const int bits : {1, 8, 24}) {
        SaveTo<CQmFilterSaveHPRTL>(opened, [bits](const PlotPage& page, PictureSink& sink) {
            const PageSource source = SourceOf(page);
            DrawBitmap(source, SmallPage(source), bits, sink);
        });
    }
}

void Drawing(std::string_view bytes) {
    Numbers in(bytes);
    DisplayList list;
    while (!in.Over()) AppendRecord(in, list);
    PageSource page;
    page.drawing = &list;
    page.name = "Page 1";
    WritePageSvg(page);
    WritePagePdf({page});
    WritePagePng(page);
    WriteViewerFile({page});
}

}  // namespace qm::fuzz
