// How near the coverages of strokes come to those of 16 x 16 samples a dot, above all where lines
// meet. Prints the errors with --gtest_filter='*Quality*'.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

#include "common/numbers.h"
#include "tests/render/bitmap/drawn_page.h"

namespace {

using namespace qm;
using namespace qm::bitmap;

constexpr int kSamples = 16;  // a dot, and units
constexpr int kSide = 96;     // of the page, in dots

// Of the dot with its lower left corner at (x, y), 0 to 255.
int SampledCoverage(const std::vector<PointD>& points, double half, int x, int y) {
    std::vector<std::size_t> touched;
    for (std::size_t i = 1; i < points.size(); ++i) {
        if (DistanceToLine({x + 0.5, y + 0.5}, points[i - 1], points[i]) < half + 0.75)
            touched.push_back(i);
    }
    int inside = 0;
    for (int sample = 0; !touched.empty() && sample < kSamples * kSamples; ++sample) {
        const int row = sample / kSamples;
        const PointD p{x + (sample % kSamples + 0.5) / kSamples, y + (row + 0.5) / kSamples};
        inside += std::any_of(touched.begin(), touched.end(), [&](std::size_t i) {
            return DistanceToLine(p, points[i - 1], points[i]) <= half;
        });
    }
    return RoundToInt32(inside * 255.0 / (kSamples * kSamples));
}

struct QualityCase {
    const char* name;
    int width;      // of the pen, in units
    double length;  // of a line, in dots
    double turn;    // from line to line, in degrees
    int lines;
    double mostMean;  // error of the dots that see an edge
};

// The mean errors are measured; the limits lie a tenth above them.
constexpr QualityCase kQualityCases[] = {
    {"a hairline's ends and edges", 16, 30.0, 0.0, 1, 1.05},
    {"gentle corners", 16, 6.0, 17.0, 6, 1.3},
    {"a polygon of short lines", 16, 2.0, 14.0, 12, 1.95},
    {"a curve of tiny lines", 16, 0.5, 4.0, 60, 2.0},
    {"right corners", 16, 20.0, 90.0, 3, 1.2},
    {"sharp corners", 16, 12.0, 150.0, 4, 6.6},
    {"there and back", 16, 20.0, 180.0, 3, 1.15},
    {"a thicker pen", 26, 6.0, 40.0, 6, 1.3},
    {"a wide pen", 66, 6.0, 40.0, 6, 1.9},
};

double MeanError(const QualityCase& quality, double direction) {
    std::vector<PointD> points;
    DisplayList list;
    AddSheet(list, kSide * kSamples);
    list.AppendValue(RecordKind::kLineWidth, quality.width);
    PointI last;
    PointD at{kSide / 2.0, kSide / 2.0};
    for (int i = 0; i <= quality.lines; ++i) {
        const PointI point{RoundToInt32(at.x * kSamples), RoundToInt32(at.y * kSamples)};
        points.push_back({double{1} * point.x / kSamples, double{1} * point.y / kSamples});
        if (i > 0) list.AppendLine(last, point);
        last = point;
        const double angle = (direction + i * quality.turn) * kRadiansPerDegree;
        at = at + PointD{quality.length * std::cos(angle), quality.length * std::sin(angle)};
    }
    PageOptions options = DotForDot();
    options.dpi = 1016.0 / kSamples;
    const DrawnPage drawn = Draw(list, options);
    double sum = 0.0;
    int edges = 0;
    for (int y = 0; y < kSide; ++y) {
        for (int x = 0; x < kSide; ++x) {
            const int sampled = SampledCoverage(points, quality.width / 2.0 / kSamples, x, y);
            const int covered = 255 - static_cast<int>(drawn.At(x, y) & 0xFF);
            if (sampled % 255 == 0 && covered % 255 == 0 && sampled == covered) continue;
            sum += std::abs(sampled - covered);
            ++edges;
        }
    }
    return sum / edges;
}

TEST(StrokeQuality, ComesNearToSampledCoverages) {
    for (const QualityCase& quality : kQualityCases) {
        double sum = 0.0;
        constexpr int kDirections = 4;
        for (int i = 0; i < kDirections; ++i) sum += MeanError(quality, 3.0 + 23.4 * i);
        std::printf("%-28s %.2f of 255\n", quality.name, sum / kDirections);
        EXPECT_LE(sum / kDirections, quality.mostMean) << quality.name;
    }
}

}  // namespace
