// PlotArchive: a zip archive that carries a plot named plan.prn, read through the companion library
// "QmZipx.dll".
//
// The library is loaded for as long as the object lives; without it every archive is one that holds
// no plot. Test: tests/import/archive_import_test.cpp.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "archive/archive_api.h"
#include "platform/file_handle.h"
#include "platform/library.h"

namespace qm {

class PlotArchive {
  public:
    // Opens the archive at `path`. Throws std::bad_alloc.
    explicit PlotArchive(std::wstring_view path);
    ~PlotArchive();
    PlotArchive(const PlotArchive&) = delete;
    PlotArchive& operator=(const PlotArchive&) = delete;

    // Whether an entry's whole name is plan.prn, ignoring the case of A to Z.
    bool HasPlot() const { return FindPlot().has_value(); }
    // The first such entry in a temporary file. Empty (false) without such an entry, or when no
    // temporary file can be made. The archive library removes a file that it cannot fill, so a
    // damaged entry shows when the file is opened. Throws std::bad_alloc.
    TemporaryFile ExtractPlot() const;

  private:
    std::optional<std::int32_t> FindPlot() const;

    Library library_;
    archive::OpenArchiveFunction* open_;
    archive::GetNumberOfFilesFunction* count_;
    archive::GetFileInfoFunction* info_;
    archive::ExtractToFileFunction* extract_;
    archive::CloseArchiveFunction* close_;
    archive::Handle archive_ = archive::kNoArchive;
};

}  // namespace qm
