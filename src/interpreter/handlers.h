// All command handlers, grouped by the file that holds them. The parameters of each name what it
// reads and changes; with too few numbers in the plot it returns without effect. The table that
// calls them is command_table.cpp.
#pragma once

namespace qm {

class InputReader;
class Output;
struct CoordinateState;
struct Drawing;
struct EncodedState;
struct FillState;
struct JobState;
struct LabelState;
struct LineState;
struct PageState;
struct Parameters;
struct PenMotion;
struct PenState;
struct PlotNotes;
struct Reading;

namespace handlers {

// command_table.cpp
void Ignore();
void SkipOne(Parameters& in);
void Comment(InputReader& input);

// coordinates.cpp
void InputP1P2(Parameters& in, const Reading& reading, const PageState& page,
               CoordinateState& coordinates, PenMotion& motion);
void InputP1P2Relative(Parameters& in, const Reading& reading, const PageState& page,
                       CoordinateState& coordinates, PenMotion& motion);
void InputWindow(Parameters& in, const Reading& reading, CoordinateState& coordinates);
void RotateCoordinateSystem(Parameters& in, const PageState& page, Drawing& drawing);
void Scale(Parameters& in, const Reading& reading, CoordinateState& coordinates, PenMotion& motion,
           PlotNotes& notes);

// pages.cpp
void AdvanceFullPage(PageState& page, PenState& pens, Drawing& drawing);
void BeginPlot(InputReader& input);
void DefaultValues(const Reading& reading, const PenState& pens, Drawing& drawing,
                   LabelState& label, FillState& fill);
void Initialize(const Reading& reading, const PageState& page, Drawing& drawing, LabelState& label,
                FillState& fill, PenState& pens);
void FrameAdvance(Parameters& in, const CoordinateState& coordinates, PageState& page, Output& out);
void NotReady(Parameters& in, PageState& page, PenState& pens, Drawing& drawing);
void PlotSize(Parameters& in, const Reading& reading, const JobState& job, PageState& page,
              Drawing& drawing);

// pen_motion.cpp
void PenDown(Parameters& in, Drawing& drawing, const LabelState& label);
void PenUp(Parameters& in, Drawing& drawing, const LabelState& label);
void PlotAbsolute(Parameters& in, Drawing& drawing, const LabelState& label);
void PlotRelative(Parameters& in, Drawing& drawing, const LabelState& label);

// arcs.cpp
void ArcAbsolute(Parameters& in, Drawing& drawing);
void ArcAbsoluteThreePoint(Parameters& in, Drawing& drawing);
void ArcRelative(Parameters& in, Drawing& drawing);
void ArcRelativeThreePoint(Parameters& in, Drawing& drawing);
void ChordTolerance(Parameters& in, const Reading& reading, PenMotion& motion);
void Circle(Parameters& in, Drawing& drawing);

// curves.cpp
void BezierAbsolute(Parameters& in, Drawing& drawing);
void BezierRelative(Parameters& in, Drawing& drawing);

// encoded_polyline.cpp
void PolylineEncoded(InputReader& input, EncodedState& encoded, Drawing& drawing, PenState& pens,
                     const FillState& fill, const LabelState& label);

// attributes/pens.cpp
void ColorRange(Parameters& in, PenState& pens);
void PenColour(Parameters& in, PenState& pens, Output& out);
void PenWidth(Parameters& in, const Reading& reading, const CoordinateState& coordinates,
              PenState& pens, LineState& lines, Output& out);
void PenWidthUnit(Parameters& in, const Reading& reading, const CoordinateState& coordinates,
                  PenState& pens, LineState& lines, Output& out);
void SelectPen(Parameters& in, PenState& pens, LineState& lines, Output& out);
void TransparencyMode(Parameters& in, PenState& pens);

// attributes/lines.cpp
void LineAttributes(Parameters& in, LineState& lines, Output& out);
void LineType(Parameters& in, const Reading& reading, const CoordinateState& coordinates,
              LineState& lines, Output& out);
void MergeControl(Parameters& in, LineState& lines, Output& out);
void PenThickness(Parameters& in);
void UserDefinedLineType(Parameters& in, LineState& lines);

// attributes/polygon.cpp
void PolygonMode(Parameters& in, Drawing& drawing);

// attributes/fill.cpp
void EdgePolygon(Drawing& drawing);
void FillPolygon(Parameters& in, Drawing& drawing, const PenState& pens, const FillState& fill);
void FillType(Parameters& in, const Reading& reading, const CoordinateState& coordinates,
              FillState& fill);

// attributes/shapes.cpp
void AnchorCorner(Parameters& in, const Reading& reading, const CoordinateState& coordinates,
                  FillState& fill);
void EdgeRectangleAbsolute(Parameters& in, Drawing& drawing);
void EdgeRectangleRelative(Parameters& in, Drawing& drawing);
void EdgeWedge(Parameters& in, Drawing& drawing);
void FillRectangleAbsolute(Parameters& in, Drawing& drawing, const PenState& pens,
                           const FillState& fill);
void FillRectangleRelative(Parameters& in, Drawing& drawing, const PenState& pens,
                           const FillState& fill);
void FillWedge(Parameters& in, Drawing& drawing, const PenState& pens, const FillState& fill);
void RasterFillDefinition(Parameters& in, Drawing& drawing);

// attributes/labels.cpp
void CharacterPlot(Parameters& in, LabelState& label, Drawing& drawing);
void Label(InputReader& input, LabelState& label, Drawing& drawing);

// attributes/character_attributes.cpp
void AbsoluteCharacterSize(Parameters& in, const Reading& reading,
                           const CoordinateState& coordinates, LabelState& label);
void AbsoluteDirection(Parameters& in, const Reading& reading, LabelState& label);
void AlternateFontDefinition(Parameters& in, const Reading& reading, LabelState& label);
void CharacterSlant(Parameters& in, LabelState& label);
void DefineLabelTerminator(Parameters& in, LabelState& label);
void DirectionVertical(Parameters& in, LabelState& label);
void ExtraSpace(Parameters& in, const Reading& reading, LabelState& label);
void LabelOrigin(Parameters& in, const Reading& reading, LabelState& label);
void RelativeCharacterSize(Parameters& in, const Reading& reading,
                           const CoordinateState& coordinates, LabelState& label);
void RelativeDirection(Parameters& in, const Reading& reading, const CoordinateState& coordinates,
                       LabelState& label);
void SelectAlternateFont(LabelState& label);
void SelectStandardFont(LabelState& label);
void StandardFontDefinition(Parameters& in, const Reading& reading, LabelState& label);
void SymbolMode(InputReader& input, LabelState& label);
void TransparentData(Parameters& in, LabelState& label);

}  // namespace handlers
}  // namespace qm
