// Tracer (host_log.h): the objects that stand in front of the host's, one class a kind. Test:
// tests/trace/host_trace_test.cpp.

#include <zlib.h>

#include <tuple>
#include <utility>

#include "common/packed_bitmap.h"
#include "host/document_node.h"
#include "host/drawing_block.h"
#include "host/layers_and_pens.h"
#include "platform/com_object.h"
#include "trace/host_log.h"

namespace qm {

namespace {

// A host object of class Own behind the trace of its `Interfaces`, with a name in the log while it
// lives.
template <typename Own, typename... Interfaces>
class TracedObject : public ComObject<Interfaces...> {
  public:
    // What the trace does not answer the object may: its identity, by which the host's own code
    // finds it.
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) noexcept override {
        const HRESULT status = ComObject<Interfaces...>::QueryInterface(riid, object);
        return status == E_NOINTERFACE ? own_->QueryInterface(riid, object) : status;
    }

  protected:
    TracedObject(std::shared_ptr<HostLog> log, std::string name, ComPtr<Own> own)
        : log_(std::move(log)), name_(std::move(name)), own_(std::move(own)) {
        log_->Enter(Identity(), name_);
    }
    ~TracedObject() override { log_->Leave(Identity()); }

    template <typename... Arguments>
    HRESULT Print(std::string_view method, const Arguments&... arguments) noexcept {
        return Guarded([&] { return log_->Call(name_, method, arguments...); });
    }
    // The call itself, unless its line was refused.
    template <typename Call>
    HRESULT After(HRESULT printed, const Call& call) noexcept {
        return SUCCEEDED(printed) ? call() : printed;
    }
    // Both for a call whose line shows its arguments as they are.
    template <typename Method, typename... Arguments>
    HRESULT Pass(std::string_view name, Method method, Arguments... arguments) noexcept {
        return After(Print(name, arguments...), [&] { return (*own_.*method)(arguments...); });
    }
    Own& Object() const noexcept { return *own_; }

  private:
    // The address that QueryInterface gives for IUnknown.
    IUnknown* Identity() {
        return static_cast<std::tuple_element_t<0, std::tuple<Interfaces...>>*>(this);
    }

    std::shared_ptr<HostLog> log_;
    std::string name_;
    ComPtr<Own> own_;
};

// ------------------------------------------------------------------------------------------- nodes

std::string NodeName(HostLog& log, const DocumentNode& node) {
    switch (node.Type()) {
        case QM_DOCUMENT:
            return "document";
        case QM_CONTENTS:
            return "contents";
        default:
            return log.Number("container");
    }
}

class TracedNode final : public TracedObject<DocumentNode, IQmDocument> {
  public:
    TracedNode(const std::shared_ptr<HostLog>& log, const ComPtr<DocumentNode>& node)
        : TracedObject(log, NodeName(*log, *node), node) {}

    HRESULT STDMETHODCALLTYPE PutAttribute(BSTR name, VARIANT value, LONG flags) noexcept override {
        return Pass("PutAttribute", &DocumentNode::PutAttribute, name, value, flags);
    }
    HRESULT STDMETHODCALLTYPE GetAttribute(BSTR name, LONG flags,
                                           VARIANT* value) noexcept override {
        return After(Print("GetAttribute", name, flags),
                     [&] { return Object().GetAttribute(name, flags, value); });
    }
    HRESULT STDMETHODCALLTYPE AddChild(VARIANT name, IUnknown* child,
                                       LONG flags) noexcept override {
        return Pass("AddChild", &DocumentNode::AddChild, name, child, flags);
    }
    HRESULT STDMETHODCALLTYPE CreateChild(SHORT type, VARIANT value, VARIANT option,
                                          IUnknown** child) noexcept override {
        if (child == nullptr) return E_POINTER;
        *child = nullptr;
        return After(Print("CreateChild", LONG{type}, value, option),
                     [&] { return Object().CreateChild(type, value, option, child); });
    }
    HRESULT STDMETHODCALLTYPE GetChild(SHORT type, VARIANT name,
                                       IUnknown** child) noexcept override {
        if (child == nullptr) return E_POINTER;
        *child = nullptr;
        return After(Print("GetChild", LONG{type}, name),
                     [&] { return Object().GetChild(type, name, child); });
    }

  protected:
    // An IQmDocument is an IQmAttributes too.
    void* FindInterface(REFIID riid) noexcept override {
        return IsEqualGUID(riid, __uuidof(IQmAttributes)) ? static_cast<IQmAttributes*>(this)
                                                          : nullptr;
    }
};

// --------------------------------------------------------------------------------- layers and pens

class TracedLayers final : public TracedObject<IQmLayers, IQmLayers> {
  public:
    TracedLayers(const std::shared_ptr<HostLog>& log, ComPtr<IQmLayers> layers)
        : TracedObject(log, log->Number("layers"), std::move(layers)) {}

    HRESULT STDMETHODCALLTYPE AddLayer(LONG number, BSTR name, ULONG colour,
                                       LONG visible) noexcept override {
        return After(Print("AddLayer", number, name, AsHex{colour, 6}, visible),
                     [&] { return Object().AddLayer(number, name, colour, visible); });
    }
    HRESULT STDMETHODCALLTYPE GetCount(LONG* count) noexcept override {
        return After(Print("GetCount"), [&] { return Object().GetCount(count); });
    }
    HRESULT STDMETHODCALLTYPE GetLayer(LONG index, LONG* number, BSTR* name, ULONG* colour,
                                       LONG* visible) noexcept override {
        return After(Print("GetLayer", index),
                     [&] { return Object().GetLayer(index, number, name, colour, visible); });
    }
};

class TracedPenTable final : public TracedObject<PenTable, IQmPenTable, IQmAttributes> {
  public:
    TracedPenTable(const std::shared_ptr<HostLog>& log, ComPtr<PenTable> pens)
        : TracedObject(log, log->Number("pentable"), std::move(pens)) {}

    HRESULT STDMETHODCALLTYPE AddPen(LONG pen, ULONG colour, DOUBLE width,
                                     ULONG style) noexcept override {
        return After(Print("AddPen", pen, AsHex{colour, 8}, width, AsHex{style, 8}),
                     [&] { return Object().AddPen(pen, colour, width, style); });
    }
    HRESULT STDMETHODCALLTYPE GetPen(LONG pen, LONG* style, LONG* colour,
                                     DOUBLE* width) noexcept override {
        return After(Print("GetPen", pen),
                     [&] { return Object().GetPen(pen, style, colour, width); });
    }
    HRESULT STDMETHODCALLTYPE GetPenCount(LONG* count) noexcept override {
        return After(Print("GetPenCount"), [&] { return Object().GetPenCount(count); });
    }
    HRESULT STDMETHODCALLTYPE GetPenNumber(LONG index, LONG* pen) noexcept override {
        return After(Print("GetPenNumber", index),
                     [&] { return Object().GetPenNumber(index, pen); });
    }
    HRESULT STDMETHODCALLTYPE PutAttribute(BSTR name, VARIANT value, LONG flags) noexcept override {
        return Pass("PutAttribute", &PenTable::PutAttribute, name, value, flags);
    }
    HRESULT STDMETHODCALLTYPE GetAttribute(BSTR name, LONG flags,
                                           VARIANT* value) noexcept override {
        return After(Print("GetAttribute", name, flags),
                     [&] { return Object().GetAttribute(name, flags, value); });
    }
};

// ------------------------------------------------------------------------------------------- block

// "WxHxBITS crc32=XXXXXXXX" of a whole packed bitmap; "?" when it is none.
std::string Describe(const BYTE* dib, LONG size) {
    const auto bytes = static_cast<std::size_t>(size);
    const auto bitmap = PackedBitmapView::Parse(dib, bytes);
    if (!bitmap) return "?";
    std::string text = std::to_string(bitmap->Width()) + 'x' + std::to_string(bitmap->Height()) +
                       'x' + std::to_string(bitmap->Bits()) + " crc32=";
    std::string crc;
    AppendHexNumber(crc, static_cast<std::uint32_t>(crc32_z(0, dib, bytes)), 8);
    return text.append(crc, 2);
}

using Block = DrawingBlock;

class TracedBlock final : public TracedObject<Block, IQmBuildVectorData, IQmAttributes> {
  public:
    TracedBlock(const std::shared_ptr<HostLog>& log, const ComPtr<Block>& block)
        : TracedObject(log, log->Number("block"), block) {}

    HRESULT STDMETHODCALLTYPE PutAttribute(BSTR name, VARIANT value, LONG flags) noexcept override {
        return Pass("PutAttribute", &Block::PutAttribute, name, value, flags);
    }
    HRESULT STDMETHODCALLTYPE GetAttribute(BSTR name, LONG flags,
                                           VARIANT* value) noexcept override {
        return After(Print("GetAttribute", name, flags),
                     [&] { return Object().GetAttribute(name, flags, value); });
    }

    HRESULT STDMETHODCALLTYPE AppendDrawColor1(LONG red, LONG green, LONG blue) noexcept override {
        return Draw("AppendDrawColor1", &Block::AppendDrawColor1, red, green, blue);
    }
    HRESULT STDMETHODCALLTYPE AppendFillColor1(LONG red, LONG green, LONG blue) noexcept override {
        return Draw("AppendFillColor1", &Block::AppendFillColor1, red, green, blue);
    }
    HRESULT STDMETHODCALLTYPE AppendLayer(LONG layer) noexcept override {
        return Draw("AppendLayer", &Block::AppendLayer, layer);
    }
    HRESULT STDMETHODCALLTYPE AppendPen(LONG pen) noexcept override {
        return Draw("AppendPen", &Block::AppendPen, pen);
    }
    HRESULT STDMETHODCALLTYPE AppendLineStyle(LONG style) noexcept override {
        return Draw("AppendLineStyle", &Block::AppendLineStyle, style);
    }
    HRESULT STDMETHODCALLTYPE AppendLineWidth(LONG width) noexcept override {
        return Draw("AppendLineWidth", &Block::AppendLineWidth, width);
    }
    HRESULT STDMETHODCALLTYPE AppendLine(LONG x1, LONG y1, LONG x2, LONG y2) noexcept override {
        return Draw("AppendLine", &Block::AppendLine, x1, y1, x2, y2);
    }
    HRESULT STDMETHODCALLTYPE AppendRectangle(LONG x1, LONG y1, LONG x2, LONG y2,
                                              VARIANT_BOOL filled) noexcept override {
        return Draw("AppendRectangle", &Block::AppendRectangle, x1, y1, x2, y2, filled);
    }
    HRESULT STDMETHODCALLTYPE AppendCircle(LONG x, LONG y, LONG radius,
                                           VARIANT_BOOL filled) noexcept override {
        return Draw("AppendCircle", &Block::AppendCircle, x, y, radius, filled);
    }
    HRESULT STDMETHODCALLTYPE AppendArc3(LONG x, LONG y, LONG radiusX, LONG radiusY, FLOAT start,
                                         FLOAT span) noexcept override {
        return Draw("AppendArc3", &Block::AppendArc3, x, y, radiusX, radiusY, start, span);
    }
    HRESULT STDMETHODCALLTYPE AppendPolygon(LONG count, const LONG* points,
                                            VARIANT_BOOL filled) noexcept override {
        return After(Print("AppendPolygon", count, filled, AsPairs{points, count}),
                     [&] { return Emptied().AppendPolygon(count, points, filled); });
    }
    HRESULT STDMETHODCALLTYPE AppendPolyPolygon(LONG rings, const LONG* lengths, LONG total,
                                                const LONG* points,
                                                VARIANT_BOOL filled) noexcept override {
        return After(
            Print("AppendPolyPolygon", rings, AsList{lengths, rings}, total, filled,
                  AsPairs{points, total}),
            [&] { return Emptied().AppendPolyPolygon(rings, lengths, total, points, filled); });
    }
    HRESULT STDMETHODCALLTYPE AppendDrawMode(LONG mode) noexcept override {
        return Draw("AppendDrawMode", &Block::AppendDrawMode, mode);
    }
    HRESULT STDMETHODCALLTYPE AppendLineDash(LONG count, const LONG* gaps) noexcept override {
        return After(Print("AppendLineDash", count, AsWord{":"}, AsList{gaps, count}),
                     [&] { return Emptied().AppendLineDash(count, gaps); });
    }
    HRESULT STDMETHODCALLTYPE AppendLineAttributes(LONG attributes) noexcept override {
        return After(Print("AppendLineAttributes", AsHex{static_cast<ULONG>(attributes), 1}),
                     [&] { return Emptied().AppendLineAttributes(attributes); });
    }
    HRESULT STDMETHODCALLTYPE DefineFillPattern(LONG index, LONG width, LONG height, LONG size,
                                                const BYTE* bits) noexcept override {
        return After(Print("DefineFillPattern", index, width, height, size, AsBytes{bits, size}),
                     [&] { return Emptied().DefineFillPattern(index, width, height, size, bits); });
    }
    HRESULT STDMETHODCALLTYPE AppendFillStyle(LONG kind, LONG index) noexcept override {
        return Draw("AppendFillStyle", &Block::AppendFillStyle, kind, index);
    }
    HRESULT STDMETHODCALLTYPE AppendClipRegion(LONG count, const LONG* points) noexcept override {
        return After(Print("AppendClipRegion", count, AsPairs{points, count}),
                     [&] { return Emptied().AppendClipRegion(count, points); });
    }
    HRESULT STDMETHODCALLTYPE EndClipRegion() noexcept override {
        return Draw("EndClipRegion", &Block::EndClipRegion);
    }
    HRESULT STDMETHODCALLTYPE AppendTextElement(LONG x1, LONG y1, LONG x2, LONG y2, LONG reserved1,
                                                LONG reserved2, LONG reserved3,
                                                BSTR text) noexcept override {
        return Draw("AppendTextElement", &Block::AppendTextElement, x1, y1, x2, y2, reserved1,
                    reserved2, reserved3, text);
    }
    HRESULT STDMETHODCALLTYPE AppendDib(LONG x1, LONG y1, LONG x2, LONG y2, LONG size,
                                        const BYTE* dib, LONG rasterOperation) noexcept override {
        const HRESULT printed = Guarded([&] {
            return Print("AppendDib", x1, y1, x2, y2, size, rasterOperation,
                         AsWord{Describe(dib, size)});
        });
        return After(printed, [&] {
            return Emptied().AppendDib(x1, y1, x2, y2, size, dib, rasterOperation);
        });
    }
    HRESULT STDMETHODCALLTYPE EndOfData() noexcept override {
        return Pass("EndOfData", &Block::EndOfData);
    }
    // Its line tells the answer.
    HRESULT STDMETHODCALLTYPE IsEmpty(VARIANT_BOOL* empty) noexcept override {
        return After(Object().IsEmpty(empty), [&] {
            return Print("IsEmpty", AsWord{*empty != VARIANT_FALSE ? "true" : "false"});
        });
    }

  private:
    static constexpr std::size_t kMostKept = 4096;
    // The block with the records of earlier calls gone once they are more than a few.
    Block& Emptied() const noexcept {
        if (Object().Drawing().UsedBytes() > kMostKept) Object().DropDrawing();
        return Object();
    }
    // As Pass, for what the block files.
    template <typename Method, typename... Arguments>
    HRESULT Draw(std::string_view name, Method method, Arguments... arguments) noexcept {
        return After(Print(name, arguments...), [&] { return (Emptied().*method)(arguments...); });
    }
};

}  // namespace

// All kinds of objects that the host makes.
ComPtr<IUnknown> Tracer::Traced(const ComPtr<IUnknown>& object) const {
    if (const auto node = OwnObject<DocumentNode>(object.Get())) {
        return MakeObject<TracedNode>(log_, node);
    }
    if (const auto block = OwnObject<Block>(object.Get())) {
        return MakeObject<TracedBlock>(log_, block).As<IUnknown>();
    }
    if (const auto layers = object.As<IQmLayers>()) return MakeObject<TracedLayers>(log_, layers);
    const auto pens = object.As<IQmPenTable>();
    return MakeObject<TracedPenTable>(log_, ComPtr<PenTable>(static_cast<PenTable*>(pens.Get())))
        .As<IUnknown>();
}

HRESULT Tracer::Wrap(Origin origin, ComPtr<IUnknown>& object) noexcept {
    return Guarded([&]() -> HRESULT {
        ComPtr<IUnknown> traced = Traced(object);
        if (!traced) return E_OUTOFMEMORY;
        object = std::move(traced);
        if (origin == Origin::kParent) return S_OK;
        return log_->Call(log_->NameOf(object.Get()), "created");
    });
}

}  // namespace qm
