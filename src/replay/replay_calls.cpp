// See replay_calls.h.
#include "replay/replay_calls.h"

#include <qmfilter.h>

#include <algorithm>
#include <iterator>

namespace qm {
namespace {

// The kinds of sinks, short for the table. D has real coordinates, V whole ones.
using S = IQmSaveStructure;
using V = IQmSaveVectorData;
using D = IQmSaveVectorDataD;
using R = IQmSaveRasterData;

// Plain: the method's own parameters. Bare: the words behind the name are not read. Special: read
// by the struct of that name in replay_calls.h.
// clang-format off
constexpr ScriptCall kCalls[] = {
    // Every sink
    {"SetAttribute",            "NAME [VALUE]",                     Special<SetAttribute, S, V, D, R>()},
    {"EndObject",               "",                                 Plain<&S::EndObject, &V::EndObject, &D::EndObject, &R::EndObject>()},
    // Both vector sinks
    {"AppendLayer",             "NUMBER",                           Plain<&V::AppendLayer, &D::AppendLayer>()},
    {"AppendPen",               "NUMBER",                           Plain<&V::AppendPen, &D::AppendPen>()},
    {"AppendPolyFillMode",      "MODE",                             Plain<&V::AppendPolyFillMode, &D::AppendPolyFillMode>()},
    {"AppendLineStipple",       "FACTOR PATTERN",                   Plain<&V::AppendLineStipple, &D::AppendLineStipple>()},
    {"AppendLineStyle",         "STYLE",                            Plain<&V::AppendLineStyle, &D::AppendLineStyle>()},
    {"AppendLineWidth",         "WIDTH",                            Plain<&V::AppendLineWidth, &D::AppendLineWidth>()},
    {"AppendPoint",             "X Y",                              Plain<&V::AppendPoint, &D::AppendPoint>()},
    {"AppendLine",              "X1 Y1 X2 Y2",                      Plain<&V::AppendLine, &D::AppendLine>()},
    {"AppendRectangle",         "X1 Y1 X2 Y2 FILLED",               Plain<&V::AppendRectangle, &D::AppendRectangle>()},
    {"AppendRoundedRectangle",  "X1 Y1 X2 Y2 RX RY FILLED",         Plain<&V::AppendRoundedRectangle, &D::AppendRoundedRectangle>()},
    {"AppendCircle",            "CX CY R FILLED",                   Plain<&V::AppendCircle, &D::AppendCircle>()},
    {"AppendEllipse",           "CX CY RX RY ROTATION FILLED",      Plain<&V::AppendEllipse, &D::AppendEllipse>()},
    {"AppendPolygon",           "COUNT FILLED : X,Y ...",           Special<AppendPolygon, V, D>()},
    {"AppendPolyPolygon",       "RINGS FILLED COUNT ... : X,Y ...", Special<AppendPolyPolygon, V, D>()},
    {"AppendBezier",            "COUNT : X,Y ...",                  Special<AppendBezier, V, D>()},
    {"AppendDrawMode",          "MODE",                             Plain<&V::AppendDrawMode, &D::AppendDrawMode>()},
    {"StartClipRegion",         "...",                              Bare<&V::StartClipRegion, &D::StartClipRegion>()},
    {"AppendClipRegion",        "...",                              Bare<&V::AppendClipRegion, &D::AppendClipRegion>()},
    {"EndClipRegion",           "...",                              Bare<&V::EndClipRegion, &D::EndClipRegion>()},
    {"AppendTextElement",       "...",                              Bare<&V::AppendTextElement, &D::AppendTextElement>()},
    {"AppendDib",               "...",                              Bare<&V::AppendDib, &D::AppendDib>()},
    {"AppendLogFont",           "HEIGHT ESCAPEMENT \"FACE\"",       Special<AppendLogFont, V, D>()},
    {"AppendText",              "X Y \"TEXT\"",                     Plain<&V::AppendText, &D::AppendText>()},
    {"AppendLineWeight",        "WEIGHT",                           Plain<&V::AppendLineWeight, &D::AppendLineWeight>()},
    {"AppendLineAttributes",    "...",                              Bare<&V::AppendLineAttributes, &D::AppendLineAttributes>()},
    {"AppendLineDash",          "...",                              Bare<&V::AppendLineDash, &D::AppendLineDash>()},
    {"AppendMarkupObject",      "...",                              Bare<&V::AppendMarkupObject, &D::AppendMarkupObject>()},
    {"AppendSubBlock",          "...",                              Bare<&V::AppendSubBlock, &D::AppendSubBlock>()},
    {"AppendSubBlockEnd",       "...",                              Bare<&V::AppendSubBlockEnd, &D::AppendSubBlockEnd>()},
    {"AppendSubBlockAttribute", "...",                              Bare<&V::AppendSubBlockAttribute, &D::AppendSubBlockAttribute>()},
    {"AppendSubBlockExtraData", "...",                              Bare<&V::AppendSubBlockExtraData, &D::AppendSubBlockExtraData>()},
    {"DefineFillPattern",       "INDEX WIDTH HEIGHT HEX",           Special<DefineFillPattern, V, D>()},
    {"AppendFillStyle",         "STYLE INDEX",                      Plain<&V::AppendFillStyle, &D::AppendFillStyle>()},
    {"AppendEntity",            "...",                              Bare<&V::AppendEntity, &D::AppendEntity>()},
    {"GetInterfaceVersion",     "",                                 Special<GetInterfaceVersion, V, D>()},
    {"AppendVectorTextStart",   "...",                              Bare<&V::AppendVectorTextStart, &D::AppendVectorTextStart>()},
    {"AppendVectorTextEnd",     "...",                              Bare<&V::AppendVectorTextEnd, &D::AppendVectorTextEnd>()},
    // The vector sink with integer coordinates
    {"AppendDrawColor1",        "RED GREEN BLUE",                   Plain<&V::AppendDrawColor1>()},
    {"AppendDrawColor2",        "COLOR",                            Plain<&V::AppendDrawColor2>()},
    {"AppendDrawColor3",        "...",                              Bare<&V::AppendDrawColor3>()},
    {"AppendFillColor1",        "RED GREEN BLUE",                   Plain<&V::AppendFillColor1>()},
    {"AppendFillColor2",        "COLOR",                            Plain<&V::AppendFillColor2>()},
    {"AppendFillColor3",        "",                                 Plain<&V::AppendFillColor3>()},
    {"AppendArc1",              "...",                              Bare<&V::AppendArc1>()},
    {"AppendArc2",              "...",                              Bare<&V::AppendArc2>()},
    {"AppendArc3",              "CX CY RX RY ROTATION START SPAN",  Plain<&V::AppendArc3>()},
    // The vector sink with real coordinates
    {"AppendDrawColor",         "RED GREEN BLUE",                   Plain<&D::AppendDrawColor>()},
    {"AppendDrawColorBack",     "...",                              Bare<&D::AppendDrawColorBack>()},
    {"AppendFillColor",         "RED GREEN BLUE",                   Plain<&D::AppendFillColor>()},
    {"AppendFillColorBack",     "",                                 Plain<&D::AppendFillColorBack>()},
    {"AppendArc",               "CX CY RX RY ROTATION START SPAN",  Plain<&D::AppendArc>()},
    {"AppendMeta",              "...",                              Bare<&D::AppendMeta>()},
    // The raster sink
    {"CreateRasterStorage",     "W H BITS COMPRESSION DPIX DPIY N BBGGRR ...", Special<CreateRasterStorage, R>()},
    {"AddScanline1",            "TYPE START LINES BYTESPERLINE HEX", Special<AddScanline<&R::AddScanline1>, R>()},
    {"AddScanline2",            "TYPE START LINES BYTESPERLINE HEX", Special<AddScanline<&R::AddScanline2>, R>()},
    {"StartPolyClipRegion",     "POLYS DPPOLYS EVENODD",            Plain<&R::StartPolyClipRegion>()},
    {"AppendPolyClipRegion",    "COUNT : X,Y ...",                  Special<AppendPolyClipRegion, R>()},
};
// clang-format on

}  // namespace

ScriptCallList AllScriptCalls() noexcept { return {kCalls, std::size(kCalls)}; }

const ScriptCall* FindCall(std::string_view name) noexcept {
    const auto* const found =
        std::find_if(std::begin(kCalls), std::end(kCalls),
                     [&](const ScriptCall& call) { return call.name == name; });
    return found == std::end(kCalls) ? nullptr : found;
}

}  // namespace qm
