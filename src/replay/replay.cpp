// See replay.h.
#include "replay/replay.h"

#include <qmfilter.h>

#include <algorithm>
#include <array>
#include <optional>
#include <ostream>
#include <utility>
#include <vector>

#include "common/tool_error.h"
#include "export/save_filter.h"
#include "host/layers_and_pens.h"
#include "host/source_and_events.h"
#include "platform/text.h"
#include "replay/replay_calls.h"
#include "replay/replay_line.h"

namespace qm {
namespace {

// The settings object of the script's `setting` lines.
class ReplaySettings final : public ComObject<IQmAttributes> {
  public:
    HRESULT STDMETHODCALLTYPE PutAttribute(BSTR name, VARIANT value, LONG flags) noexcept override {
        return values_.Put(name, value, flags);
    }
    HRESULT STDMETHODCALLTYPE GetAttribute(BSTR name, LONG, VARIANT* value) noexcept override {
        return values_.Get(name, value);
    }

  private:
    AttributeMap values_;
};

// A line's syntax, for messages.
std::string Usage(const std::string& name, std::string_view arguments) {
    return arguments.empty() ? name : name + ' ' + std::string(arguments);
}

// An object of the walk, from its creation to its `end`.
struct Sink {
    ComPtr<IUnknown> object;  // null: the structure refused it
    SinkKind kind = SinkKind::kStructure;
};

SinkKind KindOf(const ComPtr<IUnknown>& object) {
    if (object.As<IQmSaveVectorData>()) return SinkKind::kVector;
    if (object.As<IQmSaveVectorDataD>()) return SinkKind::kVectorReal;
    if (object.As<IQmSaveRasterData>()) return SinkKind::kRaster;
    return SinkKind::kStructure;
}

class Replay {
  public:
    Replay(const std::string& name, ReplayFormat format, IStream* target, std::ostream& messages)
        : name_(name), messages_(messages) {
        if (format == ReplayFormat::kHprtl) {
            filter_.Attach(MakeObject<CQmFilterSaveHPRTL>().Detach());
        } else {
            filter_.Attach(MakeObject<CQmFilterSaveHPGL>().Detach());
        }
        target_.Attach(MakeObject<DataObject>(ComPtr<IStream>(target), std::wstring()).Detach());
        if (!filter_ || !target_) throw std::bad_alloc();
    }

    void Run(const ScriptLine& line);
    // The end of the script; returns the exit status.
    int Finish();

  private:
    struct Keyword {
        std::string_view name;
        std::string_view arguments;
        void (Replay::*handler)(Arguments&);
        bool setsUp;  // stands in front of the document too
    };
    static const std::array<Keyword, 6>& Keywords();

    void Setting(Arguments& arguments);
    void StartPenTable(Arguments& arguments);
    void Pen(Arguments& arguments);
    void Attribute(Arguments& arguments);
    void Object(Arguments& arguments);
    void End(Arguments& arguments);
    void Call(const ScriptLine& line);

    void OpenDocument();
    void PutAttribute(IQmAttributes& object, const Bstr& name, const Variant& value);
    IQmSaveStructure& Structure();
    IQmSaveStructure& FreeStructure();
    Variant AttributeValue(std::string_view name, Arguments& arguments);
    void Report(std::string_view call, HRESULT status);

    const std::string& name_;
    std::ostream& messages_;
    int line_ = 0;
    bool failed_ = false;
    bool opened_ = false;
    ComPtr<IQmFilterSave> filter_;
    ComPtr<IQmDataObject> target_;
    ComPtr<ReplaySettings> settings_;
    ComPtr<PenTable> penTable_;
    std::vector<Sink> sinks_;  // the document's structure first
};

const std::array<Replay::Keyword, 6>& Replay::Keywords() {
    // clang-format off
    static constexpr std::array<Keyword, 6> kKeywords = {{
        {"setting",   "NAME VALUE",               &Replay::Setting,       true},
        {"pentable",  "[Measurement VALUE]",      &Replay::StartPenTable, true},
        {"pen",       "NUMBER STYLE COLOUR WIDTH",&Replay::Pen,           true},
        {"attribute", "NAME [VALUE]",             &Replay::Attribute,     false},
        {"object",    "TYPE [INDEX]",             &Replay::Object,        false},
        {"end",       "",                         &Replay::End,           false},
    }};
    // clang-format on
    return kKeywords;
}

void Replay::Run(const ScriptLine& line) {
    if (line.values.empty()) return;
    line_ = line.number;
    const std::string& name = line.values.front().text;
    for (const Keyword& keyword : Keywords()) {
        if (keyword.name != name) continue;
        if (!keyword.setsUp) OpenDocument();
        const std::string usage = Usage(name, keyword.arguments);
        Arguments arguments(line, usage);
        (this->*keyword.handler)(arguments);
        arguments.End();
        return;
    }
    Call(line);
}

// ---------------------------------------------------------------- What stands in front

void Replay::Setting(Arguments& arguments) {
    if (opened_) throw ScriptError("settings stand in front of the document");
    const Bstr name(Utf8ToWide(arguments.Word()));
    if (arguments.Left() == 0) arguments.Fail("a value");
    if (!settings_) settings_ = MakeObject<ReplaySettings>();
    if (!settings_) throw std::bad_alloc();
    PutAttribute(*settings_, name, arguments.Value());
}

void Replay::StartPenTable(Arguments& arguments) {
    penTable_ = MakeObject<PenTable>();
    if (!penTable_) throw std::bad_alloc();
    if (arguments.Left() == 0) return;
    if (!arguments.Take("Measurement")) arguments.Fail("Measurement");
    PutAttribute(*penTable_, Bstr(L"Measurement"), arguments.Value());
}

void Replay::Pen(Arguments& arguments) {
    if (!penTable_) throw ScriptError("a pen stands behind the pentable it belongs to");
    const LONG pen = arguments.Integer();
    const LONG style = arguments.Take("-") ? -1 : arguments.Integer();
    const LONG colour = arguments.Take("-") ? -1 : arguments.Integer();
    const double width = arguments.Take("-") ? -1.0 : arguments.Real();
    Report("AddPen",
           penTable_->AddPen(pen, static_cast<ULONG>(colour), width, static_cast<ULONG>(style)));
}

void Replay::PutAttribute(IQmAttributes& object, const Bstr& name, const Variant& value) {
    Report("PutAttribute", object.PutAttribute(name.Get(), value.Get(), 0));
}

// ---------------------------------------------------------------- The document

void Replay::OpenDocument() {
    if (std::exchange(opened_, true)) return;
    Sink root;
    Report("CreateDocument",
           filter_->CreateDocument(target_.Get(), settings_.Get(), root.object.Put()));
    if (!root.object) throw std::bad_alloc();
    sinks_.push_back(std::move(root));
}

// The innermost structure, also while one of its sinks is open: sinks hold no objects, so it is
// then the one below. An object it refused just before is done with.
IQmSaveStructure& Replay::Structure() {
    if (!sinks_.back().object) sinks_.pop_back();
    auto innermost = sinks_.rbegin();
    if (innermost->kind != SinkKind::kStructure) ++innermost;
    return *static_cast<IQmSaveStructure*>(innermost->object.Get());
}

// The innermost structure, which can make an object as no sink is open.
IQmSaveStructure& Replay::FreeStructure() {
    IQmSaveStructure& structure = Structure();
    if (sinks_.back().kind != SinkKind::kStructure)
        throw ScriptError("the sink of the last object is still open, an end is missing");
    return structure;
}

Variant Replay::AttributeValue(std::string_view name, Arguments& arguments) {
    if (arguments.Left() == 0 && name == "PenTable")
        return Variant::Object(static_cast<IQmPenTable*>(penTable_.Get()));
    if (arguments.Left() == 0 && name == "Layers")
        return Variant::Object(MakeObject<LayerCollection>().Get());
    return arguments.Value();
}

void Replay::Attribute(Arguments& arguments) {
    const std::string word = arguments.Word();
    const Bstr name(Utf8ToWide(word));
    const Variant value = AttributeValue(word, arguments);
    Report("SetAttribute", Structure().SetAttribute(name.Get(), value.Get()));
}

void Replay::Object(Arguments& arguments) {
    const LONG type = arguments.Integer();
    const LONG index = arguments.Left() > 0 ? arguments.Integer() : 0;
    Sink sink;
    Report("CreateObject", FreeStructure().CreateObject(type, index, sink.object.Put()));
    if (sink.object) sink.kind = KindOf(sink.object);
    sinks_.push_back(std::move(sink));
}

void Replay::End(Arguments&) {
    const Sink& sink = sinks_.back();
    if (sink.object) {
        constexpr std::string_view kName = "EndObject";
        const ScriptLine line{line_, {{std::string(kName), {}, false}}};
        Arguments none(line, kName);
        Report(kName, FindCall(kName)->MethodOf(sink.kind)(sink.object.Get(), none));
    }
    // The document's own structure lives until the script ends.
    if (sinks_.size() > 1) sinks_.pop_back();
}

void Replay::Call(const ScriptLine& line) {
    const std::string& name = line.values.front().text;
    OpenDocument();
    const Sink& sink = sinks_.back();
    const ScriptCall* const call = FindCall(name);
    if (call == nullptr) throw ScriptError("no such call: " + name);
    // Calls on an object that was refused: a host would not make them.
    if (!sink.object) return;
    const SinkMethod method = call->MethodOf(sink.kind);
    if (method == nullptr) throw ScriptError("the open object has no " + name);
    const std::string usage = Usage(name, call->arguments);
    Arguments arguments(line, usage);
    Report(name, method(sink.object.Get(), arguments));
}

void Replay::Report(std::string_view call, HRESULT status) {
    if (status == S_OK) return;
    failed_ = true;
    messages_ << name_ << ':' << line_ << ": " << call << " returned " << StatusName(status)
              << '\n';
}

int Replay::Finish() {
    OpenDocument();
    while (!sinks_.empty()) sinks_.pop_back();
    Report("CloseDocument", filter_->CloseDocument());
    return failed_ ? kExitNotAPlot : kExitSuccess;
}

}  // namespace

int ReplayScript(std::string_view script, const std::string& name, ReplayFormat format,
                 IStream* target, std::ostream& messages) {
    Replay replay(name, format, target, messages);
    int number = 0;
    while (!script.empty()) {
        const std::size_t end = std::min(script.find('\n'), script.size());
        ++number;
        try {
            replay.Run(ParseLine(script.substr(0, end), number));
        } catch (const ScriptError& error) {
            throw ToolError(name + ":" + std::to_string(number) + ": " + error.what());
        }
        script.remove_prefix(std::min(end + 1, script.size()));
    }
    return replay.Finish();
}

}  // namespace qm
