// SaveDocument: saves pages through a save component, as any host does. Read document_walker.cpp as
// the example of how a host drives one.
//
//   const auto filter = MakeObject<CQmFilterSaveHPGL>();
//   HRESULT status = SaveDocument(*filter, target.Get(), nullptr, plot.pages);
//
// Test: tests/host/document_walker_test.cpp.
#pragma once

#include <qmfilter.h>

#include <functional>
#include <vector>

#include "common/picture_sink.h"
#include "host/open_plot.h"

namespace qm {

// Draws a page as a picture: begins it in the sink and gives all its rows, not all of them from the
// calling thread if it likes.
using PageDrawer = std::function<void(const PlotPage&, PictureSink&)>;

// Opens the document in `filter`, walks its contents and the pages into it and closes it. Each page
// gets its attributes, then its drawing as a vector block and each of its pictures as a raster
// block (which the HP-GL/2 filter does not write). With `drawPage` a page is one raster block
// instead: what it draws. Our own component gets the rows as they are drawn
// (interfaces/picture_handover.h), so that nobody holds a whole page.
//
// A page without a crop box is told one from its origin to the far corner of its drawing, which
// moves nothing. The drawing of a page that is shown turned goes out turned, moved to where no
// coordinate is negative. `settings` may be null. S_OK or the first failure of the component
// (E_FAIL for a null target or one without stream, else mostly what the stream answered); the
// document is then not closed and what was written so far is no plot. E_INVALIDARG when `drawPage`
// does not give all rows. Throws std::bad_alloc and
// what `drawPage` throws.
HRESULT SaveDocument(IQmFilterSave& filter, IQmDataObject* target, IUnknown* settings,
                     const std::vector<PlotPage>& pages, const PageDrawer& drawPage = {});

}  // namespace qm
