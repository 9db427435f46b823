// PlotNotes: what a person should be told of how a plot was read; gathered while it is interpreted.
// Nothing that is drawn depends on it. Test: tests/interpreter/coordinates_test.cpp.
#pragma once

#include <string>

namespace qm {

struct PlotNotes {
    bool scaleIgnored = false;  // an SC did nothing, because no IP with four numbers came before it
    // What the plot asked for more of than it was given (docs/limits.md), parted by commas; empty
    // for every plot that was not made to ask for much.
    std::string limitsMet;
};

}  // namespace qm
