// Components: what a thread needs to open plots, the embedded host's classes and the import filter.
#pragma once

#include <qmfilter.h>

#include "host/open_plot.h"
#include "platform/com_ptr.h"

namespace qm::cli {

// Registered while it exists, for the calling thread. Throws ToolError.
class Components {
  public:
    Components();
    ~Components();
    Components(const Components&) = delete;
    Components& operator=(const Components&) = delete;

  private:
    HostClasses host_;
    DWORD cookie_ = 0;
};

// A new import filter. Throws std::bad_alloc.
ComPtr<IQmFilter> MakeFilter();

}  // namespace qm::cli
