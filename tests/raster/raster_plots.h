// Pieces of plots in raster mode. They run at 1016 dots per inch, so that a dot is a plotter unit,
// and behind a job header, which makes pictures stand upright with their top left corner at the
// raster position.
#pragma once

#include <string>

#include "tests/common/hex_text.h"

namespace qm {

using namespace std::string_literals;

inline const std::string kJob = "@PJL ENTER LANGUAGE=HPGL2\n";
inline const std::string kStart = kJob + "\033%0A\033*t1016R";

// One transferred row: ESC*b#W and its bytes.
inline std::string Row(const std::string& data, char letter = 'W') {
    return "\033*b" + std::to_string(data.size()) + letter + data;
}

// A block of rows: ESC*b#m#W and the bytes of `hex`.
inline std::string Block(int method, const std::string& hex) {
    const Bytes data = FromHex(hex);
    return "\033*b" + std::to_string(method) + "m" + std::to_string(data.size()) + "W" +
           std::string(data.begin(), data.end());
}

// Rows of eight one-bit pixels: F0, 0F, AA.
inline const std::string kRows = Row("\xF0") + Row("\x0F") + Row("\xAA");
inline const std::string kBlank = Row("");
inline const std::string kStored = "rows=AA000000,0F000000,F0000000";
inline const std::string kEight = "\033*r8s3T" + kRows;

}  // namespace qm
