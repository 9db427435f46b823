// See page_tables.h.
#include "render/dxf/page_tables.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "common/colour.h"
#include "common/numbers.h"
#include "render/fill_pattern.h"
#include "render/line_look.h"

namespace qm::dxf {

namespace {

std::int64_t Rounded(double value) { return TruncateToInt64(std::floor(value + 0.5)); }

// The weights that the format knows (group code 370); no others are allowed.
int WeightOf(double hundredths) {
    constexpr int kWeights[] = {0,  5,  9,  13, 15, 18,  20,  25,  30,  35,  40,  50,
                                53, 60, 70, 80, 90, 100, 106, 120, 140, 158, 200, 211};
    return *std::min_element(std::begin(kWeights), std::end(kWeights), [=](int a, int b) {
        return std::abs(a - hundredths) < std::abs(b - hundredths);
    });
}

// Programs refuse line types of more elements.
constexpr std::size_t kMaxElements = 12;

}  // namespace

bool operator==(const Look& a, const Look& b) {
    return a.layer == b.layer && a.colour == b.colour && a.weight == b.weight &&
           a.lineType == b.lineType;
}

Placement::Placement(const PageSource& page, const Extent& extent)
    : scale_(kMillimetresPerInch * kPartsPerMillimetre / page.unitsPerInch), turn_(page.rotation) {
    PageOptions bare;
    bare.marginMillimetres = 0.0;
    const PageFrame frame = FrameOf(page, extent, bare);
    const Matrix& m = frame.toSheet;
    matrix_ = {m.a * scale_, -m.b * scale_, m.c * scale_, -m.d * scale_, 0.0, 0.0};
    if (page.rotation != 0.0) {
        matrix_.e = std::max(0.0, m.e) * scale_;
        matrix_.f = std::max(0.0, frame.height - m.f) * scale_;
    }
    const Position a = At(extent.minX, extent.minY);
    const Position b = At(extent.maxX, extent.maxY);
    low_ = {std::min(a.x, b.x), std::min(a.y, b.y)};
    high_ = {std::max(a.x, b.x), std::max(a.y, b.y)};
}

Position Placement::At(double x, double y) const {
    return {Rounded(matrix_.a * x + matrix_.c * y + matrix_.e),
            Rounded(matrix_.b * x + matrix_.d * y + matrix_.f)};
}

std::int64_t Placement::Length(double units) const { return Rounded(units * scale_); }

PageTables::PageTables(const PageSource& page, const Placement& placement)
    : page_(page), placement_(placement) {}

Look PageTables::Known(const Look& look) {
    const auto [layer, isNew] = layers_.emplace(look.layer, Layer{look, true});
    if (isNew && page_.layers != nullptr) {
        for (const PageLayer& known : *page_.layers) {
            if (known.number == look.layer) layer->second.visible = known.visible;
        }
    }
    return look;
}

Look PageTables::StrokeLook(const DrawingStyle& style) {
    constexpr double kPartsPerHundredth = kPartsPerMillimetre / 100.0;
    const double width =
        static_cast<double>(placement_.Length(std::max(style.lineWidth, 0))) / kPartsPerHundredth;
    return Known({style.layer, style.drawColour, WeightOf(width), LineTypeOf(style)});
}

Look PageTables::AreaLook(const DrawingStyle& style, std::uint32_t bgr) {
    return Known({style.layer, bgr, 0, 0});
}

// A gap of no length would be a dot, so it is left out: dashes on both its sides make one.
int PageTables::LineTypeOf(const DrawingStyle& style) {
    if (style.lineStyle == 0 && style.dashCount == 0) return 0;
    std::vector<std::int64_t> elements;
    bool gap = false;
    for (const double length : DashesOf(style)) {
        const std::int64_t parts = placement_.Length(length);
        if (!gap || parts > 0) elements.push_back(gap ? -parts : parts);
        gap = !gap;
    }
    if (elements.empty()) return 0;
    elements.resize(std::min(elements.size(), kMaxElements));
    return lineTypes_.emplace(std::move(elements), static_cast<int>(lineTypes_.size()) + 1)
        .first->second;
}

std::string LayerName(std::int32_t number) { return "Pen " + std::to_string(number); }

std::string LineTypeName(int number) {
    return number == 0 ? "Continuous" : "Plot " + std::to_string(number);
}

std::uint32_t AreaColour(const DrawingStyle& style,
                         const std::map<std::int32_t, FillPattern>& patterns) {
    if (style.fillKind != kFillKindPattern) return style.fillColour;
    const auto found = patterns.find(style.fillIndex);
    if (found == patterns.end() || !IsDrawable(found->second)) return style.fillColour;
    int ink = 0;
    ForEachInkRun(found->second, [&](std::int32_t, std::int32_t, std::int32_t run) { ink += run; });
    const int dots = found->second.width * found->second.height;
    const auto shade = [=](std::uint8_t byte) {
        return static_cast<std::uint8_t>((byte * ink + 255 * (dots - ink)) / dots);
    };
    const Colour colour = Colour::FromBgr(style.fillColour);
    return Colour{shade(colour.red), shade(colour.green), shade(colour.blue)}.ToBgr();
}

}  // namespace qm::dxf
