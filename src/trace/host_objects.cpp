// See host_objects.h.
#include "trace/host_objects.h"

#include <algorithm>

#include "platform/bstr.h"
#include "trace/host_block.h"

namespace qm {

namespace {

std::string NodeName(HostLog& log, TracedNode::Kind kind) {
    switch (kind) {
        case TracedNode::Kind::kDocument:
            return "document";
        case TracedNode::Kind::kContents:
            return "contents";
        default:
            return log.Number("container");
    }
}

}  // namespace

// --- Nodes ---------------------------------------------------------------------------------------

TracedNode::TracedNode(const std::shared_ptr<HostLog>& log, Kind kind)
    : TracedObject(log, NodeName(*log, kind)), kind_(kind) {}

void* TracedNode::FindInterface(REFIID riid) noexcept {
    return IsEqualGUID(riid, __uuidof(IQmAttributes)) ? static_cast<IQmAttributes*>(this) : nullptr;
}

HRESULT TracedNode::PutAttribute(BSTR name, VARIANT value, LONG flags) noexcept {
    return Call("PutAttribute", name, value, flags);
}

HRESULT TracedNode::GetAttribute(BSTR /*name*/, LONG /*flags*/, VARIANT* value) noexcept {
    if (value != nullptr) VariantInit(value);
    return E_INVALIDARG;
}

HRESULT TracedNode::AddChild(VARIANT name, IUnknown* child, LONG flags) noexcept {
    if (name.vt != VT_BSTR || child == nullptr) return E_INVALIDARG;
    return Guarded([&] {
        const HRESULT status = Call("AddChild", name, child, flags);
        if (FAILED(status)) return status;
        children_.push_back({static_cast<SHORT>(QM_CONTAINER), std::wstring(ViewOf(name.bstrVal)),
                             ComPtr<IUnknown>(child)});
        return status;
    });
}

// A document holds contents, a container holds drawing blocks.
ComPtr<IUnknown> TracedNode::MakeChild(SHORT type) const {
    if (kind_ == Kind::kDocument && type == QM_CONTENTS) {
        return MakeObject<TracedNode>(Log(), Kind::kContents);
    }
    if (kind_ == Kind::kContainer && type == QM_VECTOR_BLOCK) {
        return MakeObject<TracedBlock>(Log()).As<IUnknown>();
    }
    return nullptr;
}

HRESULT TracedNode::CreateChild(SHORT type, VARIANT value, VARIANT option,
                                IUnknown** child) noexcept {
    if (child == nullptr) return E_POINTER;
    *child = nullptr;
    return Guarded([&]() -> HRESULT {
        const HRESULT status = Call("CreateChild", static_cast<LONG>(type), value, option);
        if (FAILED(status)) return status;
        const ComPtr<IUnknown> made = MakeChild(type);
        if (!made) return E_INVALIDARG;
        children_.push_back({type, std::wstring(), made});
        return made.CopyTo(child);
    });
}

HRESULT TracedNode::GetChild(SHORT type, VARIANT name, IUnknown** child) noexcept {
    if (child == nullptr) return E_POINTER;
    *child = nullptr;
    if (name.vt != VT_BSTR) return E_INVALIDARG;
    const HRESULT status = Call("GetChild", static_cast<LONG>(type), name);
    if (FAILED(status)) return status;
    const auto found = std::find_if(children_.begin(), children_.end(), [&](const Child& entry) {
        return entry.type == type && entry.name == ViewOf(name.bstrVal);
    });
    return found == children_.end() ? E_INVALIDARG : found->object.CopyTo(child);
}

// --- Layers and pens -----------------------------------------------------------------------------

TracedLayers::TracedLayers(const std::shared_ptr<HostLog>& log)
    : TracedObject(log, log->Number("layers")) {}

HRESULT TracedLayers::AddLayer(LONG number, BSTR name, ULONG color, LONG visible) noexcept {
    return Call("AddLayer", number, name, AsHex{color, 6}, visible);
}

HRESULT TracedLayers::GetCount(LONG* /*count*/) noexcept { return E_NOTIMPL; }

HRESULT TracedLayers::GetLayer(LONG /*index*/, LONG* /*number*/, BSTR* /*name*/, ULONG* /*color*/,
                               LONG* /*visible*/) noexcept {
    return E_NOTIMPL;
}

TracedPenTable::TracedPenTable(const std::shared_ptr<HostLog>& log)
    : TracedObject(log, log->Number("pentable")) {}

HRESULT TracedPenTable::AddPen(LONG pen, ULONG color, DOUBLE width, ULONG style) noexcept {
    return Call("AddPen", pen, AsHex{color, 8}, width, AsHex{style, 8});
}

HRESULT TracedPenTable::GetPen(LONG /*pen*/, LONG* /*style*/, LONG* /*color*/,
                               DOUBLE* /*width*/) noexcept {
    return E_NOTIMPL;
}

HRESULT TracedPenTable::GetPenCount(LONG* /*count*/) noexcept { return E_NOTIMPL; }

HRESULT TracedPenTable::GetPenNumber(LONG /*index*/, LONG* /*pen*/) noexcept { return E_NOTIMPL; }

}  // namespace qm
