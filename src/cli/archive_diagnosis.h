// DiagnoseArchive: why the filter could not read a zip archive. Test:
// tests/cli/transcripts_test.cpp.
#pragma once

#include <optional>
#include <string>

#include "cli/files.h"

namespace qm::cli {

struct ArchiveProblem {
    bool holdsPlot;     // has an entry plan.prn, or may have one
    std::string cause;  // for people
};

// Nothing for a file that is no zip archive. Looks at the archive's list of entries (the layout of
// zip files is published as APPNOTE.TXT), at the archive library and at the folder for temporary
// files.
std::optional<ArchiveProblem> DiagnoseArchive(const InputFile& file);

}  // namespace qm::cli
