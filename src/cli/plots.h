// Opening plots for the subcommands: the components of a thread, a file as the filter wants it,
// failures as messages. Test: tests/cli/qmplot_test.cpp.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "cli/command.h"
#include "cli/files.h"
#include "cli/source_stream.h"
#include "common/tool_error.h"
#include "host/open_plot.h"
#include "interpreter/plot_notes.h"
#include "interpreter/reading.h"
#include "platform/com_ptr.h"

namespace qm::cli {

// How a plot is to be read.
struct OpenOptions {
    Reading reading;
    bool force = false;  // read it also when detection does not know it
};

// --reading, --sheet and --force; `options` must outlive them.
OptionGroup OpenGroup(OpenOptions& options);

// A file that detection refuses: no plot, and no archive with one.
class NotAPlotError : public ToolError {
  public:
    explicit NotAPlotError(const std::string& message) : ToolError(message, kExitNotAPlot) {}
};

// What a thread needs to open plots: the embedded host's classes and the import filter. Registered
// while it exists, for the calling thread. Throws ToolError.
class Components {
  public:
    explicit Components(const Reading& reading = {});
    ~Components();
    Components(const Components&) = delete;
    Components& operator=(const Components&) = delete;

    // Of the plot that was read last.
    const PlotNotes& Notes() const { return *notes_; }

  private:
    HostClasses host_;
    std::shared_ptr<PlotNotes> notes_ = std::make_shared<PlotNotes>();
    DWORD cookie_ = 0;
};

// What detection says: "HPGL/2", "Nemetschek Allplan", or empty when it is no plot file. Throws
// ToolError.
std::string FormatOf(const InputFile& file);

// The file as a source for the import filter.
class PlotSource {
  public:
    // With `force` it is one that detection takes for a plot. Throws ToolError. `file` must outlive
    // the source.
    PlotSource(const InputFile& file, bool force);

    IQmDataObject& Object() const { return *object_; }
    // Throws ToolError when the file could not be read on the way, which the filter takes for its
    // end.
    void ThrowFailure() const;

  private:
    const InputFile& file_;
    ComPtr<SourceStream> stream_;
    ComPtr<IQmDataObject> object_;
};

struct LoadedPlot {
    OpenedPlot plot;
    std::vector<std::string> notes;  // for people, without the file's name
};

// Reads the whole plot; `progress` may be empty. Throws NotAPlotError, and ToolError when the plot
// cannot be read or Ctrl-C was pressed.
LoadedPlot LoadPlot(const Components& components, const InputFile& file, bool force,
                    const std::function<void(int percent)>& progress);

}  // namespace qm::cli
