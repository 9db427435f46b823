// WriteDxf (page_writers.h): a page as a drawing for CAD programs, from the display list to the
// sink in two passes: one for the tables, one for the entities. ASCII of AutoCAD 2004 (AC1018), the
// oldest version with true colours; line weights, hatches and light-weight polylines it has too.
// Test: tests/render/dxf/dxf_writer_test.cpp.
#include "render/dxf/entity_writer.h"
#include "render/dxf/sections.h"
#include "render/page_writers.h"

namespace qm {

void WriteDxf(const PageSource& page, const PageOptions& options, OutputSink& sink) {
    const dxf::Placement placement(page, GistOf(*page.drawing).extent);
    dxf::PageTables tables(page, placement);
    dxf::Gather(*page.drawing, tables);
    dxf::GroupCodes out(sink);
    const std::uint64_t handle = dxf::WriteFront(tables, placement, out);
    dxf::EntityWriter writer(tables, placement, handle, options, out);
    Play(*page.drawing, writer);
    writer.Finish();
    dxf::WriteBack(out);
    out.Flush();
}

}  // namespace qm
