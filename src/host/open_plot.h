// OpenPlot: opens a plot file through the import filter, as any host does. Read open_plot.cpp as
// the example of how a host uses the filter.
//
//   const HostClasses classes;
//   ComPtr<IQmDataObject> source;
//   OpenedPlot plot;
//   if (SUCCEEDED(OpenFileObject(path, source)) && OpenPlot(*source, {}, plot) == S_OK)
//       for (const PlotPage& page : plot.pages) Play(page.Drawing(), visitor);
//
// Test: tests/host/open_plot_test.cpp.
#pragma once

#include <string>
#include <vector>

#include "host/document_node.h"
#include "host/drawing_block.h"
#include "host/layers_and_pens.h"
#include "host/progress_sink.h"
#include "qmfilter.h"

namespace qm {

// A finished page. Copies share the page's objects.
class PlotPage {
  public:
    PlotPage(ComPtr<DocumentNode> container, ComPtr<DrawingBlock> block);

    const std::wstring& Name() const noexcept { return name_; }  // "Page 1"; numbers may skip
    const DisplayList& Drawing() const noexcept { return block_->Drawing(); }
    const std::vector<PageLayer>& Layers() const noexcept { return layers_; }
    // Coordinates per inch: 1016 for plots.
    double UnitsPerInch() const noexcept { return unitsPerInch_; }
    // Degrees counter-clockwise by which the drawing is to be shown turned; 0 for most plots.
    double Rotation() const noexcept { return rotation_; }
    // All attributes of the page's container.
    const AttributeMap& Attributes() const noexcept { return container_->Attributes(); }

  private:
    ComPtr<DocumentNode> container_;
    ComPtr<DrawingBlock> block_;
    std::wstring name_;
    std::vector<PageLayer> layers_;
    double unitsPerInch_;
    double rotation_;
};

struct OpenedPlot {
    ComPtr<DocumentNode> document;
    std::wstring format;  // "HPGL/2" or "Nemetschek Allplan"
    std::vector<PlotPage> pages;
};

// Creates the import filter (CLSID_QmFilterHPGL must be registered) and loads all pages of
// `source`.
//   S_OK     the pages are there (none when nothing was drawn)
//   E_ABORT  `progress` answered false; the pages finished until then are there
//   E_FAIL   no plot file
// or what COM said when the filter cannot be created. `progress` may be empty.
HRESULT OpenPlot(IQmDataObject& source, const ProgressCallback& progress,
                 OpenedPlot& plot) noexcept;

}  // namespace qm
