// See layers_and_pens.h.
#include "host/layers_and_pens.h"

#include "platform/variant.h"

namespace qm {

namespace {

// A pen's colour or style that AddPen leaves open.
constexpr ULONG kNotGiven = 0xFFFFFFFF;

}  // namespace

// ------------------------------------------------------------------------------------------ layers

HRESULT LayerCollection::AddLayer(LONG number, BSTR name, ULONG colour, LONG visible) noexcept {
    const HRESULT status = Guarded([&]() -> HRESULT {
        layers_.push_back({number, std::wstring(ViewOf(name)), colour, visible != 0});
        return S_OK;
    });
    if (FAILED(status)) complete_ = false;
    return status;
}

HRESULT LayerCollection::GetCount(LONG* count) noexcept {
    if (count == nullptr) return E_POINTER;
    *count = static_cast<LONG>(layers_.size());
    return complete_ ? S_OK : E_OUTOFMEMORY;
}

HRESULT LayerCollection::GetLayer(LONG index, LONG* number, BSTR* name, ULONG* colour,
                                  LONG* visible) noexcept {
    if (name != nullptr) *name = nullptr;
    if (index < 0 || static_cast<std::size_t>(index) >= layers_.size()) return E_INVALIDARG;
    const PageLayer& layer = layers_[static_cast<std::size_t>(index)];
    if (number != nullptr) *number = layer.number;
    if (colour != nullptr) *colour = layer.colour;
    if (visible != nullptr) *visible = layer.visible ? 1 : 0;
    return Guarded([&]() -> HRESULT {
        if (name != nullptr) *name = Bstr(layer.name).Detach();
        return S_OK;
    });
}

std::vector<PageLayer> ReadLayers(IQmLayers* layers) {
    std::vector<PageLayer> result;
    LONG count = 0;
    if (layers == nullptr || FAILED(layers->GetCount(&count))) return result;
    for (LONG i = 0; i < count; ++i) {
        LONG number = 0;
        Bstr name;
        ULONG colour = 0;
        LONG visible = 0;
        if (FAILED(layers->GetLayer(i, &number, name.Put(), &colour, &visible))) break;
        result.push_back({number, std::wstring(name.View()), colour, visible != 0});
    }
    return result;
}

// -------------------------------------------------------------------------------------------- pens

PenTable::Pen* PenTable::Find(LONG pen) noexcept {
    for (Pen& candidate : pens_) {
        if (candidate.number == pen) return &candidate;
    }
    return nullptr;
}

HRESULT PenTable::AddPen(LONG pen, ULONG colour, DOUBLE width, ULONG style) noexcept {
    const Pen entry{pen, colour, width, style};
    if (Pen* const known = Find(pen); known != nullptr) {
        *known = entry;
        return S_OK;
    }
    const HRESULT status = Guarded([&]() -> HRESULT {
        pens_.push_back(entry);
        return S_OK;
    });
    if (FAILED(status)) complete_ = false;
    return status;
}

HRESULT PenTable::GetPen(LONG pen, LONG* style, LONG* colour, DOUBLE* width) noexcept {
    const Pen* const found = Find(pen);
    if (found == nullptr) return E_INVALIDARG;
    if (style != nullptr && found->style != kNotGiven) *style = static_cast<LONG>(found->style);
    if (colour != nullptr && found->colour != kNotGiven) *colour = static_cast<LONG>(found->colour);
    if (width != nullptr && found->width >= 0.0) *width = found->width;
    return S_OK;
}

HRESULT PenTable::GetPenCount(LONG* count) noexcept {
    if (count == nullptr) return E_POINTER;
    *count = static_cast<LONG>(pens_.size());
    return complete_ ? S_OK : E_OUTOFMEMORY;
}

HRESULT PenTable::GetPenNumber(LONG index, LONG* pen) noexcept {
    if (pen == nullptr) return E_POINTER;
    if (index < 0 || static_cast<std::size_t>(index) >= pens_.size()) return E_INVALIDARG;
    *pen = pens_[static_cast<std::size_t>(index)].number;
    return S_OK;
}

}  // namespace qm
