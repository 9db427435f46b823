// qmfilter/plot.h over the embedded host and the import filter. Test:
// tests/embed/plot_test.cpp.
#include "qmfilter/plot.h"

#include <locale>
#include <sstream>

#include "embed/page_impl.h"
#include "host/host_object.h"
#include "host/page_summary.h"
#include "import/qm_filter_hpgl.h"
#include "platform/com_ptr.h"
#include "platform/text.h"

namespace qmfilter {

namespace {

qm::Reading ReadingOf(Reading reading, const Sheet& sheet) {
    if (reading == Reading::kEngine) return {};
    return qm::Reading::Plotter(qm::SheetOf(sheet.width, sheet.height).value_or(qm::Sheet()));
}

// The embedded host's classes and the import filter, on this thread while a plot is opened. The
// pages need neither.
class Components {
  public:
    explicit Components(const qm::Reading& reading) {
        const auto factory = qm::MakeQmFilterFactory(reading);
        if (!factory) throw std::bad_alloc();
        status_ = host_.Status();
        if (FAILED(status_)) return;
        status_ = CoRegisterClassObject(CLSID_QmFilterHPGL, factory.Get(), CLSCTX_INPROC_SERVER,
                                        REGCLS_MULTIPLEUSE, &cookie_);
    }
    ~Components() { CoRevokeClassObject(cookie_); }
    Components(const Components&) = delete;
    Components& operator=(const Components&) = delete;

    HRESULT Status() const noexcept { return status_; }

  private:
    qm::HostClasses host_;
    HRESULT status_ = S_OK;
    DWORD cookie_ = 0;
};

[[noreturn]] void Fail(HRESULT status, const std::string& name) {
    switch (status) {
        case E_OUTOFMEMORY:
            throw std::bad_alloc();
        case E_ABORT:
            throw PlotError(Status::kAborted, name + ": aborted");
        case E_FAIL:
            throw PlotError(Status::kNoPlot, name + ": not a plot file");
        default:
            throw PlotError(Status::kInternal,
                            name + ": cannot be opened: " + qm::StatusName(status));
    }
}

qm::OpenedPlot Load(IQmDataObject& source, const Progress& progress, const std::string& name,
                    const qm::Reading& reading) {
    const Components components(reading);
    if (FAILED(components.Status())) Fail(components.Status(), name);
    qm::OpenedPlot opened;
    const HRESULT status = qm::OpenPlot(source, progress, opened);
    if (status != S_OK) Fail(status, name);
    return opened;
}

// Nothing for an object.
std::string ValueText(const qm::Variant& value) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text.precision(9);
    switch (value.Type()) {
        case VT_BSTR:
            return qm::WideToUtf8(value.AsText());
        case VT_BOOL:
            return value.AsBoolean().value_or(false) ? "true" : "false";
        case VT_UNKNOWN:
            return {};
        default:
            if (const auto number = value.AsDouble()) text << *number;
            return text.str();
    }
}

std::vector<Page> MakePages(qm::OpenedPlot& opened) {
    std::vector<Page> pages;
    pages.reserve(opened.pages.size());
    for (qm::PlotPage& page : opened.pages) {
        pages.emplace_back(std::make_shared<const Page::Impl>(std::move(page)));
    }
    return pages;
}

}  // namespace

Plot Plot::Open(const std::string& path, const Progress& progress, Reading reading,
                const Sheet& sheet) {
    qm::ComPtr<IQmDataObject> source;
    if (FAILED(qm::OpenFileObject(qm::Utf8ToWide(path), source.Put()))) {
        throw PlotError(Status::kUnreadable, path + ": cannot be read");
    }
    qm::OpenedPlot opened = Load(*source, progress, path, ReadingOf(reading, sheet));
    Plot plot;
    plot.format_ = qm::WideToUtf8(opened.format);
    plot.pages_ = MakePages(opened);
    return plot;
}

Plot Plot::FromBytes(std::string_view bytes, const Progress& progress, Reading reading,
                     const Sheet& sheet) {
    qm::ComPtr<IQmDataObject> source;
    if (FAILED(qm::OpenMemoryObject(bytes, source.Put()))) throw std::bad_alloc();
    qm::OpenedPlot opened = Load(*source, progress, "plot", ReadingOf(reading, sheet));
    Plot plot;
    plot.format_ = qm::WideToUtf8(opened.format);
    plot.pages_ = MakePages(opened);
    return plot;
}

Page::Page(std::shared_ptr<const Impl> impl) noexcept : impl_(std::move(impl)) {}

std::string Page::Name() const { return qm::WideToUtf8(impl_->page.Name()); }
double Page::UnitsPerInch() const noexcept { return impl_->page.UnitsPerInch(); }
double Page::Rotation() const noexcept { return impl_->page.Rotation(); }

std::vector<Layer> Page::Layers() const {
    std::vector<Layer> layers;
    for (const qm::PageLayer& layer : impl_->page.Layers()) {
        layers.push_back({layer.number, qm::WideToUtf8(layer.name), layer.colour, layer.visible});
    }
    return layers;
}

std::vector<Attribute> Page::Attributes() const {
    std::vector<Attribute> attributes;
    for (const auto& entry : impl_->page.Attributes().Entries()) {
        if (entry.value.Type() == VT_UNKNOWN) continue;
        attributes.push_back({qm::WideToUtf8(entry.name), ValueText(entry.value)});
    }
    return attributes;
}

Extent Page::DrawnExtent() const {
    const qm::Extent extent = qm::GistOf(impl_->page.Drawing()).extent;
    return {extent.minX, extent.minY, extent.maxX, extent.maxY, extent.empty};
}

}  // namespace qmfilter
