// ExportSettings: what a structure knows and every sink that it makes gets a copy of; and the
// conversions from the host's VARIANTs by which it is filled, none of which throws.
//
// Filled by the filters (settings object) and CQmSaveStructure (attributes). Test:
// tests/export/framework_test.cpp.
#pragma once

#include <ole2.h>
#include <qmfilter.h>

#include <cstdint>
#include <optional>

#include "export/plot_geometry.h"
#include "platform/com_ptr.h"
#include "platform/variant.h"

namespace qm {

struct ExportSettings {
    ComPtr<IStream> stream;
    double userDpi = 0;  // 0: not given
    PlotTransform transform;

    // The host asks for one colour; colours are then not written.
    bool mono = false;
    // Made by the HP-RTL filter: pictures are written, the HP-GL/2 filter drops them.
    bool rasterMode = false;

    bool useLineWeights = false;
    bool usePenTable = false;
    // Widths of the pen table are millimetres, else inches.
    bool penTableInMillimetres = false;
    ComPtr<IUnknown> penTable;

    // The host's settings and layers: referenced while the export lasts, not used.
    ComPtr<IUnknown> settings;
    ComPtr<IUnknown> layers;
};

// Exactly -1: VARIANT_TRUE, or the integer.
bool IsVariantTrue(const VARIANT& value) noexcept;

// A setting that is a boolean: true from 65535 on, which is VARIANT_TRUE as an unsigned number; a
// plain 1 is not.
bool SettingIsTrue(const VARIANT& value) noexcept;

// The attribute `name`, or nothing when `attributes` is null, the name is absent or memory ran out.
std::optional<Variant> ReadAttribute(IQmAttributes* attributes, const wchar_t* name) noexcept;

}  // namespace qm
