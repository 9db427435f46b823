// The calls that a replay script can make, and how a script's words become the arguments of a
// sink's methods.
//
// Entry points: FindCall and AllScriptCalls, over the one table of all methods of the sinks in
// replay_calls.cpp, a row a script word. Plain, Bare and Special make its entries: for each kind of
// sink the function that reads the values of a line and calls the method. A line that does not fit
// throws ScriptError. Test: tests/replay/replay_test.cpp.
#pragma once

#include <qmfilter.h>
#include <windows.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <vector>

#include "common/numbers.h"
#include "platform/text.h"
#include "replay/replay_line.h"

namespace qm {

enum class SinkKind { kStructure, kVector, kVectorReal, kRaster };

// Reads the arguments and calls the method of `sink`, which is of the kind the function is for.
using SinkMethod = HRESULT (*)(IUnknown* sink, Arguments& arguments);
// By SinkKind; null where that kind has no such method.
using MethodPerSink = std::array<SinkMethod, 4>;

template <typename Interface>
inline constexpr SinkKind kKindOf = SinkKind::kStructure;
template <>
inline constexpr SinkKind kKindOf<IQmSaveVectorData> = SinkKind::kVector;
template <>
inline constexpr SinkKind kKindOf<IQmSaveVectorDataD> = SinkKind::kVectorReal;
template <>
inline constexpr SinkKind kKindOf<IQmSaveRasterData> = SinkKind::kRaster;

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
HRESULT CallWithValues(HRESULT (STDMETHODCALLTYPE Interface::*method)(Values...), IUnknown* sink,
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

template <typename Interface, typename... Values>
constexpr std::size_t IndexOf(HRESULT (STDMETHODCALLTYPE Interface::*)(Values...)) {
    return static_cast<std::size_t>(kKindOf<Interface>);
}

template <auto Method>
HRESULT CallPlain(IUnknown* sink, Arguments& arguments) {
    return CallWithValues(Method, sink, arguments);
}
// The values are the parameters of Methods, one method a kind of sink.
template <auto... Methods>
constexpr MethodPerSink Plain() {
    MethodPerSink methods{};
    ((methods[IndexOf(Methods)] = &CallPlain<Methods>), ...);
    return methods;
}

template <auto Method>
HRESULT CallBare(IUnknown* sink, Arguments& arguments) {
    arguments.Skip();
    return CallWithValues(Method, sink, arguments);
}
// Methods without parameters in the place of ones that hosts give some: a script may write them,
// they are not read.
template <auto... Methods>
constexpr MethodPerSink Bare() {
    MethodPerSink methods{};
    ((methods[IndexOf(Methods)] = &CallBare<Methods>), ...);
    return methods;
}

// ---------------------------------------------------------------- Methods with arrays and objects

template <typename Method, typename Sink>
HRESULT CallSpecial(IUnknown* sink, Arguments& arguments) {
    return Method::Call(*static_cast<Sink*>(sink), arguments);
}
// Method::Call(sink, arguments) reads them; one of the structs below.
template <typename Method, typename... Sinks>
constexpr MethodPerSink Special() {
    MethodPerSink methods{};
    ((methods[static_cast<std::size_t>(kKindOf<Sinks>)] = &CallSpecial<Method, Sinks>), ...);
    return methods;
}

template <typename Sink>
using CoordinateOf = std::conditional_t<std::is_same_v<Sink, IQmSaveVectorDataD>, DOUBLE, LONG>;

inline VARIANT_BOOL FlagOf(bool value) { return value ? VARIANT_TRUE : VARIANT_FALSE; }

// Bytes of `rows` rows of `rowBytes`, 0 for negative counts.
inline std::size_t BytesOf(std::int64_t rows, std::int64_t rowBytes) {
    if (rows <= 0 || rowBytes <= 0) return 0;
    const auto bytes = CheckedBytes(rows, rowBytes);
    if (!bytes) throw ScriptError("more than 2 GiB of data");
    return *bytes;
}

struct SetAttribute {
    template <typename Sink>
    static HRESULT Call(Sink& sink, Arguments& arguments) {
        const Bstr name(Utf8ToWide(arguments.Word()));
        const Variant value = arguments.Value();
        arguments.End();
        return sink.SetAttribute(name.Get(), value.Get());
    }
};

struct AppendPolygon {
    template <typename Sink>
    static HRESULT Call(Sink& sink, Arguments& arguments) {
        const LONG count = arguments.Integer();
        const bool filled = arguments.Boolean();
        const auto points = arguments.Points<CoordinateOf<Sink>>(count);
        return sink.AppendPolygon(count, points.data(), FlagOf(filled));
    }
};

struct AppendPolyPolygon {
    template <typename Sink>
    static HRESULT Call(Sink& sink, Arguments& arguments) {
        const LONG rings = arguments.Integer();
        const bool filled = arguments.Boolean();
        std::vector<LONG> counts;
        counts.reserve(arguments.Left());
        for (LONG i = 0; i < rings; ++i) counts.push_back(arguments.Integer());
        const auto points = arguments.Points<CoordinateOf<Sink>>();
        return sink.AppendPolyPolygon(rings, counts.data(), static_cast<LONG>(points.size() / 2),
                                      points.data(), FlagOf(filled));
    }
};

struct AppendBezier {
    template <typename Sink>
    static HRESULT Call(Sink& sink, Arguments& arguments) {
        const LONG count = arguments.Integer();
        const auto points = arguments.Points<CoordinateOf<Sink>>(count);
        return sink.AppendBezier(count, points.data());
    }
};

struct AppendLogFont {
    template <typename Sink>
    static HRESULT Call(Sink& sink, Arguments& arguments) {
        LOGFONTA font = {};
        font.lfHeight = arguments.Integer();
        font.lfEscapement = arguments.Integer();
        const std::string face = WideToBytes(arguments.Text().View());
        arguments.End();
        std::memcpy(font.lfFaceName, face.data(),
                    std::min<std::size_t>(face.size(), LF_FACESIZE - 1));
        return sink.AppendLogFont(static_cast<LONG>(sizeof(font)),
                                  reinterpret_cast<const BYTE*>(&font));
    }
};

struct DefineFillPattern {
    template <typename Sink>
    static HRESULT Call(Sink& sink, Arguments& arguments) {
        const LONG index = arguments.Integer();
        const LONG width = arguments.Integer();
        const LONG height = arguments.Integer();
        const auto rowBytes = (std::int64_t{width} + 15) / 16 * 2;
        const auto pattern = arguments.Hex(BytesOf(width > 0 ? height : 0, rowBytes));
        arguments.End();
        return sink.DefineFillPattern(index, width, height, pattern.data());
    }
};

struct GetInterfaceVersion {
    template <typename Sink>
    static HRESULT Call(Sink& sink, Arguments& arguments) {
        arguments.End();
        LONG version = 0;
        return sink.GetInterfaceVersion(&version);
    }
};

struct CreateRasterStorage {
    static HRESULT Call(IQmSaveRasterData& sink, Arguments& arguments) {
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
        return sink.CreateRasterStorage(width, height, bits, compression, dpiX, dpiY, colours,
                                        table.empty() ? nullptr : table.data());
    }
};

template <auto Method>
struct AddScanline {
    static HRESULT Call(IQmSaveRasterData& sink, Arguments& arguments) {
        LONG values[4];
        for (LONG& value : values) value = arguments.Integer();
        const auto& [type, start, lines, bytesPerLine] = values;
        const auto rows = arguments.Hex(BytesOf(lines, bytesPerLine));
        arguments.End();
        return (sink.*Method)(type, start, lines, bytesPerLine, rows.data());
    }
};

struct AppendPolyClipRegion {
    static HRESULT Call(IQmSaveRasterData& sink, Arguments& arguments) {
        const LONG count = arguments.Integer();
        const auto points = arguments.Points<LONG>(count);
        return sink.AppendPolyClipRegion(count, points.data());
    }
};

// ---------------------------------------------------------------- The table

struct ScriptCall {
    std::string_view name;
    // The line's syntax behind the name, for messages.
    std::string_view arguments;
    MethodPerSink methods;

    // The method of that kind of sink; null when it has none of this name.
    SinkMethod MethodOf(SinkKind kind) const noexcept {
        return methods[static_cast<std::size_t>(kind)];
    }
};

// All calls, grouped by sink.
struct ScriptCallList {
    const ScriptCall* first;
    std::size_t count;
    const ScriptCall* begin() const { return first; }
    const ScriptCall* end() const { return first + count; }
};
ScriptCallList AllScriptCalls() noexcept;

// The row of `name`, or null when no kind of sink has such a method.
const ScriptCall* FindCall(std::string_view name) noexcept;

}  // namespace qm
