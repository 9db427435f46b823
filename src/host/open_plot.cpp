// See open_plot.h.
#include "host/open_plot.h"

#include <utility>

#include "common/units.h"
#include "host/document_node.h"
#include "host/drawing_block.h"
#include "host/layers_and_pens.h"
#include "host/source_and_events.h"

namespace qm {

namespace {

// A part of an object, which is released with the last copy of the pointer.
template <typename Part, typename Object>
std::shared_ptr<const Part> Share(Object& object, const Part& part) {
    const auto owner = std::make_shared<ComPtr<Object>>(&object);
    return {owner, &part};
}

// The drawing block of a page; null when the page is not one of ours.
ComPtr<DrawingBlock> BlockOf(const DocumentNode& container) {
    for (const DocumentNode::Child& child : container.Children()) {
        auto block = OwnObject<DrawingBlock>(child.object.Get());
        if (block) return block;
    }
    return nullptr;
}

std::uint64_t BytesOf(IQmDataObject& source) {
    ComPtr<IUnknown> storage;
    source.get_Storage(storage.Put());
    const auto stream = storage.As<IStream>();
    STATSTG status{};
    if (!stream || FAILED(stream->Stat(&status, STATFLAG_NONAME))) return 0;
    return status.cbSize.QuadPart;
}

bool IsComplete(const DocumentNode& page, const DrawingBlock& block) {
    const auto layers = page.Attributes().Object<IQmLayers>(L"Layers");
    const auto pens = page.Attributes().Object<IQmPenTable>(L"PenTable");
    LONG count = 0;
    return page.Complete() && block.Complete() && layers && SUCCEEDED(layers->GetCount(&count)) &&
           pens && SUCCEEDED(pens->GetPenCount(&count));
}

// The document as the filter left it: document > contents > pages. False when something is missing
// for want of memory, which the filter does not look at.
bool CollectPages(const DocumentNode& document, std::uint64_t bytes, OpenedPlot& plot) {
    bool complete = document.Complete();
    if (const Variant* const format = document.Attributes().Find(L"Format")) {
        plot.format = format->AsText();
    }
    for (const DocumentNode::Child& part : document.Children()) {
        const auto contents = OwnObject<DocumentNode>(part.object.Get());
        if (!contents || contents->Type() != QM_CONTENTS) continue;
        complete = complete && contents->Complete();
        for (const DocumentNode::Child& child : contents->Children()) {
            const auto page = OwnObject<DocumentNode>(child.object.Get());
            if (!page) continue;
            const auto block = BlockOf(*page);
            if (!block) continue;
            complete = complete && IsComplete(*page, *block);
            plot.pages.emplace_back(*page, *block, bytes);
        }
    }
    return complete;
}

HRESULT Load(IQmDataObject& source, const ProgressCallback& progress, OpenedPlot& plot) {
    plot = OpenedPlot();
    const auto document = MakeObject<DocumentNode>(SHORT{QM_DOCUMENT});
    const auto sink = MakeObject<ProgressSink>(progress);
    if (!document || !sink) return E_OUTOFMEMORY;

    // 1. The filter, an object of its own for each document.
    ComPtr<IQmFilter> filter;
    HRESULT status = CoCreateInstance(CLSID_QmFilterHPGL, nullptr, CLSCTX_INPROC_SERVER,
                                      __uuidof(IQmFilter), filter.PutVoid());
    if (FAILED(status)) return status;
    // 2. Is it a plot? The filter looks at the bytes and gives the document its contents node.
    status = filter->OpenDocument(&source, document.Get(), 0);
    if (FAILED(status)) return status;
    // 3. Read it, all pages at once; an empty VARIANT names the first. Progress comes meanwhile, on
    // this thread.
    const SinkConnection events(filter.Get(), __uuidof(_IQmFilterEvents), sink.Get());
    ComPtr<IUnknown> first;
    status = filter->GetNode(Variant().Get(), 0, first.Put());
    // 4. The pages hang in the document, also those finished before an abort.
    const bool complete = CollectPages(*document, BytesOf(source), plot);
    return status == S_OK && !complete ? E_OUTOFMEMORY : status;
}

}  // namespace

PlotPage::PlotPage(DocumentNode& container, DrawingBlock& block, std::uint64_t sourceBytes)
    : attributes_(Share(container, container.Attributes())),
      drawing_(Share(block, block.Drawing())),
      layers_(ReadLayers(attributes_->Object<IQmLayers>(L"Layers").Get())),
      unitsPerInch_(attributes_->Number(L"LpiX", kUnitsPerInch)),
      rotation_(attributes_->Number(L"InitialRotation", 0.0)),
      sourceBytes_(sourceBytes) {
    if (const Variant* const name = attributes_->Find(L"NodeID")) name_ = name->AsText();
    if (!(unitsPerInch_ > 0.0)) unitsPerInch_ = kUnitsPerInch;
}

PlotPage PlotPage::With(std::shared_ptr<const DisplayList> drawing, std::vector<PageLayer> layers,
                        const Extent& sheet) const {
    PlotPage page = *this;
    page.drawing_ = std::move(drawing);
    page.layers_ = std::move(layers);
    page.sheet_ = sheet;
    return page;
}

PlotPage PlotPage::Turned(double degrees) const {
    PlotPage page = *this;
    page.rotation_ += degrees;
    return page;
}

HRESULT OpenPlot(IQmDataObject& source, const ProgressCallback& progress,
                 OpenedPlot& plot) noexcept {
    return Guarded([&] { return Load(source, progress, plot); });
}

}  // namespace qm
