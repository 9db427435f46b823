// From document units to plotter units: X = trunc((x + offsetX) * scale), and y likewise or, when
// flipped, Y = trunc((height - (y + offsetY)) * scale).
//
// FreezeTransform derives the mapping from the attributes of a page; the two mappings apply it, one
// for each kind of vector sink. Pure. Tests: tests/export/framework_test.cpp,
// tests/export/vector_test.cpp.
#pragma once

#include <objbase.h>

#include <cstdint>

#include "common/geometry.h"
#include "common/numbers.h"

namespace qm {

struct PlotTransform {
    double scale = 1.0;
    // Document units, added to every coordinate before scaling.
    std::int32_t offsetX = 0;
    std::int32_t offsetY = 0;
    // Plotter y runs down from `height` (document units) when set.
    bool flipY = true;
    std::int32_t height = 0;
};

// What a page says about itself before its first sink. Crop in document units, the maxima one more
// than the attributes said; userDpi and lpiX are 0 when not given.
struct PageAttributes {
    double cropMinX = 0;
    double cropMinY = 0;
    double cropMaxX = 0;
    double cropMaxY = 0;
    double lpiX = 0;
    double lpiY = 0;
    double originalScaling = 1.0;
    double originalTranslationX = 0;
    double originalTranslationY = 0;
};

// Computes scale, offsets and height, and moves the crop box by the offsets; flipY is the caller's.
// A scaling of 0 gives an infinite scale, whose points come out as TruncateToInt32 says.
PlotTransform FreezeTransform(PageAttributes& page, double userDpi);

// Mapping of the sink with 32-bit coordinates: sums wrap, y follows flipY.
class IntegerMapping {
  public:
    using Coordinate = LONG;
    using Angle = FLOAT;

    explicit IntegerMapping(const PlotTransform& transform) : transform_(transform) {}

    // A point in document units to plotter units.
    PointI Map(LONG x, LONG y) const {
        const PlotTransform& t = transform_;
        const std::int32_t shifted = WrapAdd(y, t.offsetY);
        return {TruncateToInt32(WrapAdd(x, t.offsetX) * t.scale),
                TruncateToInt32((t.flipY ? WrapSubtract(t.height, shifted) : shifted) * t.scale)};
    }
    // A length or radius likewise: it is scaled, not moved.
    std::int32_t Distance(LONG length) const { return TruncateToInt32(length * transform_.scale); }

  private:
    PlotTransform transform_;
};

// Mapping of the sink with double coordinates.
// Quirk: y is never flipped, whatever the page says, so the same drawing stands upside down in it.
class RealMapping {
  public:
    using Coordinate = DOUBLE;
    using Angle = DOUBLE;

    explicit RealMapping(const PlotTransform& transform) : transform_(transform) {}

    // As IntegerMapping's, but that no sum wraps.
    PointI Map(double x, double y) const {
        const PlotTransform& t = transform_;
        return {TruncateToInt32((x + t.offsetX) * t.scale),
                TruncateToInt32((y + t.offsetY) * t.scale)};
    }
    std::int32_t Distance(double length) const {
        return TruncateToInt32(length * transform_.scale);
    }

  private:
    PlotTransform transform_;
};

}  // namespace qm
