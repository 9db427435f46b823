// HostClasses (open_plot.h): the class objects behind the ProgIDs a filter asks for. Test:
// tests/host/open_plot_test.cpp.
#include <iterator>
#include <mutex>
#include <utility>

#include "host/document_node.h"
#include "host/layers_and_pens.h"
#include "host/open_plot.h"
#include "platform/prog_id.h"

namespace qm {

namespace {

using Wrapper = std::shared_ptr<ObjectWrapper>;

// A new object of one class; null when memory ran out.
using Maker = ComPtr<IUnknown> (*)(const Wrapper& wrapper);

ComPtr<IUnknown> MakeContainer(const Wrapper& wrapper) {
    return MakeObject<DocumentNode>(SHORT{QM_CONTAINER}, wrapper);
}
ComPtr<IUnknown> MakeLayers(const Wrapper&) { return MakeObject<LayerCollection>(); }
ComPtr<IUnknown> MakePenTable(const Wrapper&) { return MakeObject<PenTable>().As<IUnknown>(); }

class Factory final : public ComObject<IClassFactory> {
  public:
    Factory(Maker make, Wrapper wrapper) : make_(make), wrapper_(std::move(wrapper)) {}

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID riid,
                                             void** object) noexcept override {
        if (object == nullptr) return E_POINTER;
        *object = nullptr;
        if (outer != nullptr) return CLASS_E_NOAGGREGATION;
        ComPtr<IUnknown> made = make_(wrapper_);
        if (!made) return E_OUTOFMEMORY;
        const HRESULT status =
            wrapper_ ? wrapper_->Wrap(ObjectWrapper::Origin::kClass, made) : S_OK;
        return SUCCEEDED(status) ? made->QueryInterface(riid, object) : status;
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) noexcept override { return S_OK; }

  private:
    Maker make_;
    Wrapper wrapper_;
};

struct HostClass {
    const wchar_t* progId;
    CLSID clsid;
    Maker make;
};

// clang-format off
constexpr HostClass kClasses[] = {
    {L"Tessel.QmContainer",
     {0x6e7c5b1a, 0x0f2d, 0x4c55, {0x9a, 0x41, 0x7d, 0x5e, 0x20, 0xc3, 0x81, 0x01}}, MakeContainer},
    {L"Tessel.QmLayers",
     {0x6e7c5b1a, 0x0f2d, 0x4c55, {0x9a, 0x41, 0x7d, 0x5e, 0x20, 0xc3, 0x81, 0x02}}, MakeLayers},
    {L"Tessel.QmPenTable",
     {0x6e7c5b1a, 0x0f2d, 0x4c55, {0x9a, 0x41, 0x7d, 0x5e, 0x20, 0xc3, 0x81, 0x03}}, MakePenTable},
};
// clang-format on

// The three ProgIDs while somebody shares it.
class ProgIds {
  public:
    ProgIds() noexcept {
        for (const HostClass& entry : kClasses) {
            const HRESULT result = RegisterProgId(entry.progId, entry.clsid);
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

HostClasses::HostClasses(std::shared_ptr<ObjectWrapper> wrapper) noexcept
    : initialised_(SUCCEEDED(CoInitialize(nullptr))),
      status_(Guarded([&] { return RegisterAll(wrapper); })) {}

HRESULT HostClasses::RegisterAll(const std::shared_ptr<ObjectWrapper>& wrapper) {
    const std::shared_ptr<ProgIds> progIds = ShareProgIds();
    progIds_ = progIds;
    if (FAILED(progIds->Status())) return progIds->Status();
    static_assert(std::size(kClasses) == kClassCount);
    for (const HostClass& entry : kClasses) {
        const auto factory = MakeObject<Factory>(entry.make, wrapper);
        if (!factory) return E_OUTOFMEMORY;
        const HRESULT result =
            CoRegisterClassObject(entry.clsid, factory.Get(), CLSCTX_INPROC_SERVER,
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
