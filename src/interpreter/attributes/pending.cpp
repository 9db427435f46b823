// Handlers that are not built yet: their parameters stay in the input, where the main loop ignores
// them.
#include "interpreter/handlers.h"
#include "interpreter/hpgl_read.h"

namespace qm {

namespace handlers {

// pens.cpp
void ColorRange(HPGLRead& /*reader*/) {}
void NumberOfPens(HPGLRead& /*reader*/) {}
void PenColor(HPGLRead& /*reader*/) {}
void PenWidth(HPGLRead& /*reader*/) {}
void PenWidthUnit(HPGLRead& /*reader*/) {}
void TransparencyMode(HPGLRead& /*reader*/) {}

// lines.cpp
void LineAttributes(HPGLRead& /*reader*/) {}
void LineType(HPGLRead& /*reader*/) {}
void MergeControl(HPGLRead& /*reader*/) {}
void PenThickness(HPGLRead& /*reader*/) {}
void PixelPlacement(HPGLRead& /*reader*/) {}
void UserDefinedLineType(HPGLRead& /*reader*/) {}

// fill.cpp, shapes.cpp
void EdgePolygon(HPGLRead& /*reader*/) {}
void FillPolygon(HPGLRead& /*reader*/) {}
void FillType(HPGLRead& /*reader*/) {}
void AnchorCorner(HPGLRead& /*reader*/) {}
void EdgeRectangleAbsolute(HPGLRead& /*reader*/) {}
void EdgeRectangleRelative(HPGLRead& /*reader*/) {}
void FillRectangleAbsolute(HPGLRead& /*reader*/) {}
void FillRectangleRelative(HPGLRead& /*reader*/) {}
void FillWedge(HPGLRead& /*reader*/) {}
void RasterFillDefinition(HPGLRead& /*reader*/) {}

}  // namespace handlers
}  // namespace qm
