// Units of length and the bytes with a meaning of their own: each stands here once.
#pragma once

#include <cstdint>

namespace qm {

// Plotter units: 1/1016 inch, 40 a millimetre.
inline constexpr double kUnitsPerInch = 1016.0;
inline constexpr double kUnitsPerMillimetre = 40.0;
inline constexpr double kUnitsPerCentimetre = 10.0 * kUnitsPerMillimetre;
inline constexpr double kMillimetresPerInch = 25.4;
inline constexpr double kCentimetresPerInch = 2.54;
// Decipoints, in which the raster language measures (PCL 5): 1/720 inch.
inline constexpr double kDecipointsPerInch = 720.0;
// Points, in which PDF measures.
inline constexpr double kPointsPerInch = 72.0;

inline constexpr std::uint8_t kBackspace = 8;
inline constexpr std::uint8_t kLineFeed = 10;
inline constexpr std::uint8_t kCarriageReturn = 13;
inline constexpr std::uint8_t kEscape = 27;

}  // namespace qm
