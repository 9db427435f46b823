// The options of convert for the sheet (--paper, --fit, --margin, --rotate, --background) and for
// what is shown of a page (--pen, --pens, --line-width, --mono). Test:
// tests/cli/transcripts_test.cpp.
#pragma once

#include "cli/command.h"
#include "render/page_look.h"
#include "render/page_writers.h"

namespace qm::cli {

// What they are told to fill must outlive them.
OptionGroup SheetGroup(PageOptions& page, PageLook& look);
OptionGroup LookGroup(PageLook& look);

}  // namespace qm::cli
