// The host-call trace: runs the whole import filter against the embedded host and writes one line
// for every call on an object of the host.
//
// `qmplot trace` prints these lines, the tests compare them. TraceImport runs one import; TraceHost
// is the host alone, for tests that drive the filter themselves. Test:
// tests/trace/host_trace_test.cpp.
#pragma once

#include <qmfilter.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "host/open_plot.h"
#include "interpreter/reading.h"
#include "platform/com_ptr.h"
#include "trace/host_log.h"

namespace qm {

// While it exists, the host's classes make traced objects on this thread. Objects may outlive it.
class TraceHost {
  public:
    // Throws std::bad_alloc; `sink` is called on this thread only.
    explicit TraceHost(HostLineSink sink);

    // A new document, to be opened into. Null when memory ran out.
    ComPtr<IQmDocument> MakeDocument() const;
    HostLog& Log() const { return *log_; }

  private:
    std::shared_ptr<HostLog> log_;
    std::shared_ptr<Tracer> tracer_;
    HostClasses classes_;
};

struct TraceOptions {
    Reading reading;
    bool progress = false;        // a line "progress N" for each Progress event
    std::optional<LONG> abortAt;  // ask to stop at the first event of at least this percent
};

// Opens `source` and gets its first node; the last line is "result NAME". Returns the status of
// GetNode, or of OpenDocument when that failed. Throws std::bad_alloc.
HRESULT TraceImport(IQmDataObject& source, const TraceOptions& options, const HostLineSink& sink);

// The lines that `qmplot trace` prints for a file held in memory, each with its LF.
std::string Trace(std::string_view file, const TraceOptions& options = {});

}  // namespace qm
