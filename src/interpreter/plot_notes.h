// PlotNotes: what a person should be told of how a plot was read; gathered while it is interpreted.
// Nothing that is drawn depends on it. Test: tests/interpreter/coordinates_test.cpp.
#pragma once

namespace qm {

struct PlotNotes {
    bool scaleIgnored = false;  // an SC did nothing, because no IP with four numbers came before it
};

}  // namespace qm
