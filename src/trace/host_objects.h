// The tracing host's document tree: document, contents and page containers are TracedNodes; layers
// and pen tables write what is added to them.
//
// Test: tests/trace/host_trace_test.cpp.
#pragma once

#include <string>
#include <vector>

#include "platform/com_ptr.h"
#include "trace/host_log.h"

namespace qm {

class TracedNode final : public TracedObject<IQmDocument> {
  public:
    // The document and the contents node are called "document" and "contents"; containers take the
    // next number.
    enum class Kind { kDocument, kContents, kContainer };

    TracedNode(const std::shared_ptr<HostLog>& log, Kind kind);

    HRESULT STDMETHODCALLTYPE PutAttribute(BSTR name, VARIANT value, LONG flags) noexcept override;
    // Nothing is kept: E_INVALIDARG, as for any absent attribute.
    HRESULT STDMETHODCALLTYPE GetAttribute(BSTR name, LONG flags, VARIANT* value) noexcept override;
    HRESULT STDMETHODCALLTYPE AddChild(VARIANT name, IUnknown* child, LONG flags) noexcept override;
    HRESULT STDMETHODCALLTYPE CreateChild(SHORT type, VARIANT value, VARIANT option,
                                          IUnknown** child) noexcept override;
    HRESULT STDMETHODCALLTYPE GetChild(SHORT type, VARIANT name,
                                       IUnknown** child) noexcept override;

  protected:
    // An IQmDocument is an IQmAttributes too.
    void* FindInterface(REFIID riid) noexcept override;

  private:
    struct Child {
        SHORT type;
        std::wstring name;
        ComPtr<IUnknown> object;
    };
    ComPtr<IUnknown> MakeChild(SHORT type) const;

    Kind kind_;
    std::vector<Child> children_;
};

class TracedLayers final : public TracedObject<IQmLayers> {
  public:
    explicit TracedLayers(const std::shared_ptr<HostLog>& log);

    HRESULT STDMETHODCALLTYPE AddLayer(LONG number, BSTR name, ULONG color,
                                       LONG visible) noexcept override;
    // Not needed by an import: E_NOTIMPL.
    HRESULT STDMETHODCALLTYPE GetCount(LONG* count) noexcept override;
    HRESULT STDMETHODCALLTYPE GetLayer(LONG index, LONG* number, BSTR* name, ULONG* color,
                                       LONG* visible) noexcept override;
};

class TracedPenTable final : public TracedObject<IQmPenTable> {
  public:
    explicit TracedPenTable(const std::shared_ptr<HostLog>& log);

    HRESULT STDMETHODCALLTYPE AddPen(LONG pen, ULONG color, DOUBLE width,
                                     ULONG style) noexcept override;
    // Not needed by an import: E_NOTIMPL.
    HRESULT STDMETHODCALLTYPE GetPen(LONG pen, LONG* style, LONG* color,
                                     DOUBLE* width) noexcept override;
    HRESULT STDMETHODCALLTYPE GetPenCount(LONG* count) noexcept override;
    HRESULT STDMETHODCALLTYPE GetPenNumber(LONG index, LONG* pen) noexcept override;
};

}  // namespace qm
