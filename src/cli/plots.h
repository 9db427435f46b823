// Opening plots for the subcommands: the components of a thread, a file as the filter wants it,
// failures as messages. Test: tests/cli/qmplot_test.cpp.
#pragma once

#include <string>

#include "cli/files.h"
#include "host/open_plot.h"
#include "interpreter/reading.h"
#include "platform/com_ptr.h"

namespace qm::cli {

// What a thread needs to open plots: the embedded host's classes and the import filter.
// Registered while it exists, for the calling thread; plots are read by `reading`. Throws
// ToolError.
class Components {
  public:
    explicit Components(const Reading& reading = {});
    ~Components();
    Components(const Components&) = delete;
    Components& operator=(const Components&) = delete;

  private:
    HostClasses host_;
    DWORD cookie_ = 0;
};

// A new import filter. Throws std::bad_alloc.
ComPtr<IQmFilter> MakeFilter();

// The file as a source for the import filter. Throws ToolError.
ComPtr<IQmDataObject> OpenSource(const InputFile& file);

// Reads the whole plot; `progress` may be empty. Throws ToolError when the file is no plot file,
// and when Ctrl-C was pressed.
OpenedPlot LoadPlot(const InputFile& file, const ProgressCallback& progress);

}  // namespace qm::cli
