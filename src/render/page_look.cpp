// See page_look.h.
#include "render/page_look.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "common/colour.h"
#include "common/numbers.h"
#include "common/packed_bitmap.h"
#include "common/units.h"
#include "host/display_list_player.h"
#include "host/page_summary.h"

namespace qm {

namespace {

constexpr int kMostIndexedBits = 8;
constexpr int kTrueColourBits = 24;

// Weights of the components in lightness: ITU-R BT.601.
std::uint8_t Lightness(unsigned red, unsigned green, unsigned blue) {
    return static_cast<std::uint8_t>((299 * red + 587 * green + 114 * blue + 500) / 1000);
}

std::uint32_t GreyOf(std::uint32_t bgr) {
    const auto [red, green, blue] = Colour::FromBgr(bgr);
    const std::uint8_t grey = Lightness(red, green, blue);
    return Colour{grey, grey, grey}.ToBgr();
}

// The picture in shades of grey; empty for depths that have none.
std::vector<std::uint8_t> GreyPicture(const PackedBitmapView& picture) {
    const int bits = picture.Bits();
    const auto size = PackedBitmapSize(picture.Width(), picture.Height(), bits);
    if (!size || (bits > kMostIndexedBits && bits != kTrueColourBits)) return {};
    PaletteEntry palette[1 << kMostIndexedBits] = {};
    for (std::uint32_t i = 0; i < PackedColourCount(bits); ++i) {
        const PaletteEntry colour = picture.Colour(i);
        const std::uint8_t grey = Lightness(colour.red, colour.green, colour.blue);
        palette[i] = {grey, grey, grey, 0};
    }
    std::vector<std::uint8_t> packed(*size);
    std::uint8_t* const rows =
        WritePackedHeader(packed.data(), picture.Width(), picture.Height(), bits, palette);
    const auto stride = static_cast<std::size_t>(PackedStride(picture.Width(), bits));
    for (std::int32_t y = 0; y < picture.Height(); ++y) {
        std::uint8_t* const row =
            rows + stride * static_cast<std::size_t>(picture.Height() - 1 - y);
        std::memcpy(row, picture.RowFromTop(y), picture.RowBytes());
        for (std::size_t i = 0; bits == kTrueColourBits && i < picture.RowBytes(); i += 3) {
            std::fill_n(row + i, 3, Lightness(row[i + 2], row[i + 1], row[i]));
        }
    }
    return packed;
}

// How a look changes styles.
class StyleChanger {
  public:
    StyleChanger(const PageLook& look, double unitsPerInch)
        : look_(look), unitsPerMillimetre_(unitsPerInch / kMillimetresPerInch) {}

    bool Shows(std::int32_t pen) const {
        return look_.only.empty() ||
               std::any_of(look_.only.begin(), look_.only.end(), [pen](PenRange range) {
                   return pen >= range.first && pen <= range.last;
               });
    }
    std::uint32_t LineColour(std::int32_t pen, std::uint32_t colour) const {
        const PenLook given = Given(pen);
        if (given.colour) return *given.colour;
        return look_.mono && colour != kWhiteColour.ToBgr() ? 0 : colour;
    }
    DrawingStyle Changed(DrawingStyle style) const {
        const PenLook given = Given(style.layer);
        style.drawColour = LineColour(style.layer, style.drawColour);
        if (look_.mono) style.fillColour = GreyOf(style.fillColour);
        if (given.colour) style.fillColour = *given.colour;
        if (given.widthMillimetres) {
            style.lineWidth = Units(*given.widthMillimetres);
        } else if (style.lineWidth <= 0 && look_.lineWidthMillimetres) {
            style.lineWidth = Units(*look_.lineWidthMillimetres);
        }
        return style;
    }
    bool IsMono() const { return look_.mono; }

  private:
    PenLook Given(std::int32_t pen) const {
        const auto found = look_.pens.find(pen);
        return found == look_.pens.end() ? PenLook() : found->second;
    }
    std::int32_t Units(double millimetres) const {
        if (millimetres <= 0.0) return 0;
        return std::max(1, RoundToInt32(millimetres * unitsPerMillimetre_));
    }

    const PageLook& look_;
    double unitsPerMillimetre_;
};

// Writes a display list anew with the styles changed.
class Redrawer final : public DisplayListVisitor {
  public:
    Redrawer(const StyleChanger& changer, DisplayList& list) : changer_(changer), list_(list) {}

    void Lines(const DrawingStyle& style, PointSpan points) override {
        if (Take(style)) list_.AppendLines(points);
    }
    bool Letter(const DrawingStyle& style, const LetterRecord& letter) override {
        BoxI box;
        if (Take(style)) list_.AppendLetter(PlacedLetter(letter).All(), box);
        return true;
    }
    void Rectangle(const DrawingStyle& style, const BoxI& box, bool filled) override {
        if (Take(style)) list_.AppendRectangle(box, filled);
    }
    void Circle(const DrawingStyle& style, PointI centre, std::int32_t radius,
                bool filled) override {
        if (Take(style)) list_.AppendCircle(centre, radius, filled);
    }
    void Arc(const DrawingStyle& style, const ArcShape& arc) override {
        if (Take(style)) list_.AppendArc(arc);
    }
    void Polygon(const DrawingStyle& style, PointSpan points, bool filled) override {
        if (Take(style)) list_.AppendPolygon(points, filled);
    }
    void PolyPolygon(const DrawingStyle& style, const Rings& rings, bool filled) override {
        if (Take(style)) list_.AppendPolyPolygon(rings, filled);
    }
    void Text(const DrawingStyle& style, const BoxI& box, std::string_view text) override {
        if (Take(style)) list_.AppendText(box, text);
    }
    void Picture(const DrawingStyle& style, const BoxI& box, std::int32_t rasterOperation,
                 ByteRun bitmap) override {
        if (!Take(style)) return;
        std::vector<std::uint8_t> grey;
        if (changer_.IsMono()) {
            const auto view = PackedBitmapView::Parse(bitmap.data, bitmap.size);
            if (view) grey = GreyPicture(*view);
        }
        if (!grey.empty()) bitmap = {grey.data(), grey.size()};
        list_.AppendPicture(box, rasterOperation, bitmap);
    }
    void Pattern(const FillPattern& pattern) override { list_.DefineFillPattern(pattern); }
    void ClipRegion(PointSpan points) override { list_.AppendClipRegion(points); }
    void EndClipRegion() override { list_.EndClipRegion(); }
    // Also where nothing changes: a chain of lines ends here.
    void StyleChange(const DrawingStyle& style, RecordKind kind) override {
        if (changer_.Shows(style.layer)) Put(kind, changer_.Changed(style));
        isStale_ = true;
    }

  private:
    // Brings the list's style up to date; false: the pen is left out.
    bool Take(const DrawingStyle& style) {
        if (!isStale_) return isShown_;
        isStale_ = false;
        isShown_ = changer_.Shows(style.layer);
        if (isShown_) Become(changer_.Changed(style));
        return isShown_;
    }
    void Become(const DrawingStyle& next) {
        const auto put = [&](bool differs, RecordKind kind) {
            if (differs) Put(kind, next);
        };
        put(style_.pen != next.pen, RecordKind::kPen);
        put(style_.layer != next.layer, RecordKind::kLayer);
        put(style_.drawColour != next.drawColour, RecordKind::kDrawColour);
        put(style_.fillColour != next.fillColour, RecordKind::kFillColour);
        put(style_.lineWidth != next.lineWidth, RecordKind::kLineWidth);
        put(style_.lineAttributes != next.lineAttributes, RecordKind::kLineAttributes);
        put(style_.drawMode != next.drawMode, RecordKind::kDrawMode);
        put(style_.dash != next.dash || style_.dashCount != next.dashCount ||
                style_.lineStyle != next.lineStyle,
            next.dashCount > 0 ? RecordKind::kLineDash : RecordKind::kLineStyle);
        put(style_.fillKind != next.fillKind || style_.fillIndex != next.fillIndex,
            RecordKind::kFillStyle);
    }
    void Put(RecordKind kind, const DrawingStyle& next) {
        switch (kind) {
            case RecordKind::kDrawColour:
                return PutColour(kind, next.drawColour);
            case RecordKind::kFillColour:
                return PutColour(kind, next.fillColour);
            case RecordKind::kLayer:
                return PutValue(kind, next.layer);
            case RecordKind::kPen:
                return PutValue(kind, next.pen);
            case RecordKind::kLineStyle:
                return PutValue(kind, next.lineStyle);
            case RecordKind::kLineWidth:
                return PutValue(kind, next.lineWidth);
            case RecordKind::kLineAttributes:
                return PutValue(kind, next.lineAttributes);
            case RecordKind::kDrawMode:
                return PutValue(kind, next.drawMode);
            case RecordKind::kLineDash:
                list_.AppendLineDash(next.dash, next.dashCount);
                return style_.SetDash(next.dash, next.dashCount);
            default:  // kFillStyle
                list_.AppendFillStyle(next.fillKind, next.fillIndex);
                style_.fillKind = next.fillKind;
                style_.fillIndex = next.fillIndex;
        }
    }
    void PutColour(RecordKind kind, std::uint32_t colour) {
        list_.AppendColour(kind, colour);
        SetStyleValue(style_, kind, static_cast<std::int32_t>(colour));
    }
    void PutValue(RecordKind kind, std::int32_t value) {
        list_.AppendValue(kind, value);
        SetStyleValue(style_, kind, value);
    }

    const StyleChanger& changer_;
    DisplayList& list_;
    DrawingStyle style_;  // what holds at the end of the list
    bool isStale_ = true;
    bool isShown_ = true;
};

bool ChangesStyles(const PageLook& look) {
    return !look.pens.empty() || !look.only.empty() || look.lineWidthMillimetres || look.mono;
}

}  // namespace

PlotPage LookedAt(const PlotPage& page, const PageLook& look) {
    PlotPage looked = page;
    if (ChangesStyles(look)) {
        const StyleChanger changer(look, page.UnitsPerInch());
        const auto list = std::make_shared<DisplayList>();
        Redrawer redrawer(changer, *list);
        Play(page.Drawing(), redrawer);
        list->Finish();
        std::vector<PageLayer> layers;
        for (PageLayer layer : page.Layers()) {
            if (!changer.Shows(layer.number)) continue;
            layer.colour = changer.LineColour(layer.number, layer.colour);
            layers.push_back(std::move(layer));
        }
        looked = page.With(list, std::move(layers), Summarise(page.Drawing()).extent);
    }
    // Pages are turned counter-clockwise.
    if (look.clockwise != 0.0) looked = looked.Turned(-look.clockwise);
    return looked;
}

}  // namespace qm
