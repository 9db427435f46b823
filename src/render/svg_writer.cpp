// See svg_writer.h.
#include "render/svg_writer.h"

#include <algorithm>

#include "platform/text.h"
#include "render/base64_sink.h"
#include "render/document_info.h"
#include "render/fill_pattern.h"
#include "render/png_writer.h"

namespace qm {

namespace {

// Some programs draw very long paths slowly.
constexpr std::size_t kMaxPathPoints = 10000;
// Above this, one pass over the list for each layer would take too long.
constexpr std::size_t kMaxGroupedLayers = 64;

std::string LabelOf(const PageSource& page, std::int32_t number) {
    if (page.layers != nullptr) {
        for (const PageLayer& layer : *page.layers) {
            if (layer.number == number) return WideToUtf8(layer.name);
        }
    }
    return "Layer no.: " + std::to_string(number);
}

bool IsHidden(const PageSource& page, std::int32_t number) {
    return page.layers != nullptr &&
           std::any_of(page.layers->begin(), page.layers->end(), [=](const PageLayer& layer) {
               return layer.number == number && !layer.visible;
           });
}

// Plots send a pen's attributes again and again without changing them.
bool SameStroke(const DrawingStyle& a, const DrawingStyle& b) {
    return a.layer == b.layer && a.drawColour == b.drawColour && a.lineWidth == b.lineWidth &&
           a.lineStyle == b.lineStyle && a.dash == b.dash && a.dashCount == b.dashCount &&
           a.lineAttributes == b.lineAttributes && a.drawMode == b.drawMode;
}

}  // namespace

void SvgWriter::WriteMatrix(const Matrix& m) {
    out_ << " transform=\"matrix(" << m.a << ' ' << m.b << ' ' << m.c << ' ' << m.d << ' ' << m.e
         << ' ' << m.f << ")\"";
}

void SvgWriter::WriteInformation() {
    const std::string title = TitleOf(options_.title, page_.name);
    if (!title.empty()) (out_ << "<title>").Escaped(title) << "</title>\n";
    out_ << "<metadata><rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\" "
            "xmlns:dc=\"http://purl.org/dc/elements/1.1/\"><rdf:Description rdf:about=\"\"";
    out_ << " dc:creator=\"" << kCreator << '"';
    if (const auto date = SourceDate()) out_ << " dc:date=\"" << DateText(*date) << '"';
    out_ << "/></rdf:RDF></metadata>\n";
}

void SvgWriter::Begin() {
    out_ << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<svg xmlns=\"http://www.w3.org/2000/svg\" "
            "xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
            "xmlns:inkscape=\"http://www.inkscape.org/namespaces/inkscape\" width=\""
         << frame_.WidthMillimetres() << "mm\" height=\"" << frame_.HeightMillimetres()
         << "mm\" viewBox=\"0 0 " << frame_.width << ' ' << frame_.height << "\">\n";
    WriteInformation();
    // Pens of width 0: on a screen a dot of it whatever the scale; programs that do not know how
    // skip what @supports guards.
    out_ << "<style>.h{stroke-width:"
         << options_.hairlineMillimetres / kMillimetresPerInch * frame_.unitsPerInch
         << "}@media screen{@supports(vector-effect:non-scaling-stroke)"
            "{.h{stroke-width:1px;vector-effect:non-scaling-stroke}}}</style>\n";
    if (options_.background.kind == Background::Kind::kColour) {
        out_ << "<rect width=\"100%\" height=\"100%\" fill=\"";
        out_.Colour(options_.background.colour) << "\"/>\n";
    }
}

void SvgWriter::Body(std::optional<std::int32_t> layer) {
    onlyLayer_ = layer;
    Play(*page_.drawing, *this);
    LeaveGroup();
}

void SvgWriter::End() { out_ << "</svg>\n"; }

// ------------------------------------------------------------------------------------------ groups

std::string SvgWriter::GroupId(std::int32_t layer) {
    const int count = ++groupsOfLayer_[layer];
    std::string id = "pen" + std::to_string(layer);
    if (count > 1) id += '-' + std::to_string(count);
    return id;
}

void SvgWriter::EnterGroup(const DrawingStyle& style) {
    if (openLayer_ == style.layer) return;
    LeaveGroup();
    openLayer_ = style.layer;
    base_ = {style.drawColour, std::max(style.lineWidth, 0)};
    out_ << "<g id=\"" << GroupId(style.layer)
         << "\" inkscape:groupmode=\"layer\" inkscape:label=\"";
    out_.Escaped(LabelOf(page_, style.layer)) << '"';
    if (IsHidden(page_, style.layer)) out_ << " style=\"display:none\"";
    WriteMatrix(frame_.toSheet);
    out_ << " fill=\"none\" fill-rule=\"evenodd\" stroke-linecap=\"round\" "
            "stroke-linejoin=\"round\" stroke=\"";
    out_.Colour(base_.colour) << "\" stroke-width=\"" << base_.width << "\">\n";
    if (clipped_) out_ << "<g clip-path=\"url(#clip" << clips_ << ")\">\n";
}

void SvgWriter::LeaveGroup() {
    ClosePath();
    if (!openLayer_) return;
    if (clipped_) out_ << "</g>\n";
    out_ << "</g>\n";
    openLayer_.reset();
}

void SvgWriter::ClipRegion(PointSpan points) {
    EndClipRegion();
    LeaveGroup();
    out_ << "<clipPath id=\"clip" << ++clips_ << "\"><path d=\"";
    path_.Start();
    path_.Polyline(points, true);
    out_ << "\"/></clipPath>\n";
    clipped_ = true;
}

void SvgWriter::EndClipRegion() {
    if (!clipped_) return;
    LeaveGroup();
    clipped_ = false;
}

// ------------------------------------------------------------------------------------------- style

void SvgWriter::WriteBlend(Blend blend) {
    switch (blend) {
        case Blend::kDarken:
            out_ << " style=\"mix-blend-mode:darken\"";
            break;
        case Blend::kLighten:
            out_ << " style=\"mix-blend-mode:lighten\"";
            break;
        case Blend::kDifference:
            out_ << " style=\"mix-blend-mode:difference\"";
            break;
        default:
            break;
    }
}

void SvgWriter::WriteStroke(const DrawingStyle& style, bool dot) {
    if (style.drawColour != base_.colour) (out_ << " stroke=\"").Colour(style.drawColour) << '"';
    if (style.lineWidth <= 0) {
        out_ << " class=\"h\"";
    } else if (style.lineWidth != base_.width) {
        out_ << " stroke-width=\"" << style.lineWidth << '"';
    }
    const LineCap cap = dot ? LineCap::kRound : CapOf(style.lineAttributes);
    if (cap != LineCap::kRound) {
        out_ << " stroke-linecap=\"" << (cap == LineCap::kButt ? "butt\"" : "square\"");
    }
    if (JoinOf(style.lineAttributes) == LineJoin::kBevel) out_ << " stroke-linejoin=\"bevel\"";
    if (!dot) {
        const char* separator = " stroke-dasharray=\"";
        const std::vector<double> dashes = DashesOf(style);
        for (const double length : dashes) {
            out_ << separator << length;
            separator = " ";
        }
        if (!dashes.empty()) out_ << '"';
    }
    WriteBlend(BlendOfDrawMode(style.drawMode));
}

void SvgWriter::WriteFill(const DrawingStyle& style) {
    const std::string pattern = PatternId(style);
    if (pattern.empty()) {
        (out_ << " fill=\"").Colour(style.fillColour) << '"';
    } else {
        out_ << " fill=\"url(#" << pattern << ")\"";
    }
    out_ << " stroke=\"none\"";
    WriteBlend(BlendOfDrawMode(style.drawMode));
}

void SvgWriter::EnsurePath(const DrawingStyle& style, bool dot) {
    const bool fits = dot == pathIsDots_ && path_.Points() <= kMaxPathPoints &&
                      (!styleChanged_ || SameStroke(style, pathStyle_));
    styleChanged_ = false;
    if (!fits) ClosePath();
    if (pathOpen_) return;
    EnterGroup(style);
    out_ << "<path";
    WriteStroke(style, dot);
    out_ << " d=\"";
    path_.Start();
    pathOpen_ = true;
    pathIsDots_ = dot;
    pathStyle_ = style;
}

void SvgWriter::ClosePath() {
    if (pathOpen_) out_ << "\"/>\n";
    pathOpen_ = false;
}

void SvgWriter::BeginElement(const DrawingStyle& style, std::string_view name) {
    ClosePath();
    EnterGroup(style);
    out_ << '<' << name;
}

// ------------------------------------------------------------------------------------------ shapes

void SvgWriter::Lines(const DrawingStyle& style, PointSpan points) {
    if (Skips(style) || points.count == 0) return;
    EnsurePath(style, IsDot(points));
    const bool closed = points.count > 2 && points[0] == points[points.count - 1];
    path_.Polyline({points.data, points.count - (closed ? 1 : 0)}, closed);
}

void SvgWriter::Rectangle(const DrawingStyle& style, const BoxI& box, bool filled) {
    if (Skips(style)) return;
    if (!filled) {
        EnsurePath(style, false);
        path_.Rectangle(box);
        return;
    }
    PatternId(style);  // the pattern's definition must not stand inside the element
    BeginElement(style, "rect x=\"");
    const auto [low, high] = Ordered(box);
    out_ << low.x << "\" y=\"" << low.y << "\" width=\"" << std::int64_t{high.x} - low.x
         << "\" height=\"" << std::int64_t{high.y} - low.y << '"';
    WriteFill(style);
    out_ << "/>\n";
}

void SvgWriter::Circle(const DrawingStyle& style, PointI centre, std::int32_t radius, bool filled) {
    if (Skips(style)) return;
    if (filled) PatternId(style);
    BeginElement(style, "circle cx=\"");
    out_ << centre.x << "\" cy=\"" << centre.y << "\" r=\"" << std::abs(std::int64_t{radius})
         << '"';
    if (filled) {
        WriteFill(style);
    } else {
        WriteStroke(style, false);
    }
    out_ << "/>\n";
}

void SvgWriter::Arc(const DrawingStyle& style, const ArcShape& arc) {
    if (Skips(style)) return;
    if (!IsWholeEllipse(arc)) {
        EnsurePath(style, false);
        path_.Arc(arc);
        return;
    }
    BeginElement(style, "ellipse cx=\"");
    out_ << arc.centre.x << "\" cy=\"" << arc.centre.y << "\" rx=\""
         << std::abs(std::int64_t{arc.radiusX}) << "\" ry=\"" << std::abs(std::int64_t{arc.radiusY})
         << '"';
    WriteStroke(style, false);
    out_ << "/>\n";
}

void SvgWriter::Polygon(const DrawingStyle& style, PointSpan points, bool filled) {
    if (!filled) return Lines(style, points);
    const auto length = static_cast<std::int32_t>(points.count);
    PolyPolygon(style, {&length, 1, points}, true);
}

void SvgWriter::PolyPolygon(const DrawingStyle& style, const Rings& rings, bool filled) {
    if (Skips(style) || rings.points.count == 0) return;
    const PointI* ring = rings.points.data;
    if (filled) {
        PatternId(style);
        BeginElement(style, "path");
        WriteFill(style);
        out_ << " d=\"";
        path_.Start();
    }
    for (std::size_t i = 0; i < rings.count; ++i) {
        const auto count = static_cast<std::size_t>(rings.lengths[i]);
        if (filled) {
            // The closing command draws the last line itself.
            const bool repeats = count > 1 && ring[0] == ring[count - 1];
            path_.Polyline({ring, count - (repeats ? 1 : 0)}, true);
        } else {
            Lines(style, {ring, count});
        }
        ring += count;
    }
    if (filled) out_ << "\"/>\n";
}

void SvgWriter::Text(const DrawingStyle& style, const BoxI& box, std::string_view text) {
    const TextPlace place = PlaceOfText(box, text);
    if (!place.shown || (onlyLayer_ && style.layer != *onlyLayer_)) return;
    BeginElement(style, "text");
    WriteMatrix(place.toDrawing);
    out_ << " font-size=\"" << place.fontSize << "\" textLength=\"" << place.length
         << "\" lengthAdjust=\"spacingAndGlyphs\" opacity=\"0\" xml:space=\"preserve\">";
    out_.Escaped(text) << "</text>\n";
}

void SvgWriter::Picture(const DrawingStyle& style, const BoxI& box, std::int32_t rasterOperation,
                        ByteRun bitmap) {
    const auto view = PackedBitmapView::Parse(bitmap.data, bitmap.size);
    const Blend blend = BlendOfPicture(rasterOperation);
    if (!view || blend == Blend::kNone || (onlyLayer_ && style.layer != *onlyLayer_)) return;
    BeginElement(style, "image width=\"");
    const auto [low, high] = Ordered(box);
    out_ << std::int64_t{high.x} - low.x << "\" height=\"" << std::int64_t{high.y} - low.y
         << "\" preserveAspectRatio=\"none\"";
    WriteMatrix({1.0, 0.0, 0.0, -1.0, static_cast<double>(low.x), static_cast<double>(high.y)});
    WriteBlend(blend);
    out_ << " xlink:href=\"data:image/png;base64,";
    Base64Sink base64(out_);
    WritePicture(*view, page_.whiteIsClear && PictureIsClear(rasterOperation), base64);
    base64.Finish();
    out_ << "\"/>\n";
}

// ---------------------------------------------------------------------------------------- patterns

std::string SvgWriter::PatternId(const DrawingStyle& style) {
    if (style.fillKind != kFillKindPattern) return {};
    const auto found = patterns_.find(style.fillIndex);
    if (found == patterns_.end() || !IsDrawable(found->second)) return {};
    // The bits' address tells redefinitions of one index apart.
    const auto key = reinterpret_cast<std::uintptr_t>(found->second.bits.data);
    const std::string id = "p" + std::to_string(style.fillIndex) + '-' +
                           std::to_string(style.fillColour) + '-' + std::to_string(key);
    const auto [known, isNew] = patternIds_.emplace(id, patternIds_.size() + 1);
    if (isNew && patternRuns_ > kMaxPatternRuns) known->second = 0;
    if (known->second == 0) return {};
    std::string name = "pattern" + std::to_string(known->second);
    if (isNew) DefinePattern(name, found->second, style.fillColour);
    return name;
}

void SvgWriter::DefinePattern(const std::string& id, const FillPattern& pattern,
                              std::uint32_t colour) {
    ClosePath();
    out_ << "<pattern id=\"" << id << "\" width=\"" << pattern.width << "\" height=\""
         << pattern.height << "\" patternUnits=\"userSpaceOnUse\" patternTransform=\"matrix("
         << kPatternDotUnits << " 0 0 " << -kPatternDotUnits
         << " 0 0)\"><path stroke=\"none\" fill=\"";
    out_.Colour(colour) << "\" d=\"";
    path_.Start();
    ForEachInkRun(pattern, [&](std::int32_t x, std::int32_t y, std::int32_t length) {
        out_ << 'M' << x << ' ' << y << 'h' << length << "v1h" << -length << 'z';
        ++patternRuns_;
    });
    out_ << "\"/></pattern>\n";
}

// ---------------------------------------------------------------------------------------- the page

void WriteSvg(const PageSource& page, const PageOptions& options, OutputSink& sink) {
    const PageSummary summary = Summarise(*page.drawing);
    const PageFrame frame = FrameOf(page, summary.extent, options);
    TextBuffer out(sink);
    SvgWriter writer(page, frame, options, out);
    writer.Begin();
    if (summary.orderShows || summary.layers.size() > kMaxGroupedLayers) {
        writer.Body(std::nullopt);
    } else {
        for (const std::int32_t layer : summary.layers) writer.Body(layer);
    }
    writer.End();
    out.Flush();
    if (writer.PatternRuns() > SvgWriter::kMaxPatternRuns && options.note) {
        options.note((page.name.empty() ? "the page" : page.name) +
                     " has too many fill patterns in too many colours; some areas are solid");
    }
}

}  // namespace qm
