// CQmSaveStructure: one node of the document being saved; takes its attributes and makes the sinks
// of its children.
//
// The first raster or vector sink freezes the mapping to plotter units: crop and resolution that
// arrive later change nothing; only "DirectionY" still does. A nested structure starts from its
// parent's settings but maps by its own attributes. Test: tests/export/framework_test.cpp.
#pragma once

#include <qmfilter.h>

#include "export/export_settings.h"
#include "export/plot_geometry.h"
#include "platform/com_object.h"

namespace qm {

class CQmSaveStructure final : public ComObject<IQmSaveStructure> {
  public:
    CQmSaveStructure() = default;
    // A node inside one that has `parent`.
    explicit CQmSaveStructure(const ExportSettings& parent);

    // For the filter, before the host gets the object.
    ExportSettings& Settings() noexcept { return settings_; }

    // Values are converted to the type the attribute has; one that cannot be converted leaves the
    // attribute as it was. "NodeID" writes a page advance whatever its value.
    HRESULT STDMETHODCALLTYPE SetAttribute(BSTR name, VARIANT value) noexcept override;
    HRESULT STDMETHODCALLTYPE CreateObject(LONG type, LONG index,
                                           IUnknown** object) noexcept override;
    HRESULT STDMETHODCALLTYPE EndObject() noexcept override { return S_OK; }

  private:
    void SetPenTable(const VARIANT& value) noexcept;
    // The settings for a sink. Scale, offsets and height are computed on the first call; the
    // direction of y is what it is now.
    const ExportSettings& SinkSettings() noexcept;

    ExportSettings settings_;
    PageAttributes page_;
    bool flipY_ = true;
    bool transformReady_ = false;
};

}  // namespace qm
