// DocumentNode: a node of the embedded host's document tree (document, contents, page container).
// It makes its children itself. Test: tests/host/document_test.cpp.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/host_object.h"
#include "platform/com_object.h"
#include "qmfilter.h"

namespace qm {

class DocumentNode final : public ComObject<IQmDocument> {
  public:
    struct Child {
        SHORT type = 0;  // QM_OBJECT_TYPE
        std::wstring name;
        ComPtr<IUnknown> object;
    };

    static constexpr IID kIdentity = {
        0x6e7c5b1a, 0x0f2d, 0x4c55, {0x9a, 0x41, 0x7d, 0x5e, 0x20, 0xc3, 0x81, 0x11}};

    // `type`: QM_DOCUMENT, QM_CONTENTS or QM_CONTAINER. `wrapper` gets the children that the node
    // and its nodes make; null for none.
    explicit DocumentNode(SHORT type, std::shared_ptr<ObjectWrapper> wrapper = nullptr) noexcept
        : type_(type), wrapper_(std::move(wrapper)) {}

    SHORT Type() const noexcept { return type_; }
    const AttributeMap& Attributes() const noexcept { return attributes_; }
    // False once an attribute or a child was lost for want of memory.
    bool Complete() const noexcept { return complete_ && attributes_.Complete(); }
    // In the order of adding.
    const std::vector<Child>& Children() const noexcept { return children_; }

    HRESULT STDMETHODCALLTYPE PutAttribute(BSTR name, VARIANT value, LONG flags) noexcept override;
    HRESULT STDMETHODCALLTYPE GetAttribute(BSTR name, LONG flags, VARIANT* value) noexcept override;
    // E_INVALIDARG for a null child or the node itself.
    HRESULT STDMETHODCALLTYPE AddChild(VARIANT name, IUnknown* child, LONG flags) noexcept override;
    // A document makes its contents node, a contents node makes page containers (both named by
    // `value`), a container makes drawing blocks (which have no name).
    HRESULT STDMETHODCALLTYPE CreateChild(SHORT type, VARIANT value, VARIANT option,
                                          IUnknown** child) noexcept override;
    HRESULT STDMETHODCALLTYPE GetChild(SHORT type, VARIANT name,
                                       IUnknown** child) noexcept override;

  protected:
    // An IQmDocument is an IQmAttributes too.
    void* FindInterface(REFIID riid) noexcept override;

  private:
    HRESULT MakeChild(SHORT type, ComPtr<IUnknown>& child) const noexcept;
    HRESULT Append(SHORT type, const VARIANT& name, ComPtr<IUnknown> child) noexcept;

    SHORT type_;
    std::shared_ptr<ObjectWrapper> wrapper_;
    AttributeMap attributes_;
    std::vector<Child> children_;
    bool complete_ = true;
};

}  // namespace qm
