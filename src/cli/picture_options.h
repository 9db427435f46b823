// The options of convert for pictures and plots: --dpi, --no-antialias, --rtl, --compact, --bits.
// Test: tests/cli/qmplot_test.cpp.
#pragma once

#include "cli/command.h"
#include "cli/output_format.h"

namespace qm::cli {

// `options` must outlive them.
OptionGroup PictureGroup(WriteOptions& options);

}  // namespace qm::cli
