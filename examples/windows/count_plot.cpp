// count_plot DLL PLOT: a whole host for Windows, which prints how many primitives each page has. It
// is built with nothing but the DLL and the header that type_library_header wrote of it, and the
// DLL need not be registered. Test: tests/server/windows/from_dll_test.sh.
#include "qmfilter_dll.h"  // type_library_header QmFilter_HPGL.dll qmfilter_dll.h

#include <shlwapi.h>
#include <wrl/client.h>

#include <cstdio>

namespace {

using Microsoft::WRL::ComPtr;

// An object of the host, with interface I: made by `new`, gone with its last reference.
template <typename I>
class Object : public I {
  public:
    STDMETHODIMP QueryInterface(REFIID id, void** object) override {
        const bool known = id == __uuidof(I) || id == __uuidof(IUnknown);
        *object = known ? static_cast<I*>(this) : nullptr;
        if (known) AddRef();
        return known ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
    STDMETHODIMP_(ULONG) Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }

  protected:
    virtual ~Object() = default;

  private:
    ULONG references_ = 0;
};

class File final : public Object<IQmDataObject> {
  public:
    explicit File(const wchar_t* path) : path_(path) {
        SHCreateStreamOnFileEx(path, STGM_READ, 0, FALSE, nullptr, stream_.GetAddressOf());
    }
    STDMETHODIMP get_Storage(IUnknown** value) override {
        return stream_ ? stream_->QueryInterface(IID_PPV_ARGS(value)) : E_FAIL;
    }
    STDMETHODIMP get_StorageName(BSTR* value) override {
        *value = SysAllocString(path_);
        return S_OK;
    }

  private:
    const wchar_t* path_;
    ComPtr<IStream> stream_;
};

// Receives a page's primitives, and counts them.
class Drawing final : public Object<IQmBuildVectorData> {
  public:
    int lines = 0, curves = 0, areas = 0, texts = 0, pictures = 0;

    STDMETHODIMP AppendLine(LONG, LONG, LONG, LONG) override { return Add(lines); }
    STDMETHODIMP AppendPolygon(LONG, LONG*, VARIANT_BOOL filled) override {
        return Add(filled != VARIANT_FALSE ? areas : lines);
    }
    STDMETHODIMP AppendRectangle(LONG, LONG, LONG, LONG, VARIANT_BOOL filled) override {
        return Add(filled != VARIANT_FALSE ? areas : lines);
    }
    STDMETHODIMP AppendCircle(LONG, LONG, LONG, VARIANT_BOOL filled) override {
        return Add(filled != VARIANT_FALSE ? areas : curves);
    }
    STDMETHODIMP AppendArc3(LONG, LONG, LONG, LONG, FLOAT, FLOAT) override { return Add(curves); }
    STDMETHODIMP AppendPolyPolygon(LONG, LONG*, LONG, LONG*, VARIANT_BOOL) override {
        return Add(areas);
    }
    STDMETHODIMP AppendTextElement(LONG, LONG, LONG, LONG, LONG, LONG, LONG, BSTR) override {
        return Add(texts);
    }
    STDMETHODIMP AppendDib(LONG, LONG, LONG, LONG, LONG, BYTE*, LONG) override {
        return Add(pictures);
    }
    STDMETHODIMP IsEmpty(VARIANT_BOOL* empty) override {
        *empty = lines + curves + areas + texts + pictures == 0 ? VARIANT_TRUE : VARIANT_FALSE;
        return S_OK;
    }
    // How primitives look, which a host that draws them would keep.
    STDMETHODIMP AppendDrawColor1(LONG, LONG, LONG) override { return S_OK; }
    STDMETHODIMP AppendFillColor1(LONG, LONG, LONG) override { return S_OK; }
    STDMETHODIMP AppendLayer(LONG) override { return S_OK; }
    STDMETHODIMP AppendPen(LONG) override { return S_OK; }
    STDMETHODIMP AppendLineStyle(LONG) override { return S_OK; }
    STDMETHODIMP AppendLineWidth(LONG) override { return S_OK; }
    STDMETHODIMP AppendDrawMode(LONG) override { return S_OK; }
    STDMETHODIMP AppendLineDash(LONG, LONG*) override { return S_OK; }
    STDMETHODIMP AppendLineAttributes(LONG) override { return S_OK; }
    STDMETHODIMP DefineFillPattern(LONG, LONG, LONG, LONG, BYTE*) override { return S_OK; }
    STDMETHODIMP AppendFillStyle(LONG, LONG) override { return S_OK; }
    STDMETHODIMP AppendClipRegion(LONG, LONG*) override { return S_OK; }
    STDMETHODIMP EndClipRegion() override { return S_OK; }
    STDMETHODIMP EndOfData() override { return S_OK; }

  private:
    static HRESULT Add(int& count) {
        ++count;
        return S_OK;
    }
};

// The document, its contents, and each page.
class Node final : public Object<IQmDocument> {
  public:
    STDMETHODIMP PutAttribute(BSTR, VARIANT, LONG) override { return S_OK; }
    STDMETHODIMP GetAttribute(BSTR, LONG, VARIANT* value) override {
        VariantInit(value);
        return E_INVALIDARG;
    }
    STDMETHODIMP CreateChild(SHORT type, VARIANT, VARIANT, IUnknown** child) override {
        if (type == QM_VECTOR_BLOCK) return (drawing_ = new Drawing).CopyTo(IID_PPV_ARGS(child));
        return ComPtr<Node>(new Node).CopyTo(IID_PPV_ARGS(child));
    }
    // A page that is complete; a host that shows it keeps a reference.
    STDMETHODIMP AddChild(VARIANT name, IUnknown* child, LONG) override {
        const Drawing& page = *static_cast<Node*>(child)->drawing_.Get();
        std::printf("%ls: %d lines, %d curves, %d areas, %d texts, %d pictures\n", name.bstrVal,
                    page.lines, page.curves, page.areas, page.texts, page.pictures);
        return S_OK;
    }
    STDMETHODIMP GetChild(SHORT, VARIANT, IUnknown** child) override {
        *child = nullptr;
        return E_INVALIDARG;
    }

  private:
    ComPtr<Drawing> drawing_;
};

// The class "Tessel.QmContainer": pages. Without classes for layers and pens the filter does
// without them.
class PageClass final : public Object<IClassFactory> {
  public:
    STDMETHODIMP CreateInstance(IUnknown*, REFIID id, void** object) override {
        return ComPtr<Node>(new Node).CopyTo(id, object);
    }
    STDMETHODIMP LockServer(BOOL) override { return S_OK; }
};

}  // namespace

int wmain(int count, wchar_t** arguments) {
    if (count != 3) return 2;
    CoInitialize(nullptr);
    const auto getClass = reinterpret_cast<LPFNGETCLASSOBJECT>(
        reinterpret_cast<void*>(GetProcAddress(LoadLibraryW(arguments[1]), "DllGetClassObject")));
    ComPtr<IClassFactory> factory;
    ComPtr<IQmFilter> filter;
    if (getClass == nullptr ||
        FAILED(getClass(__uuidof(QmFilterHPGL), IID_PPV_ARGS(factory.GetAddressOf()))) ||
        FAILED(factory->CreateInstance(nullptr, IID_PPV_ARGS(filter.GetAddressOf())))) {
        std::puts("the DLL has no filter");
        return 2;
    }

    // The filter makes pages by the name of their class. What the registry says it is, an engine's
    // class or this program's, is PageClass here and now.
    CLSID pages;
    if (FAILED(CLSIDFromProgID(L"Tessel.QmContainer", &pages))) {
        std::puts("Tessel.QmContainer is not registered");
        return 2;
    }
    DWORD cookie = 0;
    CoRegisterClassObject(pages, ComPtr<PageClass>(new PageClass).Get(), CLSCTX_INPROC_SERVER,
                          REGCLS_MULTIPLEUSE, &cookie);

    const ComPtr<File> file = new File(arguments[2]);
    const ComPtr<Node> document = new Node;
    HRESULT status = filter->OpenDocument(file.Get(), document.Get(), 0);
    if (SUCCEEDED(status)) {
        ComPtr<IUnknown> firstPage;
        status = filter->GetNode(VARIANT{}, 0, firstPage.GetAddressOf());
    } else {
        std::puts("no plot");
    }
    CoRevokeClassObject(cookie);
    return FAILED(status);
}
