#include "host/host_classes.h"

#include <mutex>

#include "host/document_node.h"
#include "host/host_identity.h"
#include "host/layers.h"
#include "host/pen_table.h"
#include "platform/prog_id.h"

namespace qm {

namespace {

// Makes objects of one class, each from the same arguments.
template <typename Object, SHORT... kArguments>
class Factory final : public ComObject<IClassFactory> {
  public:
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID riid,
                                             void** object) noexcept override {
        if (object == nullptr) return E_POINTER;
        *object = nullptr;
        if (outer != nullptr) return CLASS_E_NOAGGREGATION;
        const ComPtr<Object> made = MakeObject<Object>(kArguments...);
        return made ? made->QueryInterface(riid, object) : E_OUTOFMEMORY;
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) noexcept override { return S_OK; }
};

template <typename Object, SHORT... kArguments>
ComPtr<IClassFactory> MakeFactory() {
    return MakeObject<Factory<Object, kArguments...>>();
}

struct HostClass {
    const wchar_t* progId;
    const CLSID* clsid;
    ComPtr<IClassFactory> (*factory)();
};

const HostClass kClasses[] = {
    {L"Tessel.QmContainer", &kContainerClass, MakeFactory<DocumentNode, QM_CONTAINER>},
    {L"Tessel.QmLayers", &kLayersClass, MakeFactory<LayerCollection>},
    {L"Tessel.QmPenTable", &kPenTableClass, MakeFactory<PenTable>},
};

// The three ProgIDs while somebody shares it.
class ProgIds {
  public:
    ProgIds() noexcept {
        for (const HostClass& entry : kClasses) {
            const HRESULT result = RegisterProgId(entry.progId, *entry.clsid);
            if (FAILED(result)) status_ = result;
        }
    }
    ~ProgIds() {
        for (const HostClass& entry : kClasses) UnregisterProgId(entry.progId);
    }
    HRESULT Status() const noexcept { return status_; }

  private:
    HRESULT status_ = S_OK;
};

// The ProgIDs are one table for all threads, so the threads share one owner of them.
struct SharedProgIds {
    std::mutex mutex;
    std::weak_ptr<ProgIds> current;
};

std::shared_ptr<ProgIds> ShareProgIds() {
    static SharedProgIds shared;
    const std::lock_guard<std::mutex> lock(shared.mutex);
    std::shared_ptr<ProgIds> result = shared.current.lock();
    if (!result) shared.current = result = std::make_shared<ProgIds>();
    return result;
}

}  // namespace

HostClasses::HostClasses() noexcept
    : initialised_(SUCCEEDED(CoInitialize(nullptr))),
      status_(Guarded([this] { return RegisterAll(); })) {}

HRESULT HostClasses::RegisterAll() noexcept {
    const std::shared_ptr<ProgIds> progIds = ShareProgIds();
    progIds_ = progIds;
    if (FAILED(progIds->Status())) return progIds->Status();
    for (const HostClass& entry : kClasses) {
        const ComPtr<IClassFactory> factory = entry.factory();
        if (!factory) return E_OUTOFMEMORY;
        const HRESULT result =
            CoRegisterClassObject(*entry.clsid, factory.Get(), CLSCTX_INPROC_SERVER,
                                  REGCLS_MULTIPLEUSE, &cookies_[registered_]);
        if (FAILED(result)) return result;
        ++registered_;
    }
    return S_OK;
}

HostClasses::~HostClasses() {
    for (std::size_t i = 0; i < registered_; ++i) CoRevokeClassObject(cookies_[i]);
    if (initialised_) CoUninitialize();
}

}  // namespace qm
