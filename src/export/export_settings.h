// ExportSettings: what a structure knows and every sink that it makes gets a copy of.
//
// Filled by the filters (settings object) and CQmSaveStructure (attributes). The fields marked
// "kept" have no effect on the output; they hold what the host said. Test:
// tests/export/framework_test.cpp.
#pragma once

#include <objbase.h>
#include <qmfilter.h>

#include <cstdint>

#include "export/plot_transform.h"
#include "platform/com_ptr.h"

namespace qm {

struct ExportSettings {
    ComPtr<IStream> stream;
    ComPtr<IUnknown> settings;  // kept: the host's settings object
    double userDpi = 0;         // 0: not given
    PlotTransform transform;

    bool keepDrawColors = false;  // kept
    bool monoEnabled = false;
    std::uint32_t monoColor = 0;  // 0x00BBGGRR

    // Made by the HP-RTL filter: pictures are written, the HP-GL/2 filter drops them.
    bool rasterMode = false;

    bool useLineWeights = false;
    bool usePenTable = false;
    bool penTablePresent = false;  // kept: some "PenTable" attribute was not null
    // Widths of the pen table are millimetres, else inches.
    bool penTableInMillimetres = false;
    ComPtr<IUnknown> layers;  // kept
    ComPtr<IUnknown> penTable;
};

}  // namespace qm
