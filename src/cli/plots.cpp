#include "cli/plots.h"

#include <shlwapi.h>

#include <new>

#include "cli/console.h"
#include "common/tool_error.h"
#include "host/source_and_events.h"
#include "import/qm_filter_hpgl.h"
#include "platform/text.h"

namespace qm::cli {

Components::Components(const Reading& reading) {
    const auto factory = MakeQmFilterFactory(reading);
    if (!factory) throw std::bad_alloc();
    const HRESULT status =
        SUCCEEDED(host_.Status())
            ? CoRegisterClassObject(CLSID_QmFilterHPGL, factory.Get(), CLSCTX_INPROC_SERVER,
                                    REGCLS_MULTIPLEUSE, &cookie_)
            : host_.Status();
    if (FAILED(status)) throw ToolError("the filter components cannot be registered");
}

Components::~Components() { CoRevokeClassObject(cookie_); }

ComPtr<IQmFilter> MakeFilter() {
    ComPtr<IQmFilter> filter;
    const HRESULT status = CreateQmFilterHPGL(nullptr, __uuidof(IQmFilter), filter.PutVoid());
    if (FAILED(status)) throw std::bad_alloc();
    return filter;
}

// Writers are let in: a copy of standard input is still open for writing.
ComPtr<IQmDataObject> OpenSource(const InputFile& file) {
    const std::wstring path = Utf8ToWide(file.Path());
    ComPtr<IStream> stream;
    const HRESULT status = SHCreateStreamOnFileW(path.c_str(), STGM_READ, stream.Put());
    if (FAILED(status)) throw ToolError(file.Name() + ": cannot be read: " + StatusName(status));
    const auto source = MakeObject<DataObject>(stream, path);
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
