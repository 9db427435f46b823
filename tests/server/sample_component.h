// A component and a sink for the tests of the server's parts: it only fires its event.
#pragma once

#include <functional>

#include "qmfilter.h"
#include "server/event_source.h"

namespace qm {

class SampleComponent : public EventSource<_IQmFilterSaveEvents, IQmFilterSave> {
  public:
    HRESULT STDMETHODCALLTYPE CreateDocument(IQmDataObject*, IUnknown*,
                                             IUnknown**) noexcept override {
        return E_NOTIMPL;
    }
    // Fires Progress(100); S_FALSE when a sink answered abort.
    HRESULT STDMETHODCALLTYPE CloseDocument() noexcept override {
        VARIANT_BOOL abort = VARIANT_FALSE;
        FireEvent([&](_IQmFilterSaveEvents& sink) { sink.Progress(100, &abort); });
        return abort == VARIANT_FALSE ? S_OK : S_FALSE;
    }
};

// Owns a component as a part of itself and shows its interfaces as its own.
class Outer final : public ComObject<_IQmFilterSaveEvents> {
  public:
    HRESULT STDMETHODCALLTYPE Progress(LONG, VARIANT_BOOL*) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) noexcept override {
        const HRESULT own = ComObject::QueryInterface(riid, object);
        return SUCCEEDED(own) || !part ? own : part->QueryInterface(riid, object);
    }

    ComPtr<IUnknown> part;
};

class SampleSink final : public ComObject<_IQmFilterSaveEvents> {
  public:
    explicit SampleSink(std::function<bool()> answer) : answer_(std::move(answer)) {}

    HRESULT STDMETHODCALLTYPE Progress(LONG, VARIANT_BOOL* abort) noexcept override {
        if (answer_()) *abort = VARIANT_TRUE;
        return S_OK;
    }

  private:
    std::function<bool()> answer_;
};

}  // namespace qm
