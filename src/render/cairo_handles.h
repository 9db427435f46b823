// Owning pointers to Cairo's objects and the check of their status.
#pragma once

#include <cairo.h>

#include <memory>
#include <string>

#include "common/tool_error.h"

namespace qm {

struct CairoDeleter {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const { cairo_destroy(context); }
    void operator()(cairo_pattern_t* pattern) const { cairo_pattern_destroy(pattern); }
};
using CairoSurface = std::unique_ptr<cairo_surface_t, CairoDeleter>;
using CairoContext = std::unique_ptr<cairo_t, CairoDeleter>;
using CairoPattern = std::unique_ptr<cairo_pattern_t, CairoDeleter>;

// Throws ToolError (std::bad_alloc for exhausted memory) unless `status` is success.
inline void CheckCairo(cairo_status_t status) {
    if (status == CAIRO_STATUS_NO_MEMORY) throw std::bad_alloc();
    if (status != CAIRO_STATUS_SUCCESS) {
        throw PageError(std::string("drawing failed: ") + cairo_status_to_string(status));
    }
}

}  // namespace qm
