// Opening plots for the subcommands: the components of a thread, a file as the filter wants it,
// failures as messages.
#pragma once

#include <string>

#include "cli/input_file.h"
#include "host/open_plot.h"
#include "platform/com_ptr.h"

namespace qm::cli {

// The file as a source for the import filter. Throws ToolError.
ComPtr<IQmDataObject> OpenSource(const InputFile& file);

// Reads the whole plot; `progress` may be empty. Throws ToolError when the file is no plot file,
// and when Ctrl-C was pressed.
OpenedPlot LoadPlot(const InputFile& file, const ProgressCallback& progress);

}  // namespace qm::cli
