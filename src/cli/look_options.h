// The options of convert for the sheet (--paper, --fit, --margin, --rotate, --background), for what
// is shown of a page (--pen, --pens, --line-width, --mono) and for pictures and plots (--dpi,
// --size, --no-antialias, --rtl, --compact, --bits). Tests: tests/cli/transcripts_test.cpp,
// tests/cli/qmplot_test.cpp.
#pragma once

#include "cli/command.h"
#include "cli/output_format.h"
#include "render/page_look.h"
#include "render/page_writers.h"

namespace qm::cli {

// What they are told to fill must outlive them.
OptionGroup SheetGroup(PageOptions& page, PageLook& look);
OptionGroup LookGroup(PageLook& look);
OptionGroup PictureGroup(WriteOptions& options);

}  // namespace qm::cli
