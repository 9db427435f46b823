// Table tests of whole plots: a row is a plot and the drawing operations that come of it.
//
//   TEST(Arcs, Table) {
//       ExpectOperations({{"a quarter turn", "PU100,0;AA0,0,90;", {"Arc 0 0 100 0.0 1.57079632",
//       ...}}, ...});
//   }
#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "trace/operation_recorder.h"

namespace qm {

struct OpsRow {
    std::string name;
    std::string plot;
    std::vector<std::string> operations;
};

// The operations of a plot without the three that begin every plot (the defaults) and the closing
// result line.
inline std::vector<std::string> OperationsOf(const std::string& plot, const Reading& reading = {}) {
    std::istringstream text(Ops(plot, reading));
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);) lines.push_back(line);
    if (lines.size() < 4) return {"no defaults or no result"};
    return {lines.begin() + 3, lines.end() - 1};
}

// What "SP n;" sends for a pen with the default colour `color` while nothing but defaults is in
// force.
inline std::vector<std::string> PenSelected(int pen, const std::string& color) {
    return {"SetColor " + color, "SetLineStyle 0", "SetPatternLength 4 0xFFFFFFFF",
            "SetLineWidth 0", "SetPen " + std::to_string(pen)};
}

// The lines of all parts, one behind the other.
inline std::vector<std::string> Joined(std::vector<std::string> first,
                                       const std::vector<std::string>& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

// Runs every row; a failure names its row. Use: TEST(Arcs, Table) { ExpectOperations({{...}, ...});
// }
inline void ExpectOperations(const std::vector<OpsRow>& rows) {
    for (const OpsRow& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(OperationsOf(row.plot), row.operations);
    }
}

}  // namespace qm
