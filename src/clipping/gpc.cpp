// See gpc.h.
#include "gpc.h"

#include <algorithm>
#include <clipper.hpp>
#include <cmath>
#include <cstdlib>
#include <exception>
#include <new>

namespace {

// Clipper counts in integers. With this many steps to the unit, crossings that are truncated to
// whole units afterwards come out as with exact arithmetic; with 256 steps one in 500 does not.
constexpr double kScale = 65536.0;
constexpr double kLimit = 35184372088832.0;  // 2^45; scaled still inside Clipper's range of 2^62

ClipperLib::cInt Scaled(double value) {
    if (std::isnan(value)) return 0;
    return static_cast<ClipperLib::cInt>(std::round(std::clamp(value, -kLimit, kLimit) * kScale));
}

// Adds the contours that enclose anything; false when none does.
bool AddContours(ClipperLib::Clipper& clipper, const gpc_polygon& polygon,
                 ClipperLib::PolyType type) {
    bool any = false;
    ClipperLib::Path path;
    for (int i = 0; i < polygon.num_contours; ++i) {
        const gpc_vertex_list& contour = polygon.contour[i];
        path.clear();
        for (int k = 0; k < contour.num_vertices; ++k) {
            path.emplace_back(Scaled(contour.vertex[k].x), Scaled(contour.vertex[k].y));
        }
        any = clipper.AddPath(path, type, true) || any;
    }
    return any;
}

template <typename T>
T* Allocate(std::size_t count) {
    auto* const items = static_cast<T*>(std::calloc(count, sizeof(T)));
    if (items == nullptr) throw std::bad_alloc();
    return items;
}

void Store(const ClipperLib::Paths& paths, gpc_polygon& result) {
    if (paths.empty()) return;
    result.hole = Allocate<int>(paths.size());
    result.contour = Allocate<gpc_vertex_list>(paths.size());
    for (const ClipperLib::Path& path : paths) {
        gpc_vertex_list& contour = result.contour[result.num_contours];
        contour.vertex = Allocate<gpc_vertex>(path.size());
        contour.num_vertices = static_cast<int>(path.size());
        std::transform(path.begin(), path.end(), contour.vertex, [](ClipperLib::IntPoint p) {
            return gpc_vertex{static_cast<double>(p.X) / kScale, static_cast<double>(p.Y) / kScale};
        });
        result.hole[result.num_contours] = ClipperLib::Orientation(path) ? 0 : 1;
        ++result.num_contours;
    }
}

}  // namespace

void gpc_polygon_clip(gpc_op /*set_operation*/, gpc_polygon* subject_polygon,
                      gpc_polygon* clip_polygon, gpc_polygon* result_polygon) {
    *result_polygon = {};
    try {
        ClipperLib::Clipper clipper;
        clipper.PreserveCollinear(true);
        const bool subject = AddContours(clipper, *subject_polygon, ClipperLib::ptSubject);
        const bool clip = AddContours(clipper, *clip_polygon, ClipperLib::ptClip);
        if (!subject && !clip) return;
        ClipperLib::Paths paths;
        clipper.Execute(ClipperLib::ctIntersection, paths, ClipperLib::pftEvenOdd,
                        ClipperLib::pftEvenOdd);
        Store(paths, *result_polygon);
    } catch (const std::bad_alloc&) {
        gpc_free_polygon(result_polygon);
        throw;
    } catch (const std::exception&) {
        // Clipper throws for what it cannot count.
        gpc_free_polygon(result_polygon);
    }
}

void gpc_free_polygon(gpc_polygon* polygon) {
    for (int i = 0; i < polygon->num_contours; ++i) std::free(polygon->contour[i].vertex);
    std::free(polygon->contour);
    std::free(polygon->hole);
    *polygon = {};
}
