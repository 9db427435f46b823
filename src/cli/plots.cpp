#include "cli/plots.h"

#include <shlwapi.h>

#include "cli/interruption.h"
#include "common/tool_error.h"
#include "host/data_object.h"
#include "platform/status_name.h"
#include "platform/text.h"

namespace qm::cli {

ComPtr<IStream> StreamOf(const InputFile& file) {
    ComPtr<IStream> stream;
    const HRESULT status =
        SHCreateStreamOnFileW(Utf8ToWide(file.Path()).c_str(), STGM_READ, stream.Put());
    if (FAILED(status)) throw ToolError(file.Name() + ": cannot be read: " + StatusName(status));
    return stream;
}

ComPtr<IQmDataObject> OpenSource(const InputFile& file) {
    const auto source = MakeObject<DataObject>(StreamOf(file), Utf8ToWide(file.Path()));
    if (!source) throw std::bad_alloc();
    return source;
}

OpenedPlot LoadPlot(const InputFile& file, const ProgressCallback& progress) {
    OpenedPlot plot;
    const auto source = OpenSource(file);
    const HRESULT status = OpenPlot(
        *source, [&](int percent) { return !Interrupted() && (!progress || progress(percent)); },
        plot);
    ThrowIfInterrupted();
    if (status == S_OK) return plot;
    // The filter refuses with this status what is no plot file, and little else.
    if (status == E_FAIL) throw ToolError(file.Name() + ": not a plot file", kExitNotAPlot);
    throw ToolError(file.Name() + ": cannot be opened: " + StatusName(status), kExitNotAPlot);
}

}  // namespace qm::cli
