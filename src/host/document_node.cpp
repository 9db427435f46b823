// See document_node.h.
#include "host/document_node.h"

#include "host/drawing_block.h"

namespace qm {

namespace {

std::wstring_view NameOf(const VARIANT& value) {
    return value.vt == VT_BSTR ? ViewOf(value.bstrVal) : std::wstring_view();
}

// What a node added from outside is: ours tells, a foreign one can only be a page.
SHORT TypeOf(IUnknown* child) {
    const auto node = OwnObject<DocumentNode>(child);
    return node ? node->Type() : SHORT{QM_CONTAINER};
}

bool CanHold(SHORT parent, SHORT child) {
    return (parent == QM_DOCUMENT && child == QM_CONTENTS) ||
           (parent == QM_CONTENTS && child == QM_CONTAINER) ||
           (parent == QM_CONTAINER && child == QM_VECTOR_BLOCK);
}

}  // namespace

void* DocumentNode::FindInterface(REFIID riid) noexcept {
    if (IsEqualGUID(riid, kIdentity)) return this;
    return IsEqualGUID(riid, __uuidof(IQmAttributes)) ? static_cast<IQmAttributes*>(this) : nullptr;
}

HRESULT DocumentNode::PutAttribute(BSTR name, VARIANT value, LONG flags) noexcept {
    return attributes_.Put(name, value, flags);
}

HRESULT DocumentNode::GetAttribute(BSTR name, LONG, VARIANT* value) noexcept {
    return attributes_.Get(name, value);
}

HRESULT DocumentNode::Append(SHORT type, const VARIANT& name, ComPtr<IUnknown> child) noexcept {
    const HRESULT status = Guarded([&]() -> HRESULT {
        children_.push_back({type, std::wstring(NameOf(name)), std::move(child)});
        return S_OK;
    });
    if (FAILED(status)) complete_ = false;
    return status;
}

HRESULT DocumentNode::AddChild(VARIANT name, IUnknown* child, LONG) noexcept {
    // A node that holds itself would never be released.
    if (child == nullptr || OwnObject<DocumentNode>(child).Get() == this) {
        return E_INVALIDARG;
    }
    return Append(TypeOf(child), name, ComPtr<IUnknown>(child));
}

HRESULT DocumentNode::MakeChild(SHORT type, ComPtr<IUnknown>& child) const noexcept {
    child = type == QM_VECTOR_BLOCK ? MakeObject<DrawingBlock>().As<IUnknown>()
                                    : MakeObject<DocumentNode>(type, wrapper_).As<IUnknown>();
    if (!child) return E_OUTOFMEMORY;
    return wrapper_ ? wrapper_->Wrap(ObjectWrapper::Origin::kParent, child) : S_OK;
}

HRESULT DocumentNode::CreateChild(SHORT type, VARIANT value, VARIANT, IUnknown** child) noexcept {
    if (child == nullptr) return E_POINTER;
    *child = nullptr;
    if (!CanHold(type_, type)) return E_INVALIDARG;
    ComPtr<IUnknown> made;
    HRESULT status = MakeChild(type, made);
    if (SUCCEEDED(status)) status = Append(type, value, made);
    return SUCCEEDED(status) ? made.CopyTo(child) : status;
}

HRESULT DocumentNode::GetChild(SHORT type, VARIANT name, IUnknown** child) noexcept {
    if (child == nullptr) return E_POINTER;
    *child = nullptr;
    for (const Child& candidate : children_) {
        if (candidate.type == type && candidate.name == NameOf(name)) {
            return candidate.object.CopyTo(child);
        }
    }
    return E_INVALIDARG;
}

}  // namespace qm
