// See save_structure.h.
#include "export/save_structure.h"

#include <string_view>

#include "export/plot_output.h"
#include "export/plot_text.h"
#include "export/save_raster_data.h"
#include "export/save_vector_data.h"
#include "platform/variant.h"

namespace qm {
namespace {

struct RealAttribute {
    std::wstring_view name;
    double PageAttributes::*field;
    double added;  // to the value
};

// The crop box's last unit belongs to the page, so its maxima are one more than the host says.
// clang-format off
constexpr RealAttribute kRealAttributes[] = {
    {L"CropMinX",             &PageAttributes::cropMinX,             0},
    {L"CropMinY",             &PageAttributes::cropMinY,             0},
    {L"CropMaxX",             &PageAttributes::cropMaxX,             1},
    {L"CropMaxY",             &PageAttributes::cropMaxY,             1},
    {L"LpiX",                 &PageAttributes::lpiX,                 0},
    {L"LpiY",                 &PageAttributes::lpiY,                 0},
    {L"OriginalScaling",      &PageAttributes::originalScaling,      0},
    {L"OriginalTranslationX", &PageAttributes::originalTranslationX, 0},
    {L"OriginalTranslationY", &PageAttributes::originalTranslationY, 0},
};
// clang-format on

template <typename Sink>
HRESULT HandOut(const ExportSettings& settings, IUnknown** object) noexcept {
    *object = MakeObject<Sink>(settings).template As<IUnknown>().Detach();
    return *object != nullptr ? S_OK : E_OUTOFMEMORY;
}

}  // namespace

CQmSaveStructure::CQmSaveStructure(const ExportSettings& parent) : settings_(parent) {
    settings_.settings.Reset();  // stays with the document's own structure
}

// Quirk: always S_OK, also when the page advance could not be written; the next sink's write tells.
HRESULT CQmSaveStructure::SetAttribute(BSTR name, VARIANT value) noexcept {
    const std::wstring_view wanted = ViewOf(name);
    if (wanted == L"NodeID") {
        PlotOutput(settings_.stream).Write(plot_text::kPageAdvance);
    } else if (wanted == L"Layers") {
        settings_.layers = ObjectOf(value);
    } else if (wanted == L"PenTable") {
        SetPenTable(value);
    } else if (wanted == L"DirectionY") {
        flipY_ = !BooleanOf(value).value_or(false);
    } else {
        for (const RealAttribute& row : kRealAttributes) {
            if (row.name != wanted) continue;
            if (const auto real = RealOf(value)) page_.*row.field = *real + row.added;
        }
    }
    return S_OK;
}

void CQmSaveStructure::SetPenTable(const VARIANT& value) noexcept {
    settings_.penTable = ObjectOf(value);
    if (!settings_.penTable) return;
    const auto attributes = settings_.penTable.As<IQmAttributes>();
    if (const auto millimetres = ReadAttribute(attributes.Get(), L"Measurement"))
        settings_.penTableInMillimetres = IsVariantTrue(millimetres->Get());
}

HRESULT CQmSaveStructure::CreateObject(LONG type, LONG, IUnknown** object) noexcept {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    switch (type) {
        case QM_DOCUMENT:
        case QM_CONTENTS:
        case QM_CONTAINER:
            return HandOut<CQmSaveStructure>(settings_, object);
        case QM_RASTER_BLOCK:
            return HandOut<CQmSaveRasterData>(SinkSettings(), object);
        case QM_VECTOR_BLOCK:
            return HandOut<CQmSaveVectorData>(SinkSettings(), object);
        case QM_VECTOR_BLOCKD:
            return HandOut<CQmSaveVectorDataD>(SinkSettings(), object);
        default:
            return E_INVALIDARG;
    }
}

const ExportSettings& CQmSaveStructure::SinkSettings() noexcept {
    if (!transformReady_) {
        settings_.transform = FreezeTransform(page_, settings_.userDpi);
        transformReady_ = true;
    }
    settings_.transform.flipY = flipY_;
    return settings_;
}

}  // namespace qm
