// OpenPlot: opens a plot file through the import filter, as any host does. Read open_plot.cpp as
// the example of how a host uses the filter.
//
//   const HostClasses classes;
//   ComPtr<IQmDataObject> source;
//   OpenedPlot plot;
//   if (SUCCEEDED(OpenFileObject(path, source.Put())) && OpenPlot(*source, {}, plot) == S_OK)
//       for (const PlotPage& page : plot.pages) Play(page.Drawing(), visitor);
//
// Test: tests/host/open_plot_test.cpp.
#pragma once

#include <qmfilter.h>

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "common/geometry.h"
#include "host/display_list.h"

namespace qm {

class AttributeMap;
class DocumentNode;
class DrawingBlock;
class ObjectWrapper;

// Registers "Tessel.QmContainer", "Tessel.QmLayers" and "Tessel.QmPenTable", the classes that a
// filter asks its host for, on the calling thread (a class object belongs to its thread), for as
// long as it exists; COM is initialised meanwhile. The ProgIDs themselves are the process's and
// stay until the last HostClasses of any thread is gone.
class HostClasses {
  public:
    // `wrapper` (host_object.h) gets every object that the classes and their nodes make; null for
    // none.
    explicit HostClasses(std::shared_ptr<ObjectWrapper> wrapper = nullptr) noexcept;
    ~HostClasses();
    HostClasses(const HostClasses&) = delete;
    HostClasses& operator=(const HostClasses&) = delete;

    // S_OK, or why the registration failed (then opening a plot fails with E_FAIL).
    HRESULT Status() const noexcept { return status_; }

  private:
    HRESULT RegisterAll(const std::shared_ptr<ObjectWrapper>& wrapper);

    static constexpr std::size_t kClassCount = 3;

    bool initialised_;
    std::shared_ptr<void> progIds_;
    std::array<DWORD, kClassCount> cookies_{};
    std::size_t registered_ = 0;
    HRESULT status_;
};

// A source for OpenPlot: an existing file (the status is the file system's), or bytes in memory,
// which are copied. `*object` is the caller's to release, and null after a failure.
HRESULT OpenFileObject(const std::wstring& path, IQmDataObject** object) noexcept;
HRESULT OpenMemoryObject(std::string_view bytes, IQmDataObject** object) noexcept;

// A layer of a page. In plots there is one for each pen, with the pen's number.
struct PageLayer {
    std::int32_t number = 0;
    std::wstring name;
    std::uint32_t colour = 0;  // 0x00BBGGRR
    bool visible = true;
};

// A finished page. Copies share the page's objects.
class PlotPage {
  public:
    // The host's own: a page of its document tree and the drawing block in it, of a file of so many
    // bytes.
    PlotPage(DocumentNode& container, DrawingBlock& block, std::uint64_t sourceBytes);

    const std::wstring& Name() const noexcept { return name_; }  // "Page 1"; numbers may skip
    const DisplayList& Drawing() const noexcept { return *drawing_; }
    const std::vector<PageLayer>& Layers() const noexcept { return layers_; }
    // Coordinates per inch: 1016 for plots.
    double UnitsPerInch() const noexcept { return unitsPerInch_; }
    // Degrees counter-clockwise by which the drawing is to be shown turned; 0 for most plots.
    double Rotation() const noexcept { return rotation_; }
    // Size of the plot's file, by which writers bound their work; 0 when it is not known.
    std::uint64_t SourceBytes() const noexcept { return sourceBytes_; }
    // What the page's sheet has to have room for beside the drawing; empty for most pages.
    const Extent& Sheet() const noexcept { return sheet_; }
    // All attributes of the page's container (host_object.h).
    const AttributeMap& Attributes() const noexcept { return *attributes_; }

    // The page with another drawing, its layers, and a sheet that has room for `sheet` too.
    PlotPage With(std::shared_ptr<const DisplayList> drawing, std::vector<PageLayer> layers,
                  const Extent& sheet) const;
    // The page turned counter-clockwise by so many degrees more.
    PlotPage Turned(double degrees) const;

  private:
    std::shared_ptr<const AttributeMap> attributes_;  // shares the container
    std::shared_ptr<const DisplayList> drawing_;      // shares the block
    std::wstring name_;
    std::vector<PageLayer> layers_;
    double unitsPerInch_;
    double rotation_;
    std::uint64_t sourceBytes_;
    Extent sheet_;
};

struct OpenedPlot {
    std::wstring format;  // "HPGL/2" or "Nemetschek Allplan"
    std::vector<PlotPage> pages;
};

// Called with 0 to 100; false asks the filter to stop. Must not throw.
using ProgressCallback = std::function<bool(int percent)>;

// Creates the import filter (CLSID_QmFilterHPGL must be registered) and loads all pages of
// `source`.
//   S_OK     the pages are there (none when nothing was drawn)
//   E_ABORT  `progress` answered false; the pages finished until then are there
//   E_FAIL   no plot file
//   E_OUTOFMEMORY  also when a page lacks something for that reason
// or what COM said when the filter cannot be created. `progress` may be empty.
HRESULT OpenPlot(IQmDataObject& source, const ProgressCallback& progress,
                 OpenedPlot& plot) noexcept;

}  // namespace qm
