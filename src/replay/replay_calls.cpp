// See replay_calls.h.
#include "replay/replay_calls.h"

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <tuple>
#include <type_traits>

#include "common/numbers.h"
#include "platform/text.h"

namespace qm {
namespace {

// ---------------------------------------------------------------- Methods that take plain values

// Keeps a value of a method's parameter type T alive for the call.
template <typename T>
struct Holder {
    T value;
    explicit Holder(Arguments& arguments) : value(Read(arguments)) {}
    T Get() const { return value; }
    static T Read(Arguments& arguments) {
        if constexpr (std::is_same_v<T, VARIANT_BOOL>) {
            return arguments.Boolean() ? VARIANT_TRUE : VARIANT_FALSE;
        } else if constexpr (std::is_floating_point_v<T>) {
            return static_cast<T>(arguments.Real());
        } else {
            return arguments.Integer();
        }
    }
};
template <>
struct Holder<BSTR> {
    Bstr value;
    explicit Holder(Arguments& arguments) : value(arguments.Text()) {}
    BSTR Get() const { return value.Get(); }
};

template <typename Interface, typename... Values>
HRESULT CallPlain(HRESULT (STDMETHODCALLTYPE Interface::*method)(Values...), IUnknown* sink,
                  Arguments& arguments) {
    // Braces: the values are read in the order of the parameters.
    const std::tuple<Holder<Values>...> values{Holder<Values>(arguments)...};
    arguments.End();
    return std::apply(
        [&](const auto&... value) {
            return (static_cast<Interface*>(sink)->*method)(value.Get()...);
        },
        values);
}

template <auto Method>
HRESULT Plain(IUnknown* sink, Arguments& arguments) {
    return CallPlain(Method, sink, arguments);
}

// A method without parameters in the place of one that hosts give some: a script may write them,
// they are not read.
template <auto Method>
HRESULT Bare(IUnknown* sink, Arguments& arguments) {
    arguments.Skip();
    return CallPlain(Method, sink, arguments);
}

// ---------------------------------------------------------------- Methods with arrays and objects

// Bytes of `rows` rows of `rowBytes`, 0 for negative counts.
std::size_t BytesOf(std::int64_t rows, std::int64_t rowBytes) {
    if (rows <= 0 || rowBytes <= 0) return 0;
    const auto bytes = CheckedBytes(rows, rowBytes);
    if (!bytes) throw ScriptError("more than 2 GiB of data");
    return *bytes;
}

template <typename Sink>
HRESULT SetAttribute(IUnknown* sink, Arguments& arguments) {
    const Bstr name(Utf8ToWide(arguments.Word()));
    const Variant value = arguments.Value();
    arguments.End();
    return static_cast<Sink*>(sink)->SetAttribute(name.Get(), value.Get());
}

template <typename Sink, typename Number>
HRESULT AppendPolygon(IUnknown* sink, Arguments& arguments) {
    const LONG count = arguments.Integer();
    const bool filled = arguments.Boolean();
    const auto points = arguments.Points<Number>(count);
    return static_cast<Sink*>(sink)->AppendPolygon(count, points.data(),
                                                   filled ? VARIANT_TRUE : VARIANT_FALSE);
}

template <typename Sink, typename Number>
HRESULT AppendPolyPolygon(IUnknown* sink, Arguments& arguments) {
    const LONG rings = arguments.Integer();
    const bool filled = arguments.Boolean();
    std::vector<LONG> counts;
    counts.reserve(arguments.Left());
    for (LONG i = 0; i < rings; ++i) counts.push_back(arguments.Integer());
    const auto points = arguments.Points<Number>();
    return static_cast<Sink*>(sink)->AppendPolyPolygon(
        rings, counts.data(), static_cast<LONG>(points.size() / 2), points.data(),
        filled ? VARIANT_TRUE : VARIANT_FALSE);
}

template <typename Sink, typename Number>
HRESULT AppendBezier(IUnknown* sink, Arguments& arguments) {
    const LONG count = arguments.Integer();
    const auto points = arguments.Points<Number>(count);
    return static_cast<Sink*>(sink)->AppendBezier(count, points.data());
}

template <typename Sink>
HRESULT AppendLogFont(IUnknown* sink, Arguments& arguments) {
    LOGFONTA font = {};
    font.lfHeight = arguments.Integer();
    font.lfEscapement = arguments.Integer();
    const std::string face = WideToBytes(arguments.Text().View());
    arguments.End();
    std::memcpy(font.lfFaceName, face.data(), std::min<std::size_t>(face.size(), LF_FACESIZE - 1));
    return static_cast<Sink*>(sink)->AppendLogFont(static_cast<LONG>(sizeof(font)),
                                                   reinterpret_cast<const BYTE*>(&font));
}

template <typename Sink>
HRESULT DefineFillPattern(IUnknown* sink, Arguments& arguments) {
    const LONG index = arguments.Integer();
    const LONG width = arguments.Integer();
    const LONG height = arguments.Integer();
    const auto rowBytes = (std::int64_t{width} + 15) / 16 * 2;
    const auto pattern = arguments.Hex(BytesOf(width > 0 ? height : 0, rowBytes));
    arguments.End();
    return static_cast<Sink*>(sink)->DefineFillPattern(index, width, height, pattern.data());
}

template <typename Sink>
HRESULT GetInterfaceVersion(IUnknown* sink, Arguments& arguments) {
    arguments.End();
    LONG version = 0;
    return static_cast<Sink*>(sink)->GetInterfaceVersion(&version);
}

HRESULT CreateRasterStorage(IUnknown* sink, Arguments& arguments) {
    LONG values[7];
    for (LONG& value : values) value = arguments.Integer();
    const auto& [width, height, bits, compression, dpiX, dpiY, colours] = values;
    // Stored blue, green, red and a reserved byte, as the script has them.
    std::vector<std::uint8_t> table;
    for (LONG i = 0; i < colours; ++i) {
        const auto colour = arguments.Hex(3);
        if (colour.size() != 3) throw ScriptError("a colour has six digits, BBGGRR");
        table.insert(table.end(), colour.begin(), colour.end());
        table.push_back(0);
    }
    arguments.End();
    return static_cast<IQmSaveRasterData*>(sink)->CreateRasterStorage(
        width, height, bits, compression, dpiX, dpiY, colours,
        table.empty() ? nullptr : table.data());
}

template <auto Method>
HRESULT AddScanline(IUnknown* sink, Arguments& arguments) {
    LONG values[4];
    for (LONG& value : values) value = arguments.Integer();
    const auto& [type, start, lines, bytesPerLine] = values;
    const auto rows = arguments.Hex(BytesOf(lines, bytesPerLine));
    arguments.End();
    return (static_cast<IQmSaveRasterData*>(sink)->*Method)(type, start, lines, bytesPerLine,
                                                            rows.data());
}

HRESULT AppendPolyClipRegion(IUnknown* sink, Arguments& arguments) {
    const LONG count = arguments.Integer();
    const auto points = arguments.Points<LONG>(count);
    return static_cast<IQmSaveRasterData*>(sink)->AppendPolyClipRegion(count, points.data());
}

// ---------------------------------------------------------------- The tables

// clang-format off
constexpr ScriptCall kStructureCalls[] = {
    {"SetAttribute", "NAME [VALUE]", SetAttribute<IQmSaveStructure>},
    {"EndObject",    "",             Plain<&IQmSaveStructure::EndObject>},
};

// Methods of both vector sinks; N is the type of a coordinate.
template <typename I, typename N>
constexpr ScriptCall kSharedVectorCalls[] = {
    {"SetAttribute",           "NAME [VALUE]",                     SetAttribute<I>},
    {"EndObject",              "",                                 Plain<&I::EndObject>},
    {"AppendLayer",            "NUMBER",                           Plain<&I::AppendLayer>},
    {"AppendPen",              "NUMBER",                           Plain<&I::AppendPen>},
    {"AppendPolyFillMode",     "MODE",                             Plain<&I::AppendPolyFillMode>},
    {"AppendLineStipple",      "FACTOR PATTERN",                   Plain<&I::AppendLineStipple>},
    {"AppendLineStyle",        "STYLE",                            Plain<&I::AppendLineStyle>},
    {"AppendLineWidth",        "WIDTH",                            Plain<&I::AppendLineWidth>},
    {"AppendPoint",            "X Y",                              Plain<&I::AppendPoint>},
    {"AppendLine",             "X1 Y1 X2 Y2",                      Plain<&I::AppendLine>},
    {"AppendRectangle",        "X1 Y1 X2 Y2 FILLED",               Plain<&I::AppendRectangle>},
    {"AppendRoundedRectangle", "X1 Y1 X2 Y2 RX RY FILLED",         Plain<&I::AppendRoundedRectangle>},
    {"AppendCircle",           "CX CY R FILLED",                   Plain<&I::AppendCircle>},
    {"AppendEllipse",          "CX CY RX RY ROTATION FILLED",      Plain<&I::AppendEllipse>},
    {"AppendPolygon",          "COUNT FILLED : X,Y ...",           AppendPolygon<I, N>},
    {"AppendPolyPolygon",      "RINGS FILLED COUNT ... : X,Y ...", AppendPolyPolygon<I, N>},
    {"AppendBezier",           "COUNT : X,Y ...",                  AppendBezier<I, N>},
    {"AppendDrawMode",         "MODE",                             Plain<&I::AppendDrawMode>},
    {"StartClipRegion",        "...",                              Bare<&I::StartClipRegion>},
    {"AppendClipRegion",       "...",                              Bare<&I::AppendClipRegion>},
    {"EndClipRegion",          "...",                              Bare<&I::EndClipRegion>},
    {"AppendTextElement",      "...",                              Bare<&I::AppendTextElement>},
    {"AppendDib",              "...",                              Bare<&I::AppendDib>},
    {"AppendLogFont",          "HEIGHT ESCAPEMENT \"FACE\"",       AppendLogFont<I>},
    {"AppendText",             "X Y \"TEXT\"",                     Plain<&I::AppendText>},
    {"AppendLineWeight",       "WEIGHT",                           Plain<&I::AppendLineWeight>},
    {"AppendLineAttributes",   "...",                              Bare<&I::AppendLineAttributes>},
    {"AppendLineDash",         "...",                              Bare<&I::AppendLineDash>},
    {"AppendMarkupObject",     "...",                              Bare<&I::AppendMarkupObject>},
    {"AppendSubBlock",         "...",                              Bare<&I::AppendSubBlock>},
    {"AppendSubBlockEnd",      "...",                              Bare<&I::AppendSubBlockEnd>},
    {"AppendSubBlockAttribute","...",                              Bare<&I::AppendSubBlockAttribute>},
    {"AppendSubBlockExtraData","...",                              Bare<&I::AppendSubBlockExtraData>},
    {"DefineFillPattern",      "INDEX WIDTH HEIGHT HEX",           DefineFillPattern<I>},
    {"AppendFillStyle",        "STYLE INDEX",                      Plain<&I::AppendFillStyle>},
    {"AppendEntity",           "...",                              Bare<&I::AppendEntity>},
    {"GetInterfaceVersion",    "",                                 GetInterfaceVersion<I>},
    {"AppendVectorTextStart",  "...",                              Bare<&I::AppendVectorTextStart>},
    {"AppendVectorTextEnd",    "...",                              Bare<&I::AppendVectorTextEnd>},
};

constexpr ScriptCall kVectorCalls[] = {
    {"AppendDrawColor1", "RED GREEN BLUE",                      Plain<&IQmSaveVectorData::AppendDrawColor1>},
    {"AppendDrawColor2", "COLOR",                               Plain<&IQmSaveVectorData::AppendDrawColor2>},
    {"AppendDrawColor3", "...",                                 Bare<&IQmSaveVectorData::AppendDrawColor3>},
    {"AppendFillColor1", "RED GREEN BLUE",                      Plain<&IQmSaveVectorData::AppendFillColor1>},
    {"AppendFillColor2", "COLOR",                               Plain<&IQmSaveVectorData::AppendFillColor2>},
    {"AppendFillColor3", "",                                    Plain<&IQmSaveVectorData::AppendFillColor3>},
    {"AppendArc1",       "...",                                 Bare<&IQmSaveVectorData::AppendArc1>},
    {"AppendArc2",       "...",                                 Bare<&IQmSaveVectorData::AppendArc2>},
    {"AppendArc3",       "CX CY RX RY ROTATION START SPAN",     Plain<&IQmSaveVectorData::AppendArc3>},
};

constexpr ScriptCall kVectorRealCalls[] = {
    {"AppendDrawColor",     "RED GREEN BLUE",                  Plain<&IQmSaveVectorDataD::AppendDrawColor>},
    {"AppendDrawColorBack", "...",                             Bare<&IQmSaveVectorDataD::AppendDrawColorBack>},
    {"AppendFillColor",     "RED GREEN BLUE",                  Plain<&IQmSaveVectorDataD::AppendFillColor>},
    {"AppendFillColorBack", "",                                Plain<&IQmSaveVectorDataD::AppendFillColorBack>},
    {"AppendArc",           "CX CY RX RY ROTATION START SPAN", Plain<&IQmSaveVectorDataD::AppendArc>},
    {"AppendMeta",          "...",                             Bare<&IQmSaveVectorDataD::AppendMeta>},
};

constexpr ScriptCall kRasterCalls[] = {
    {"SetAttribute",         "NAME [VALUE]",                            SetAttribute<IQmSaveRasterData>},
    {"EndObject",            "",                                        Plain<&IQmSaveRasterData::EndObject>},
    {"CreateRasterStorage",  "W H BITS COMPRESSION DPIX DPIY N BBGGRR ...", CreateRasterStorage},
    {"AddScanline1",         "TYPE START LINES BYTESPERLINE HEX",       AddScanline<&IQmSaveRasterData::AddScanline1>},
    {"AddScanline2",         "TYPE START LINES BYTESPERLINE HEX",       AddScanline<&IQmSaveRasterData::AddScanline2>},
    {"StartPolyClipRegion",  "POLYS DPPOLYS EVENODD",                   Plain<&IQmSaveRasterData::StartPolyClipRegion>},
    {"AppendPolyClipRegion", "COUNT : X,Y ...",                         AppendPolyClipRegion},
};
// clang-format on

template <std::size_t N>
const ScriptCall* FindIn(const ScriptCall (&calls)[N], std::string_view name) noexcept {
    const auto* found = std::find_if(std::begin(calls), std::end(calls),
                                     [&](const ScriptCall& call) { return call.name == name; });
    return found == std::end(calls) ? nullptr : found;
}

}  // namespace

const ScriptCall* FindCall(SinkKind kind, std::string_view name) noexcept {
    const ScriptCall* shared = nullptr;
    switch (kind) {
        case SinkKind::kStructure:
            return FindIn(kStructureCalls, name);
        case SinkKind::kRaster:
            return FindIn(kRasterCalls, name);
        case SinkKind::kVector:
            shared = FindIn(kSharedVectorCalls<IQmSaveVectorData, LONG>, name);
            return shared != nullptr ? shared : FindIn(kVectorCalls, name);
        case SinkKind::kVectorReal:
            shared = FindIn(kSharedVectorCalls<IQmSaveVectorDataD, double>, name);
            return shared != nullptr ? shared : FindIn(kVectorRealCalls, name);
    }
    return nullptr;
}

bool IsCall(std::string_view name) noexcept {
    for (const SinkKind kind :
         {SinkKind::kStructure, SinkKind::kVector, SinkKind::kVectorReal, SinkKind::kRaster}) {
        if (FindCall(kind, name) != nullptr) return true;
    }
    return false;
}

}  // namespace qm
