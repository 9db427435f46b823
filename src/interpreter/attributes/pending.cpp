// Handlers that are not built yet: their parameters stay in the input, where the main loop ignores
// them.
#include "interpreter/handlers.h"
#include "interpreter/hpgl_read.h"

namespace qm {

void DrawSymbol(HPGLRead& /*reader*/) {}

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

// labels.cpp, character_attributes.cpp
void CharacterPlot(HPGLRead& /*reader*/) {}
void Label(HPGLRead& /*reader*/) {}
void AbsoluteCharacterSize(HPGLRead& /*reader*/) {}
void AbsoluteDirection(HPGLRead& /*reader*/) {}
void AlternateFontDefinition(HPGLRead& /*reader*/) {}
void CharacterSlant(HPGLRead& /*reader*/) {}
void DefineLabelTerminator(HPGLRead& /*reader*/) {}
void DirectionVertical(HPGLRead& /*reader*/) {}
void ExtraSpace(HPGLRead& /*reader*/) {}
void LabelMode(HPGLRead& /*reader*/) {}
void LabelOrigin(HPGLRead& /*reader*/) {}
void RelativeCharacterSize(HPGLRead& /*reader*/) {}
void RelativeDirection(HPGLRead& /*reader*/) {}
void SelectAlternateFont(HPGLRead& /*reader*/) {}
void SelectStandardFont(HPGLRead& /*reader*/) {}
void StandardFontDefinition(HPGLRead& /*reader*/) {}
void SymbolMode(HPGLRead& /*reader*/) {}
void TransparentData(HPGLRead& /*reader*/) {}

}  // namespace handlers
}  // namespace qm
