// The job header: what PJL lines in front of (or between) plots say.
#pragma once

#include <cstdint>

namespace qm {

struct JobState {
    std::int32_t jobResolution = 300;  // dots per inch as given, even negative; never 0
    bool jobLanguagePCL = false;
    bool jobLanguageHPGL = false;
};

}  // namespace qm
