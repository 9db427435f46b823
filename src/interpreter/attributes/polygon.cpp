// See polygon.h. Handler: PM.
#include "interpreter/attributes/polygon.h"

#include "common/numbers.h"
#include "interpreter/handlers.h"
#include "interpreter/hpgl_read.h"

namespace qm {

PolygonBuffer::PolygonBuffer() { vertices.reserve(kCapacity + 1); }

void PolygonBuffer::Append(PointD point, bool drawn) {
    if (vertices.size() >= kCapacity) return;
    if (drawn && !startFixed_) {
        startPoint = point;
        startFixed_ = true;
    }
    vertices.push_back({point, subPolygonNumber, drawn});
}

void PolygonBuffer::Start(PointD pen) {
    mode = true;
    if (subPolygonNumber == 0) {
        vertices.assign(1, {pen, 0, true});
        startPoint = pen;
    }
    startFixed_ = true;
}

void PolygonBuffer::Close(bool penDown) {
    if (vertices.size() < kCapacity && subPolygonNumber == 0) {
        vertices.push_back({startPoint, subPolygonNumber, penDown});
    }
    mode = false;
    startFixed_ = false;
}

void PolygonBuffer::Clear() {
    vertices.clear();
    subPolygonNumber = 0;
}

void NextSubPolygon(HPGLRead& reader) {
    PolygonBuffer& polygon = reader.polygon;
    polygon.Close(reader.motion.penDown);
    polygon.subPolygonNumber = WrapAdd(polygon.subPolygonNumber, 1);
    polygon.Start(reader.motion.penPos);
}

namespace handlers {

// PM [n]: 0 begins a polygon, 1 its next sub-polygon, 2 ends it and puts the pen back to where it
// began.
void PolygonMode(HPGLRead& reader) {
    PolygonBuffer& polygon = reader.polygon;
    const std::int16_t step = reader.GetShortParam();
    if (step == 0 || step == kAbsentShort) {
        polygon.subPolygonNumber = 0;
        polygon.Start(reader.motion.penPos);
        polygon.savedPenDown = reader.motion.penDown;
    } else if (step == 1 && polygon.mode) {
        NextSubPolygon(reader);
    } else if (step == 2 && polygon.mode) {
        polygon.Close(reader.motion.penDown);
        reader.motion.penPos = polygon.startPoint;
        reader.motion.penDown = polygon.savedPenDown;
    }
}

}  // namespace handlers
}  // namespace qm
