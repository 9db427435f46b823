// See host_trace.h.
#include "trace/host_trace.h"

#include <ocidl.h>

#include <new>
#include <utility>

#include "import/qm_filter_hpgl.h"
#include "platform/bstr.h"
#include "platform/prog_id.h"
#include "platform/status_name.h"
#include "platform/variant.h"
#include "trace/host_objects.h"

namespace qm {

namespace {

constexpr CLSID kContainerClass = {
    0x7f0c8e52, 0x41d6, 0x4b0e, {0x9a, 0x53, 0x0c, 0x7d, 0x2e, 0x91, 0xb8, 0x01}};
constexpr CLSID kLayersClass = {
    0x7f0c8e52, 0x41d6, 0x4b0e, {0x9a, 0x53, 0x0c, 0x7d, 0x2e, 0x91, 0xb8, 0x02}};
constexpr CLSID kPenTableClass = {
    0x7f0c8e52, 0x41d6, 0x4b0e, {0x9a, 0x53, 0x0c, 0x7d, 0x2e, 0x91, 0xb8, 0x03}};

// Makes the objects of one class and writes that it did.
class TraceFactory final : public ComObject<IClassFactory> {
  public:
    using Maker = ComPtr<IUnknown> (*)(const std::shared_ptr<HostLog>& log);

    TraceFactory(std::shared_ptr<HostLog> log, Maker make) : log_(std::move(log)), make_(make) {}

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID riid,
                                             void** object) noexcept override {
        if (object == nullptr) return E_POINTER;
        *object = nullptr;
        if (outer != nullptr) return CLASS_E_NOAGGREGATION;
        return Guarded([&]() -> HRESULT {
            const ComPtr<IUnknown> made = make_(log_);
            if (!made) return E_OUTOFMEMORY;
            const std::string name(log_->NameOf(made.Get()));
            const HRESULT status = log_->Call(name, "created");
            return FAILED(status) ? status : made->QueryInterface(riid, object);
        });
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) noexcept override { return S_OK; }

  private:
    std::shared_ptr<HostLog> log_;
    Maker make_;
};

ComPtr<IUnknown> MakeContainer(const std::shared_ptr<HostLog>& log) {
    return MakeObject<TracedNode>(log, TracedNode::Kind::kContainer);
}
ComPtr<IUnknown> MakeLayers(const std::shared_ptr<HostLog>& log) {
    return MakeObject<TracedLayers>(log);
}
ComPtr<IUnknown> MakePenTable(const std::shared_ptr<HostLog>& log) {
    return MakeObject<TracedPenTable>(log);
}

struct TraceClass {
    const wchar_t* progId;
    CLSID clsid;
    TraceFactory::Maker make;
};
constexpr TraceClass kClasses[] = {
    {L"Tessel.QmContainer", kContainerClass, MakeContainer},
    {L"Tessel.QmLayers", kLayersClass, MakeLayers},
    {L"Tessel.QmPenTable", kPenTableClass, MakePenTable},
};

class MemoryObject final : public ComObject<IQmDataObject> {
  public:
    MemoryObject(ComPtr<IUnknown> storage, std::wstring_view name)
        : storage_(std::move(storage)), name_(name) {}

    HRESULT STDMETHODCALLTYPE get_Storage(IUnknown** value) noexcept override {
        return storage_.CopyTo(value);
    }
    HRESULT STDMETHODCALLTYPE get_StorageName(BSTR* value) noexcept override {
        if (value == nullptr) return E_POINTER;
        *value = SysAllocStringLen(name_.data(), static_cast<UINT>(name_.size()));
        return *value != nullptr ? S_OK : E_OUTOFMEMORY;
    }

  private:
    ComPtr<IUnknown> storage_;
    std::wstring name_;
};

class ProgressSink final : public ComObject<_IQmFilterEvents> {
  public:
    ProgressSink(HostLog& log, const TraceOptions& options) : log_(log), options_(options) {}

    HRESULT STDMETHODCALLTYPE Progress(LONG percent, VARIANT_BOOL* abort) noexcept override {
        return Guarded([&] {
            if (options_.abortAt && percent >= *options_.abortAt) *abort = VARIANT_TRUE;
            return options_.progress ? log_.Call("progress", std::to_string(percent)) : S_OK;
        });
    }
    HRESULT STDMETHODCALLTYPE FontPath(BSTR, BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE XrefPath(BSTR, BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE XrefPathEx(BSTR, BSTR, BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Password(BSTR, BSTR*) noexcept override { return E_NOTIMPL; }

  private:
    HostLog& log_;
    const TraceOptions& options_;
};

HRESULT RunImport(const TraceHost& host, IStream* source, const TraceOptions& options) {
    ComPtr<IQmFilter> filter;
    HRESULT status = CreateQmFilterHPGL(nullptr, __uuidof(IQmFilter), filter.PutVoid());
    if (FAILED(status)) return status;
    ComPtr<IConnectionPoint> point;
    filter.As<IConnectionPointContainer>()->FindConnectionPoint(__uuidof(_IQmFilterEvents),
                                                                point.Put());
    DWORD cookie = 0;
    const auto sink = MakeObject<ProgressSink>(host.Log(), options);
    status = point->Advise(sink.Get(), &cookie);
    if (FAILED(status)) return status;
    const auto data = MakeDataObject(ComPtr<IUnknown>(source), options.storageName);
    const auto document = host.MakeDocument();
    status = filter->OpenDocument(data.Get(), document.Get(), 0);
    ComPtr<IUnknown> node;
    if (status == S_OK) status = filter->GetNode(Variant().Get(), 0, node.Put());
    point->Unadvise(cookie);
    return status;
}

ComPtr<IStream> StreamOf(std::string_view bytes) {
    ComPtr<IStream> stream;
    if (FAILED(CreateStreamOnHGlobal(nullptr, TRUE, stream.Put()))) throw std::bad_alloc();
    const HRESULT status = stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr);
    if (FAILED(status)) throw std::bad_alloc();
    return stream;
}

}  // namespace

// --- The host ------------------------------------------------------------------------------------

// One class and its ProgID, put back as they were at the end.
struct TraceHost::Registration {
    Registration(const TraceClass& entry, IUnknown* factory) : progId(entry.progId) {
        replaced = SUCCEEDED(ClassIdFromProgId(progId, &previous));
        RegisterProgId(progId, entry.clsid);
        CoRegisterClassObject(entry.clsid, factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                              &cookie);
    }
    ~Registration() {
        CoRevokeClassObject(cookie);
        if (replaced) {
            RegisterProgId(progId, previous);
        } else {
            UnregisterProgId(progId);
        }
    }
    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;

    const wchar_t* progId;
    CLSID previous{};
    bool replaced = false;
    DWORD cookie = 0;
};

TraceHost::TraceHost(HostLineSink sink) : log_(std::make_shared<HostLog>(std::move(sink))) {
    CoInitialize(nullptr);
    for (const TraceClass& entry : kClasses) {
        const auto factory = MakeObject<TraceFactory>(log_, entry.make);
        classes_.push_back(std::make_unique<Registration>(entry, factory.Get()));
    }
}

TraceHost::~TraceHost() {
    classes_.clear();
    CoUninitialize();
}

ComPtr<IQmDocument> TraceHost::MakeDocument() const {
    return MakeObject<TracedNode>(log_, TracedNode::Kind::kDocument);
}

ComPtr<IQmDataObject> MakeDataObject(ComPtr<IUnknown> storage, std::wstring_view storageName) {
    ComPtr<IQmDataObject> object;
    object.Attach(MakeObject<MemoryObject>(std::move(storage), storageName).Detach());
    return object;
}

// --- One import ----------------------------------------------------------------------------------

HRESULT TraceImport(IStream* source, const TraceOptions& options, const HostLineSink& sink) {
    const TraceHost host(sink);
    const HRESULT status = RunImport(host, source, options);
    host.Log().Call("result", StatusName(status));
    return status;
}

std::string Trace(std::string_view file, const TraceOptions& options) {
    std::string lines;
    TraceImport(StreamOf(file).Get(), options, [&lines](std::string_view line) {
        lines.append(line) += '\n';
        return S_OK;
    });
    return lines;
}

}  // namespace qm
