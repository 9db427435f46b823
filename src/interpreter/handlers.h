// All command handlers, grouped by the file that holds them. Each reads its own parameters through
// the interpreter; with too few it returns without effect. The table that calls them is
// command_table.cpp.
#pragma once

namespace qm {

class HPGLRead;

namespace handlers {

using Handler = void (*)(HPGLRead&);

// plain_commands.cpp
void Ignore(HPGLRead& reader);
void SkipOne(HPGLRead& reader);
void Comment(HPGLRead& reader);

// coordinates.cpp
void InputP1P2(HPGLRead& reader);
void InputP1P2Relative(HPGLRead& reader);
void InputWindow(HPGLRead& reader);
void RotateCoordinateSystem(HPGLRead& reader);
void Scale(HPGLRead& reader);

// pages.cpp
void AdvanceFullPage(HPGLRead& reader);
void BeginPlot(HPGLRead& reader);
void DefaultValues(HPGLRead& reader);
void FrameAdvance(HPGLRead& reader);
void NotReady(HPGLRead& reader);
void PlotSize(HPGLRead& reader);

// pen_motion.cpp
void PenDown(HPGLRead& reader);
void PenUp(HPGLRead& reader);
void PlotAbsolute(HPGLRead& reader);
void PlotRelative(HPGLRead& reader);

// arcs.cpp
void ArcAbsolute(HPGLRead& reader);
void ArcAbsoluteThreePoint(HPGLRead& reader);
void ArcRelative(HPGLRead& reader);
void ArcRelativeThreePoint(HPGLRead& reader);
void Circle(HPGLRead& reader);

// curves.cpp
void BezierAbsolute(HPGLRead& reader);
void BezierRelative(HPGLRead& reader);

// encoded_polyline.cpp
void PolylineEncoded(HPGLRead& reader);

// attributes/pens.cpp
void ColorRange(HPGLRead& reader);
void NumberOfPens(HPGLRead& reader);
void PenColor(HPGLRead& reader);
void PenWidth(HPGLRead& reader);
void PenWidthUnit(HPGLRead& reader);
void SelectPen(HPGLRead& reader);
void TransparencyMode(HPGLRead& reader);

// attributes/lines.cpp
void LineAttributes(HPGLRead& reader);
void LineType(HPGLRead& reader);
void MergeControl(HPGLRead& reader);
void PenThickness(HPGLRead& reader);
void PixelPlacement(HPGLRead& reader);
void UserDefinedLineType(HPGLRead& reader);

// attributes/polygon.cpp
void PolygonMode(HPGLRead& reader);

// attributes/fill.cpp
void EdgePolygon(HPGLRead& reader);
void FillPolygon(HPGLRead& reader);
void FillType(HPGLRead& reader);

// attributes/shapes.cpp
void AnchorCorner(HPGLRead& reader);
void EdgeRectangleAbsolute(HPGLRead& reader);
void EdgeRectangleRelative(HPGLRead& reader);
void FillRectangleAbsolute(HPGLRead& reader);
void FillRectangleRelative(HPGLRead& reader);
void FillWedge(HPGLRead& reader);
void RasterFillDefinition(HPGLRead& reader);

// attributes/labels.cpp
void CharacterPlot(HPGLRead& reader);
void Label(HPGLRead& reader);

// attributes/character_attributes.cpp
void AbsoluteCharacterSize(HPGLRead& reader);
void AbsoluteDirection(HPGLRead& reader);
void AlternateFontDefinition(HPGLRead& reader);
void CharacterSlant(HPGLRead& reader);
void DefineLabelTerminator(HPGLRead& reader);
void DirectionVertical(HPGLRead& reader);
void ExtraSpace(HPGLRead& reader);
void LabelMode(HPGLRead& reader);
void LabelOrigin(HPGLRead& reader);
void RelativeCharacterSize(HPGLRead& reader);
void RelativeDirection(HPGLRead& reader);
void SelectAlternateFont(HPGLRead& reader);
void SelectStandardFont(HPGLRead& reader);
void StandardFontDefinition(HPGLRead& reader);
void SymbolMode(HPGLRead& reader);
void TransparentData(HPGLRead& reader);

}  // namespace handlers
}  // namespace qm
