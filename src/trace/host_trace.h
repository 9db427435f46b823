// The host-call trace: runs the whole import filter against a host that writes one line for every
// call it gets.
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
#include <vector>

#include "platform/com_ptr.h"
#include "trace/host_log.h"

namespace qm {

// While it exists, this thread's "Tessel.QmContainer", "Tessel.QmLayers" and "Tessel.QmPenTable"
// are tracing objects. What the ProgIDs named before is put back afterwards; ProgIDs are shared by
// all threads, so threads must not mix this host with another. Objects may outlive it.
class TraceHost {
  public:
    // Throws std::bad_alloc; `sink` is called on this thread only.
    explicit TraceHost(HostLineSink sink);
    ~TraceHost();
    TraceHost(const TraceHost&) = delete;
    TraceHost& operator=(const TraceHost&) = delete;

    // A new document, to be opened into.
    ComPtr<IQmDocument> MakeDocument() const;
    HostLog& Log() const { return *log_; }

  private:
    struct Registration;

    std::shared_ptr<HostLog> log_;
    std::vector<std::unique_ptr<Registration>> classes_;
};

// A source for OpenDocument: `storage` (may be null) and the path of the file behind it.
ComPtr<IQmDataObject> MakeDataObject(ComPtr<IUnknown> storage, std::wstring_view storageName);

struct TraceOptions {
    bool progress = false;        // a line "progress N" for each Progress event
    std::optional<LONG> abortAt;  // ask to stop at the first event of at least this percent
    std::wstring storageName;     // path of the file, for archives
};

// Opens `source` and gets its first node; the last line is "result NAME". Returns the status of
// GetNode, or of OpenDocument when that failed.
HRESULT TraceImport(IStream* source, const TraceOptions& options, const HostLineSink& sink);

// The lines that `qmplot trace` prints for a file held in memory, each with its LF.
std::string Trace(std::string_view file, const TraceOptions& options = {});

}  // namespace qm
