// A filter that builds two pages as the import filter would, so that the host can be tested without
// one: it creates containers by ProgID, names them, adds them, fires Progress.
#pragma once

#include <ocidl.h>
#include <ole2.h>
#include <olectl.h>

#include "platform/com_object.h"
#include "platform/prog_id.h"
#include "platform/variant.h"
#include "qmfilter.h"

namespace qm {

class FakeFilter final : public ComObject<IQmFilter, IConnectionPointContainer, IConnectionPoint> {
  public:
    // Accepts what begins with 'I'.
    HRESULT STDMETHODCALLTYPE OpenDocument(IQmDataObject* source, IQmDocument* document,
                                           LONG) noexcept override {
        ComPtr<IUnknown> storage;
        if (FAILED(source->get_Storage(storage.Put()))) return E_FAIL;
        char first = 0;
        ULONG done = 0;
        const auto stream = storage.As<IStream>();
        if (!stream || FAILED(stream->Read(&first, 1, &done)) || first != 'I') return E_FAIL;
        document->PutAttribute(Bstr(L"Format").Get(), Variant::Text(L"HPGL/2").Get(), 2);
        ComPtr<IUnknown> contents;
        document->CreateChild(QM_CONTENTS, Variant::Text(L"Contents").Get(),
                              Variant::Boolean(true).Get(), contents.Put());
        contents_ = contents.As<IQmDocument>();
        return contents_ ? S_OK : E_FAIL;
    }
    HRESULT STDMETHODCALLTYPE GetNode(VARIANT, LONG, IUnknown** first) noexcept override {
        VARIANT_BOOL abort = VARIANT_FALSE;
        for (const LONG percent : {0, 50}) {
            if (sink_) sink_->Progress(percent, &abort);
            if (abort != VARIANT_FALSE) return E_ABORT;
            const HRESULT status = AddPage(percent == 0 ? L"Page 1" : L"Page 3");
            if (FAILED(status)) return status;
        }
        return contents_->GetChild(QM_CONTAINER, Variant::Text(L"Page 1").Get(), first);
    }

    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID riid,
                                                  IConnectionPoint** point) noexcept override {
        if (!IsEqualGUID(riid, __uuidof(_IQmFilterEvents))) return CONNECT_E_NOCONNECTION;
        return ComPtr<IConnectionPoint>(this).CopyTo(point);
    }
    HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) noexcept override {
        sink_ = Query<_IQmFilterEvents>(sink);
        *cookie = 7;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD) noexcept override {
        sink_.Reset();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints**) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE
    GetConnectionPointContainer(IConnectionPointContainer**) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections**) noexcept override {
        return E_NOTIMPL;
    }

  private:
    template <typename Interface>
    static ComPtr<Interface> Create(const wchar_t* progId) {
        CLSID clsid;
        ComPtr<Interface> object;
        if (SUCCEEDED(ClassIdFromProgId(progId, &clsid))) {
            CoCreateInstance(clsid, nullptr, CLSCTX_ALL, __uuidof(Interface), object.PutVoid());
        }
        return object;
    }
    HRESULT AddPage(const wchar_t* name) {
        const auto page = Create<IQmDocument>(L"Tessel.QmContainer");
        const auto layers = Create<IQmLayers>(L"Tessel.QmLayers");
        if (!page || !layers || !Create<IQmPenTable>(L"Tessel.QmPenTable")) return E_FAIL;
        ComPtr<IUnknown> child;
        page->CreateChild(QM_VECTOR_BLOCK, Variant::Integer(0).Get(), Variant::Integer(0).Get(),
                          child.Put());
        child.As<IQmBuildVectorData>()->AppendLine(0, 0, 100, 0);
        layers->AddLayer(1, Bstr(L"Layer no.: 1").Get(), 0xFF, 1);
        const auto put = [&](const wchar_t* key, const Variant& value) {
            page->PutAttribute(Bstr(key).Get(), value.Get(), 0);
        };
        put(L"NodeID", Variant::Text(name));
        put(L"Layers", Variant::Object(layers.Get()));
        put(L"InitialRotation", Variant::Double(90.0));
        return contents_->AddChild(Variant::Text(name).Get(), page.Get(), 0);
    }

    ComPtr<IQmDocument> contents_;
    ComPtr<_IQmFilterEvents> sink_;
};

class FakeFilterFactory final : public ComObject<IClassFactory> {
  public:
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID riid,
                                             void** object) noexcept override {
        return MakeObject<FakeFilter>()->QueryInterface(riid, object);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) noexcept override { return S_OK; }
};

}  // namespace qm
