#include "host/layers.h"

#include "platform/bstr.h"

namespace qm {

HRESULT LayerCollection::AddLayer(LONG number, BSTR name, ULONG colour, LONG visible) noexcept {
    return Guarded([&]() -> HRESULT {
        layers_.push_back({number, std::wstring(ViewOf(name)), colour, visible != 0});
        return S_OK;
    });
}

HRESULT LayerCollection::GetCount(LONG* count) noexcept {
    if (count == nullptr) return E_POINTER;
    *count = static_cast<LONG>(layers_.size());
    return S_OK;
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
        PageLayer layer;
        Bstr name;
        LONG visible = 0;
        if (FAILED(layers->GetLayer(i, &layer.number, name.Put(), &layer.colour, &visible))) break;
        layer.name = name.View();
        layer.visible = visible != 0;
        result.push_back(std::move(layer));
    }
    return result;
}

}  // namespace qm
