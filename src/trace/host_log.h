// HostLog and Tracer: what the traced host objects share (their names, the lines they write, the
// answers that stand in for the host's), and what makes traced objects of the host's own.
//
// Every line is "OBJECT METHOD ARGUMENTS"; the argument forms are the structs below. The formats
// are a contract with scripts: they change only together with the tool's documentation. Test:
// tests/trace/host_trace_test.cpp.
#pragma once

#include <qmfilter.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "host/host_object.h"
#include "trace/text_format.h"

namespace qm {

// Takes one line without its line end. What it returns is what the host call answers: S_OK to go
// on, a failure to play a host that refuses.
using HostLineSink = std::function<HRESULT(std::string_view line)>;

// How an argument is printed, where its type alone does not tell.
struct AsHex {  // 0x and at least `digits` digits
    ULONG value;
    int digits;
};
struct AsWord {  // as it stands
    std::string_view value;
};
struct AsPairs {  // " :" and " x,y" for each of `count` points
    const LONG* values;
    LONG count;
};
struct AsList {  // each of `count` numbers
    const LONG* values;
    LONG count;
};
struct AsBytes {  // " :" and the bytes in hexadecimal
    const BYTE* values;
    LONG count;
};

// Each appends a blank and its argument to `line`.
void AppendArgument(std::string& line, LONG value);
void AppendArgument(std::string& line, double value);
void AppendArgument(std::string& line, VARIANT_BOOL value);  // 0 or 1
void AppendArgument(std::string& line, BSTR value);
void AppendArgument(std::string& line, const VARIANT& value);
void AppendArgument(std::string& line, AsHex value);
void AppendArgument(std::string& line, AsWord value);
void AppendArgument(std::string& line, AsPairs value);
void AppendArgument(std::string& line, AsList value);
void AppendArgument(std::string& line, AsBytes value);

class HostLog {
  public:
    explicit HostLog(HostLineSink sink) : sink_(std::move(sink)) {}

    // The next name of a kind: "block1", "block2", ...
    std::string Number(const std::string& kind) { return kind + std::to_string(++counts_[kind]); }
    // Objects that a line may name, as attribute values or children do, between these two calls.
    void Enter(IUnknown* object, std::string name) { names_[object] = std::move(name); }
    void Leave(IUnknown* object) noexcept { names_.erase(object); }
    // "?" for an object that is none of the host's.
    std::string_view NameOf(IUnknown* object) const;

    // Writes "OBJECT METHOD ARGUMENTS" and returns the sink's answer. The line's memory is kept
    // from one call to the next.
    template <typename... Arguments>
    HRESULT Call(std::string_view object, std::string_view method, const Arguments&... arguments) {
        line_ = object;
        AppendArgument(line_, AsWord{method});
        (AppendOne(arguments), ...);
        return sink_(line_);
    }

  private:
    template <typename Argument>
    void AppendOne(const Argument& argument) {
        AppendArgument(line_, argument);
    }
    void AppendOne(IUnknown* object) { AppendArgument(line_, AsWord{NameOf(object)}); }
    void AppendOne(const VARIANT& value);

    HostLineSink sink_;
    std::map<std::string, int> counts_;
    std::map<IUnknown*, std::string> names_;
    std::string line_;
};

// Stands between the embedded host's objects and their callers (traced_objects.cpp), prints each
// call and passes it on to the object. A call that the log refuses is not passed on. A block's
// records are dropped as they come, so that the trace of a large plot takes no more memory than
// that of a small one.
class Tracer final : public ObjectWrapper {
  public:
    explicit Tracer(std::shared_ptr<HostLog> log) : log_(std::move(log)) {}

    // Gives the object its name; one that came by its ProgID leaves a line "NAME created".
    HRESULT Wrap(Origin origin, ComPtr<IUnknown>& object) noexcept override;

  private:
    ComPtr<IUnknown> Traced(const ComPtr<IUnknown>& object) const;

    std::shared_ptr<HostLog> log_;
};

}  // namespace qm
