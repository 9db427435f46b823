#include "render/bitmap/picture_sampler.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "common/numbers.h"
#include "render/bitmap/blending.h"
#include "render/bitmap/column_sums.h"
#include "render/bitmap/dot_mean.h"
#include "render/bitmap/picture_row.h"

namespace qm::bitmap {

namespace {

constexpr double kNearlyZero = 1e-9;
constexpr std::size_t kMostDots = 512;  // of a line at once
// A picture that is hardly reduced is shown dot by dot, else all of its dots would blur.
constexpr double kHardlyReduced = 1.002;

bool IsWhite(std::uint32_t dot) { return dot == 0xFFFFFF; }

class Sampler {
  public:
    Sampler(const PackedBitmapView& picture, const Matrix& toPicture, const PictureLook& look,
            Band& band, const DotBox& bounds)
        : dots_(picture), m_(toPicture), look_(look), band_(band), bounds_(bounds) {}

    void Draw() {
        const bool upright = std::abs(m_.b) < kNearlyZero && std::abs(m_.c) < kNearlyZero;
        lies_ = !upright && std::abs(m_.a) < kNearlyZero && std::abs(m_.d) < kNearlyZero;
        if (!upright && !lies_) return DrawTurned();
        if (std::max(std::abs(PerDot()), std::abs(PerLine())) > kHardlyReduced) {
            if (dots_.Bits() == 1) return DrawReduced<BitSums>();
            return DrawReduced<ColourSums>();
        }
        const bool isExact = lies_ ? m_.a == 0.0 && m_.d == 0.0 : m_.b == 0.0 && m_.c == 0.0;
        if (isExact) return DrawEnlarged();
        DrawNearest();
    }

  private:
    void DrawNearest();
    void DrawTurned();
    void DrawEnlarged();
    template <class Sums>
    void DrawReduced();
    template <class Sums>
    void DrawRun(Sums& sums, const PictureShare& rows, std::size_t begin, std::size_t end,
                 BandDot* line);

    // Lines of the page run along the picture's rows: its rows, or its columns where the picture
    // lies on its side.
    std::int32_t FirstLine() const { return lies_ ? bounds_.left : bounds_.top; }
    std::int32_t EndLine() const { return lies_ ? bounds_.right : bounds_.bottom; }
    std::int32_t FirstDot() const { return lies_ ? bounds_.top : bounds_.left; }
    std::int32_t EndDot() const { return lies_ ? bounds_.bottom : bounds_.right; }
    BandDot* Line(std::int32_t line) {
        return lies_ ? band_.Row(bounds_.top) + line : band_.Row(line) + bounds_.left;
    }
    // From one dot of a line to the next.
    std::size_t Step() const { return static_cast<std::size_t>(lies_ ? band_.Width() : 1); }
    // Columns of the picture from one dot of a line to the next, rows from one line to the next.
    double PerDot() const { return lies_ ? m_.c : m_.a; }
    double PerLine() const { return lies_ ? m_.b : m_.d; }

    PointD At(double x, double y) const {
        return {m_.a * x + m_.c * y + m_.e, m_.b * x + m_.d * y + m_.f};
    }
    bool Holds(PointD place) const {
        return place.x >= 0.0 && place.y >= 0.0 && place.x < dots_.Width() &&
               place.y < dots_.Height();
    }
    std::uint32_t DotAt(PointD place) const {
        return dots_.At(TruncateToInt32(place.x), TruncateToInt32(place.y));
    }
    PictureInk InkOn(std::uint32_t paper) const {
        return {look_.operation, look_.whiteIsClear, paper};
    }

    PictureDots dots_;
    const Matrix& m_;
    const PictureLook& look_;
    Band& band_;
    DotBox bounds_;
    bool lies_ = false;
    std::vector<PictureShare> shares_;  // of the dots of a line
};

void Sampler::DrawNearest() {
    for (std::int32_t y = bounds_.top; y < bounds_.bottom; ++y) {
        BandDot* const row = band_.Row(y);
        for (std::int32_t x = bounds_.left; x < bounds_.right; ++x) {
            const PointD place = At(x + 0.5, y + 0.5);
            if (Holds(place)) row[x].colour = InkOn(row[x].colour).Of(DotAt(place));
        }
    }
}

// As DrawNearest, with what the dots of a line have in common found once.
void Sampler::DrawEnlarged() {
    const auto nearest = [](std::int32_t dot, double perDot, double offset, std::int32_t size) {
        const double place = perDot * (dot + 0.5) + offset;
        return place >= 0.0 && place < size ? TruncateToInt32(place) : -1;
    };
    std::vector<std::int32_t> columns;
    for (std::int32_t i = FirstDot(); i < EndDot(); ++i) {
        columns.push_back(nearest(i, PerDot(), m_.e, dots_.Width()));
    }
    std::vector<std::uint32_t> seen(columns.size());
    const std::size_t step = Step();
    const PictureLook look = look_;
    const bool copies = look.operation == kCopyPen;
    std::int32_t last = -1;
    for (std::int32_t i = FirstLine(); i < EndLine(); ++i) {
        const std::int32_t row = nearest(i, PerLine(), m_.f, dots_.Height());
        if (row < 0) continue;
        BandDot* const line = Line(i);
        if (row != last) {
            dots_.WithRow(row, [&](auto dotAt) {
                for (std::size_t k = 0; k < columns.size(); ++k) {
                    if (columns[k] >= 0) seen[k] = dotAt(columns[k]);
                }
            });
        }
        last = row;
        for (std::size_t k = 0; k < columns.size(); ++k) {
            const std::uint32_t dot = seen[k];
            if (columns[k] < 0 || (look.whiteIsClear && IsWhite(dot))) continue;
            std::uint32_t& colour = line[k * step].colour;
            colour = copies ? dot : Combine(look.operation, dot, colour);
        }
    }
}

// Pages turned by other than quarter turns: 16 places a dot.
void Sampler::DrawTurned() {
    constexpr int kSide = 4;
    constexpr std::uint32_t kPlaces = 16;
    for (std::int32_t y = bounds_.top; y < bounds_.bottom; ++y) {
        BandDot* const row = band_.Row(y);
        for (std::int32_t x = bounds_.left; x < bounds_.right; ++x) {
            const std::uint32_t paper = row[x].colour;
            const PictureInk ink = InkOn(paper);
            std::uint32_t sums[3] = {};
            for (int part = 0; part < kSide * kSide; ++part) {
                const int across = part % kSide;
                const int down = part / kSide;
                const PointD place = At(x + (across + 0.5) / kSide, y + (down + 0.5) / kSide);
                const std::uint32_t dot = Holds(place) ? ink.Of(DotAt(place)) : paper;
                for (int i = 0; i < 3; ++i) sums[i] += dot >> 8 * i & 0xFF;
            }
            const auto mean = [&](int i) { return (sums[i] + kPlaces / 2) / kPlaces << 8 * i; };
            row[x].colour = mean(2) | mean(1) | mean(0);
        }
    }
}

// What the dots of a line take in of the picture's rows.
template <class Sums>
void Sampler::DrawRun(Sums& sums, const PictureShare& rows, std::size_t begin, std::size_t end,
                      BandDot* line) {
    const std::size_t step = Step();
    const PictureInk ink = InkOn(line[begin * step].colour);
    const std::int64_t left = std::min(shares_[begin].first, shares_[end - 1].first);
    const std::int64_t right = std::max(shares_[begin].end, shares_[end - 1].end);
    typename Sums::Total totals[kMostDots];
    std::fill_n(totals, end - begin, typename Sums::Total());
    for (std::int64_t u = left; u < right; u += kMostColumns) {
        const auto from = static_cast<std::int32_t>(u);
        const auto to = static_cast<std::int32_t>(std::min(u + kMostColumns, right));
        for (std::int64_t v = rows.first; v < rows.end; v += kMostRows) {
            const auto top = static_cast<std::int32_t>(v);
            const auto bottom =
                static_cast<std::int32_t>(std::min<std::int64_t>(v + kMostRows, rows.end));
            sums.Start(from, to);
            for (std::int32_t y = top; y < bottom; ++y) sums.Add(y, rows.WeightOf(y), ink);
            if (!sums.Finish()) continue;
            if (right - left > kMostColumns) {
                sums.AddTo(totals[0], shares_[begin].Within(from, to));
                continue;
            }
            for (std::size_t i = begin; i < end; ++i) {
                if (!shares_[i].IsEmpty()) sums.AddTo(totals[i - begin], shares_[i]);
            }
        }
    }
    const typename Sums::Inks inks(dots_, ink);
    for (std::size_t i = begin; i < end; ++i) {
        if (shares_[i].IsEmpty()) continue;
        std::uint32_t& colour = line[i * step].colour;
        colour = DotMean(rows, shares_[i]).Of(totals[i - begin], inks, colour);
    }
}

template <class Sums>
void Sampler::DrawReduced() {
    const PictureAxis across(PerDot(), m_.e, dots_.Width());
    const PictureAxis down(PerLine(), m_.f, dots_.Height());
    for (std::int32_t i = FirstDot(); i < EndDot(); ++i) shares_.push_back(across.ShareOf(i));
    // Ends of runs of dots, of which either all columns together or one dot's are not too many.
    std::vector<std::size_t> ends;
    for (std::size_t i = 0, begin = 0; i < shares_.size(); ++i) {
        const std::int32_t left = std::min(shares_[begin].first, shares_[i].first);
        const std::int32_t right = std::max(shares_[begin].end, shares_[i].end);
        if (i > begin && (right - left > kMostColumns || i - begin == kMostDots)) {
            ends.push_back(i);
            begin = i;
        }
    }
    ends.push_back(shares_.size());
    const bool asksForPaper = look_.operation != kCopyPen || look_.whiteIsClear;
    Sums sums(dots_);
    const std::size_t step = Step();
    for (std::int32_t i = FirstLine(); i < EndLine(); ++i) {
        const PictureShare rows = down.ShareOf(i);
        if (rows.IsEmpty()) continue;
        BandDot* const line = Line(i);
        std::size_t begin = 0;
        for (const std::size_t most : ends) {
            while (begin < most) {
                std::size_t end = asksForPaper ? begin + 1 : most;
                const std::uint32_t paper = line[begin * step].colour;
                while (end < most && line[end * step].colour == paper) ++end;
                DrawRun(sums, rows, begin, end, line);
                begin = end;
            }
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
