#include "render/bitmap/picture_sampler.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "common/numbers.h"
#include "render/bitmap/blending.h"
#include "render/bitmap/picture_row.h"

namespace qm::bitmap {

namespace {

constexpr double kNearlyZero = 1e-9;
// A picture that is hardly reduced is shown dot by dot, else all of its dots would blur.
constexpr double kHardlyReduced = 1.002;

bool IsWhite(std::uint32_t dot) { return dot == 0xFFFFFF; }

// A dot of the page under construction: weighted sums of its components.
struct Sum {
    std::uint64_t red = 0;
    std::uint64_t green = 0;
    std::uint64_t blue = 0;
    std::uint64_t weight = 0;

    void Add(std::uint32_t dot, std::uint64_t by) {
        red += (dot >> 16) * by;
        green += (dot >> 8 & 255) * by;
        blue += (dot & 255) * by;
        weight += by;
    }
    // The rest up to `whole` is paper.
    std::uint32_t Over(std::uint32_t paper, std::uint64_t whole) {
        if (weight < whole) Add(paper, whole - weight);
        const std::uint64_t half = weight / 2;
        return static_cast<std::uint32_t>((red + half) / weight << 16 |
                                          (green + half) / weight << 8 | (blue + half) / weight);
    }
};

class Sampler {
  public:
    Sampler(const PackedBitmapView& picture, const Matrix& toPicture, const PictureLook& look,
            Band& band, const DotBox& bounds)
        : picture_(picture), m_(toPicture), look_(look), band_(band), bounds_(bounds) {}

    void Draw() {
        const bool upright = std::abs(m_.b) < kNearlyZero && std::abs(m_.c) < kNearlyZero;
        const bool lying = std::abs(m_.a) < kNearlyZero && std::abs(m_.d) < kNearlyZero;
        const double perColumn = lying ? std::abs(m_.b) : std::abs(m_.a);
        const double perRow = lying ? std::abs(m_.c) : std::abs(m_.d);
        if (!upright && !lying) return DrawTurned();
        if (std::max(perColumn, perRow) <= kHardlyReduced) return DrawNearest();
        if (lying) return DrawLying();
        DrawUpright();
    }

  private:
    void DrawNearest();
    void DrawTurned();
    void DrawLying();
    void DrawUpright();

    PointD At(double x, double y) const {
        return {m_.a * x + m_.c * y + m_.e, m_.b * x + m_.d * y + m_.f};
    }
    bool Holds(PointD place) const {
        return place.x >= 0.0 && place.y >= 0.0 && place.x < picture_.Width() &&
               place.y < picture_.Height();
    }
    std::uint32_t DotAt(PointD place) {
        return row_.Dot(picture_, TruncateToInt32(place.x), TruncateToInt32(place.y));
    }
    bool IsClear(std::uint32_t dot) const { return look_.whiteIsClear && IsWhite(dot); }
    std::uint32_t Drawn(std::uint32_t dot, std::uint32_t paper) const {
        return Combine(look_.operation, dot, paper);
    }

    const PackedBitmapView& picture_;
    const Matrix& m_;
    const PictureLook& look_;
    Band& band_;
    DotBox bounds_;
    PictureDots row_;
};

void Sampler::DrawNearest() {
    for (std::int32_t y = bounds_.top; y < bounds_.bottom; ++y) {
        BandDot* const row = band_.Row(y);
        for (std::int32_t x = bounds_.left; x < bounds_.right; ++x) {
            const PointD place = At(x + 0.5, y + 0.5);
            if (!Holds(place)) continue;
            const std::uint32_t dot = DotAt(place);
            if (!IsClear(dot)) row[x].colour = Drawn(dot, row[x].colour);
        }
    }
}

// Pages turned by other than quarter turns: 16 places a dot.
void Sampler::DrawTurned() {
    constexpr int kSide = 4;
    constexpr std::uint64_t kPlaces = 16;
    for (std::int32_t y = bounds_.top; y < bounds_.bottom; ++y) {
        BandDot* const row = band_.Row(y);
        for (std::int32_t x = bounds_.left; x < bounds_.right; ++x) {
            Sum sum;
            for (int part = 0; part < kSide * kSide; ++part) {
                const int across = part % kSide;
                const int down = part / kSide;
                const PointD place = At(x + (across + 0.5) / kSide, y + (down + 0.5) / kSide);
                if (!Holds(place)) continue;
                const std::uint32_t dot = DotAt(place);
                if (!IsClear(dot)) sum.Add(Drawn(dot, row[x].colour), 1);
            }
            if (sum.weight > 0) row[x].colour = sum.Over(row[x].colour, kPlaces);
        }
    }
}

void Sampler::DrawLying() {
    // The page's rows run along the picture's columns.
    const PictureAxis across(m_.b, m_.f, picture_.Height());
    const PictureAxis down(m_.c, m_.e, picture_.Width());
    for (std::int32_t y = bounds_.top; y < bounds_.bottom; ++y) {
        const PictureShare columns = down.ShareOf(y);
        if (columns.IsEmpty()) continue;
        BandDot* const row = band_.Row(y);
        for (std::int32_t x = bounds_.left; x < bounds_.right; ++x) {
            const PictureShare rows = across.ShareOf(x);
            Sum sum;
            for (std::int32_t v = rows.first; v < rows.end; ++v) {
                for (std::int32_t u = columns.first; u < columns.end; ++u) {
                    const std::uint32_t dot = row_.Dot(picture_, u, v);
                    if (IsClear(dot)) continue;
                    sum.Add(Drawn(dot, row[x].colour),
                            std::uint64_t{rows.WeightOf(v)} * columns.WeightOf(u));
                }
            }
            if (sum.weight == 0) continue;
            const std::uint64_t whole = std::uint64_t{rows.whole} * columns.whole;
            row[x].colour = sum.Over(row[x].colour, whole);
        }
    }
}

void Sampler::DrawUpright() {
    const PictureAxis across(m_.a, m_.e, picture_.Width());
    const PictureAxis down(m_.d, m_.f, picture_.Height());
    std::vector<PictureShare> shares;
    for (std::int32_t x = bounds_.left; x < bounds_.right; ++x) {
        shares.push_back(across.ShareOf(x));
    }
    const bool copies = look_.operation == kCopyPen;
    std::vector<Sum> sums(shares.size());
    for (std::int32_t y = bounds_.top; y < bounds_.bottom; ++y) {
        const PictureShare rows = down.ShareOf(y);
        if (rows.IsEmpty()) continue;
        std::fill(sums.begin(), sums.end(), Sum());
        BandDot* const target = band_.Row(y) + bounds_.left;
        for (std::int32_t v = rows.first; v < rows.end; ++v) {
            const std::uint64_t rowWeight = rows.WeightOf(v);
            const PictureRow source(picture_, v, row_);
            for (std::size_t i = 0; i < shares.size(); ++i) {
                const PictureShare& share = shares[i];
                if (share.IsEmpty()) continue;
                Sum& sum = sums[i];
                if (copies) {
                    const RowSum part = source.Add(share, look_.whiteIsClear);
                    sum.red += part.red * rowWeight;
                    sum.green += part.green * rowWeight;
                    sum.blue += part.blue * rowWeight;
                    sum.weight += part.weight * rowWeight;
                    continue;
                }
                const std::uint32_t paper = target[i].colour;
                for (std::int32_t u = share.first; u < share.end; ++u) {
                    const std::uint32_t dot = source.Dot(u);
                    if (!IsClear(dot)) sum.Add(Drawn(dot, paper), rowWeight * share.WeightOf(u));
                }
            }
        }
        for (std::size_t i = 0; i < shares.size(); ++i) {
            if (sums[i].weight == 0) continue;
            const std::uint64_t whole = std::uint64_t{rows.whole} * shares[i].whole;
            target[i].colour = sums[i].Over(target[i].colour, whole);
        }
    }
}

}  // namespace

void DrawPicture(const PackedBitmapView& picture, const Matrix& toPicture, const PictureLook& look,
                 Band& band, const DotBox& bounds) {
    if (look.operation == kKeepPaper) return;
    Sampler(picture, toPicture, look, band, bounds).Draw();
}

}  // namespace qm::bitmap
