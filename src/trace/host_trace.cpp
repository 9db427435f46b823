// See host_trace.h.
#include "trace/host_trace.h"

#include <new>
#include <utility>

#include "host/document_node.h"
#include "host/source_and_events.h"
#include "import/qm_filter_hpgl.h"
#include "platform/text.h"

namespace qm {

namespace {

// The callback of a Progress sink, which must not throw.
ProgressCallback ProgressOf(HostLog& log, const TraceOptions& options) {
    return [&log, &options](int percent) {
        if (options.progress) {
            Guarded([&] { return log.Call("progress", std::to_string(percent)); });
        }
        return !options.abortAt || percent < *options.abortAt;
    };
}

HRESULT RunImport(const TraceHost& host, IQmDataObject& source, const TraceOptions& options) {
    const ComPtr<IQmFilter> filter = MakeQmFilterHPGL(options.reading);
    if (!filter) return E_OUTOFMEMORY;
    const auto sink = MakeObject<ProgressSink>(ProgressOf(host.Log(), options));
    const SinkConnection events(filter.Get(), __uuidof(_IQmFilterEvents), sink.Get());
    const auto document = host.MakeDocument();
    const HRESULT status = filter->OpenDocument(&source, document.Get(), 0);
    ComPtr<IUnknown> node;
    return status == S_OK ? filter->GetNode(Variant().Get(), 0, node.Put()) : status;
}

}  // namespace

TraceHost::TraceHost(HostLineSink sink)
    : log_(std::make_shared<HostLog>(std::move(sink))),
      tracer_(std::make_shared<Tracer>(log_)),
      classes_(tracer_) {
    if (FAILED(classes_.Status())) throw std::bad_alloc();
}

ComPtr<IQmDocument> TraceHost::MakeDocument() const {
    ComPtr<IUnknown> document = MakeObject<DocumentNode>(SHORT{QM_DOCUMENT}, tracer_);
    if (!document) return nullptr;
    tracer_->Wrap(ObjectWrapper::Origin::kParent, document);
    return document.As<IQmDocument>();
}

HRESULT TraceImport(IQmDataObject& source, const TraceOptions& options, const HostLineSink& sink) {
    const TraceHost host(sink);
    const HRESULT status = RunImport(host, source, options);
    host.Log().Call("result", StatusName(status));
    return status;
}

std::string Trace(std::string_view file, const TraceOptions& options) {
    ComPtr<IQmDataObject> source;
    if (FAILED(OpenMemoryObject(file, source.Put()))) throw std::bad_alloc();
    std::string lines;
    TraceImport(*source, options, [&lines](std::string_view line) {
        lines.append(line) += '\n';
        return S_OK;
    });
    return lines;
}

}  // namespace qm
