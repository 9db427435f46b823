// The General Polygon Clipper's published interface, here an adapter over the Clipper library.
//
// Stands for GPC's own header, so that a build with QM_WITH_GPC links the real one without a change
// to its callers. Tests: tests/interpreter/attributes/clip_test.cpp.
#pragma once

// NOLINTBEGIN(readability-identifier-naming): the names are the original library's.
extern "C" {

// The intersection, the one operation asked for, with the number that the original gives it.
enum gpc_op { GPC_INT = 1 };

struct gpc_vertex {
    double x;
    double y;
};

// A closed contour; the first vertex need not be repeated.
struct gpc_vertex_list {
    int num_vertices;
    gpc_vertex* vertex;
};

// Contours that are filled even-odd; hole[i] tells that contour i bounds a hole.
struct gpc_polygon {
    int num_contours;
    int* hole;
    gpc_vertex_list* contour;
};

// Stores the intersection of `subject_polygon` and `clip_polygon` in `result_polygon`, whose arrays
// come from malloc and go with gpc_free_polygon. Coordinates are kept to 1/65536 and limited to
// +-2^45. Areas without extent, and what cannot be counted, give a result without contours; throws
// std::bad_alloc. Neither the contours' order nor their first vertices are those of the original
// library.
void gpc_polygon_clip(gpc_op set_operation, gpc_polygon* subject_polygon, gpc_polygon* clip_polygon,
                      gpc_polygon* result_polygon);

// Frees a polygon's arrays, which must come from malloc, and leaves it without contours.
void gpc_free_polygon(gpc_polygon* polygon);

}  // extern "C"
// NOLINTEND(readability-identifier-naming)
