#include "render/pdf/layers.h"

#include "platform/text.h"
#include "render/pdf/pdf_syntax.h"

namespace qm::pdf {

namespace {

// A plotter has 256 pens; pages may name theirs differently.
constexpr std::size_t kMaxLayers = 4096;

}  // namespace

ObjectNumber Layers::GroupOf(const PageSource& page, std::int32_t number) {
    std::string name = "Layer no.: " + std::to_string(number);
    bool visible = true;
    if (page.layers != nullptr) {
        for (const PageLayer& layer : *page.layers) {
            if (layer.number != number) continue;
            name = WideToUtf8(layer.name);
            visible = layer.visible;
        }
    }
    const Key key{number, name, visible};
    const auto known = groups_.find(key);
    if (known != groups_.end()) return known->second;
    if (groups_.size() == kMaxLayers) return 0;
    return groups_[key] = file_.WriteObject("<</Type/OCG/Name" + TextString(name) + ">>");
}

std::string Layers::Properties() const {
    if (groups_.empty()) return {};
    std::string all;
    std::string hidden;
    for (const auto& [key, group] : groups_) {
        all += Reference(group) + ' ';
        if (!std::get<bool>(key)) hidden += Reference(group) + ' ';
    }
    return "/OCProperties<</OCGs[" + all + "]/D<</Order[" + all + "]/OFF[" + hidden + "]>>>>";
}

}  // namespace qm::pdf
