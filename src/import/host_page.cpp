// See host_page.h. Names, order and flags of the attributes are the host's contract.
#include "import/host_page.h"

#include <string>

#include "common/numbers.h"
#include "common/units.h"
#include "platform/variant.h"

namespace qm {

namespace {

constexpr double kNoWidth = -1.0;
constexpr ULONG kNotGiven = 0xFFFFFFFF;
constexpr LONG kTransparentColor = 0xFFFFFF;

void Put(IQmAttributes& target, std::wstring_view name, const Variant& value, LONG flags) {
    target.PutAttribute(Bstr(name).Get(), value.Get(), flags);
}

std::wstring PageName(std::int32_t pageCounter) {
    return L"Page " + std::to_wstring(WrapAdd(pageCounter, 1));
}

void PutLayers(IQmDocument& container, const PageFacts& facts) {
    const auto layers = CreateHostObject<IQmLayers>(L"Tessel.QmLayers");
    if (!layers) return;
    for (std::int32_t number = 0; number <= facts.highestLayer; ++number) {
        const Layer& layer = facts.layers[static_cast<std::size_t>(number)];
        if (!layer.defined) continue;
        const Bstr name(L"Layer no.: " + std::to_wstring(number));
        layers->AddLayer(number, name.Get(), layer.colour, 1);
    }
    Put(container, L"Layers", Variant::Object(layers.Get()), kStructureFlags);
}

void PutPens(IQmDocument& container, const PageFacts& facts) {
    const auto pens = CreateHostObject<IQmPenTable>(L"Tessel.QmPenTable");
    if (!pens) return;
    for (std::size_t pen = 0; pen < facts.penUsed.size(); ++pen) {
        if (facts.penUsed[pen])
            pens->AddPen(static_cast<LONG>(pen), kNotGiven, kNoWidth, kNotGiven);
    }
    Put(container, L"PenTable", Variant::Object(pens.Get()), kStructureFlags);
}

void PutAttributes(IQmDocument& container, const PageFacts& facts, std::wstring_view name) {
    const Variant yes = Variant::Boolean(true);
    const Variant resolution = Variant::Double(kUnitsPerInch);
    Put(container, L"NodeID", Variant::Text(name), kStructureFlags);
    Put(container, L"Loaded", yes, kStructureFlags);
    Put(container, L"LpiX", resolution, kPlainFlags);
    Put(container, L"LpiY", resolution, kPlainFlags);
    Put(container, L"DirectionY", yes, kPlainFlags);
    // Quirk: the counter also counts empty pages, so a document whose first page was empty has no
    // page marked "Default".
    if (facts.pageCounter == 0) Put(container, L"Default", yes, kPlainFlags);
    if (facts.rasterPresent) Put(container, L"UseBitmapPrinting", yes, kPlainFlags);
    if (facts.searchable) Put(container, L"SearchAble", yes, kPlainFlags);
    if (facts.rotation != 0) {
        Put(container, L"InitialRotation", Variant::Double(facts.rotation), kPlainFlags);
    }
}

// An object that passes questions on to another answers with the other's interface, and would not
// see the calls; the two are told apart by their identity.
ComPtr<DrawingHandover> HandoverOf(const ComPtr<IQmBuildVectorData>& block) {
    auto handover = block.As<DrawingHandover>();
    if (handover.As<IUnknown>() == block.As<IUnknown>()) return handover;
    return nullptr;
}

}  // namespace

HostPage CreatePage(LONG blockValue) {
    HostPage page;
    page.container = CreateHostObject<IQmDocument>(L"Tessel.QmContainer");
    if (!page.container) return page;
    ComPtr<IUnknown> child;
    page.container->CreateChild(QM_VECTOR_BLOCK, Variant::Integer(blockValue).Get(),
                                Variant::Integer(0).Get(), child.Put());
    page.block = child.As<IQmBuildVectorData>();
    page.handover = HandoverOf(page.block);
    const auto attributes = child.As<IQmAttributes>();
    if (page.block && attributes) {
        Put(*attributes, L"TransparentColor", Variant::Integer(kTransparentColor), kStructureFlags);
    }
    return page;
}

HRESULT CloseBlock(const HostPage& page, bool& empty) {
    if (!page.block) return E_FAIL;
    page.block->EndOfData();
    VARIANT_BOOL answer = VARIANT_FALSE;
    const HRESULT status = page.block->IsEmpty(&answer);
    if (SUCCEEDED(status)) empty = answer != VARIANT_FALSE;
    return status;
}

void FinishPage(IQmDocument& root, IQmDocument& container, const PageFacts& facts) {
    const std::wstring name = PageName(facts.pageCounter);
    root.AddChild(Variant::Text(name).Get(), &container, 0);
    PutLayers(container, facts);
    PutPens(container, facts);
    PutAttributes(container, facts, name);
}

}  // namespace qm
