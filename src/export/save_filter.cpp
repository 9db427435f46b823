// See save_filter.h.
#include "export/save_filter.h"

#include "export/plot_output.h"
#include "export/plot_text.h"
#include "export/save_structure.h"

namespace qm {
namespace {

ComPtr<IStream> StreamOf(IQmDataObject* target) noexcept {
    ComPtr<IUnknown> storage;
    if (target == nullptr || FAILED(target->get_Storage(storage.Put()))) return nullptr;
    return storage.As<IStream>();
}

void ReadUserDpi(IQmAttributes* settings, ExportSettings& structure) noexcept {
    const auto value = ReadAttribute(settings, L"UserDPI");
    if (!value) return;
    structure.settings = ComPtr<IUnknown>(settings);
    const double dpi = RealOf(value->Get()).value_or(0);
    if (dpi > 0) structure.userDpi = dpi;
}

void ReadBoolean(IQmAttributes* settings, const wchar_t* name, bool& flag) noexcept {
    if (const auto value = ReadAttribute(settings, name)) flag = SettingIsTrue(value->Get());
}

}  // namespace

HRESULT SaveFilter::CreateDocument(IQmDataObject* target, IUnknown* settings,
                                   IUnknown** saveObject) noexcept {
    if (saveObject == nullptr) return E_POINTER;
    *saveObject = nullptr;
    const auto structure = MakeObject<CQmSaveStructure>();
    if (!structure) return E_OUTOFMEMORY;
    // The host gets the structure even when there is no stream; its sinks' writes then fail.
    *saveObject = ComPtr<IUnknown>(structure).Detach();
    stream_ = StreamOf(target);
    if (!stream_) return E_FAIL;
    structure->Settings().stream = stream_;
    const auto attributes = Query<IQmAttributes>(settings);
    Configure(attributes.Get(), structure->Settings());
    return PlotOutput(stream_).Write(texts_.header);
}

HRESULT SaveFilter::CloseDocument() noexcept { return PlotOutput(stream_).Write(texts_.trailer); }

CQmFilterSaveHPGL::CQmFilterSaveHPGL()
    : SaveFilter({plot_text::kVectorHeader, plot_text::kVectorTrailer}) {}

void CQmFilterSaveHPGL::Configure(IQmAttributes* settings, ExportSettings& structure) noexcept {
    ReadUserDpi(settings, structure);
    structure.mono = ReadAttribute(settings, L"MonoColor").has_value();
    ReadBoolean(settings, L"UsePenTable", usePenTable_);
    ReadBoolean(settings, L"UseLineWeights", useLineWeights_);
    structure.usePenTable = usePenTable_;
    structure.useLineWeights = useLineWeights_;
}

CQmFilterSaveHPRTL::CQmFilterSaveHPRTL()
    : SaveFilter({plot_text::kRasterHeader, plot_text::kRasterTrailer}) {}

void CQmFilterSaveHPRTL::Configure(IQmAttributes* settings, ExportSettings& structure) noexcept {
    ReadUserDpi(settings, structure);
    structure.rasterMode = true;
}

}  // namespace qm
