// DocumentNode: a node of the embedded host's document tree (document, contents, page container).
// Test: tests/host/document_test.cpp.
#pragma once

#include <string>
#include <vector>

#include "host/attribute_map.h"
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

    // `type`: QM_DOCUMENT, QM_CONTENTS or QM_CONTAINER.
    explicit DocumentNode(SHORT type) noexcept : type_(type) {}

    SHORT Type() const noexcept { return type_; }
    const AttributeMap& Attributes() const noexcept { return attributes_; }
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
    void* FindInterface(REFIID riid) noexcept override;

  private:
    ComPtr<IUnknown> MakeChild(SHORT type) const noexcept;
    HRESULT Append(SHORT type, const VARIANT& name, ComPtr<IUnknown> child) noexcept;

    SHORT type_;
    AttributeMap attributes_;
    std::vector<Child> children_;
};

}  // namespace qm
