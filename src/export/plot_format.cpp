// See plot_format.h.
#include "export/plot_format.h"

#include <charconv>

namespace qm::plot_format {

char* Print(char* to, Int value) { return std::to_chars(to, to + kMaxBytes<Int>, value).ptr; }

// Ties follow the exact binary value and then go to even, as in printf: 0.125 is "0.12".
char* Print(char* to, Real value) {
    return std::to_chars(to, to + kMaxBytes<Real>, value, std::chars_format::fixed, 2).ptr;
}

}  // namespace qm::plot_format
