// Tracer: stands between the embedded host's objects and their callers, prints each call and passes
// it on to the object. A call that the log refuses is not passed on. A block's records are dropped
// as they come, so that the trace of a large plot takes no more memory than that of a small one.
// Test: tests/trace/host_trace_test.cpp.
#pragma once

#include <memory>

#include "host/host_object.h"
#include "trace/host_log.h"

namespace qm {

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
