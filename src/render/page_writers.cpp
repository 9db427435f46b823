#include "render/page_writers.h"

#include "platform/text.h"

namespace qm {

PageSource SourceOf(const PlotPage& page) {
    PageSource source;
    source.drawing = &page.Drawing();
    source.layers = &page.Layers();
    source.name = WideToUtf8(page.Name());
    source.unitsPerInch = page.UnitsPerInch();
    source.rotation = page.Rotation();
    return source;
}

}  // namespace qm
