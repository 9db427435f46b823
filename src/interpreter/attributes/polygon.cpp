// See polygon.h. Handler: PM.
#include "interpreter/attributes/polygon.h"

#include <algorithm>

#include "common/numbers.h"
#include "interpreter/handlers.h"
#include "interpreter/lexer.h"
#include "interpreter/pen_motion.h"
#include "interpreter/reading.h"

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

void PolygonBuffer::CloseCurrent(bool penDown) {
    const auto isOther = [this](const PolygonVertex& v) {
        return v.subPolygon != subPolygonNumber;
    };
    const auto begin = std::find_if(vertices.rbegin(), vertices.rend(), isOther).base();
    if (begin == vertices.end() || begin->point == vertices.back().point) return;
    if (vertices.size() < kCapacity) vertices.push_back({begin->point, subPolygonNumber, penDown});
}

void PolygonBuffer::Close(bool penDown, const Reading& reading) {
    if (reading.closesSubPolygons) {
        CloseCurrent(penDown);
    } else if (vertices.size() < kCapacity && subPolygonNumber == 0) {
        vertices.push_back({startPoint, subPolygonNumber, penDown});
    }
    mode = false;
    startFixed_ = false;
}

void PolygonBuffer::Clear() {
    vertices.clear();
    subPolygonNumber = 0;
}

void PolygonBuffer::StartNext(PointD pen) {
    subPolygonNumber = WrapAdd(subPolygonNumber, 1);
    Start(pen);
}

namespace handlers {

// PM [n]: 0 begins a polygon, 1 its next sub-polygon, 2 ends it and puts the pen back to where it
// began.
void PolygonMode(Parameters& in, Drawing& drawing) {
    PolygonBuffer& polygon = drawing.polygon;
    PenMotion& motion = drawing.motion;
    const std::int16_t step = in.GetShortOr(0);
    if (step == 0) {
        polygon.subPolygonNumber = 0;
        polygon.Start(motion.penPos);
        polygon.savedPenDown = motion.penDown;
    } else if (step == 1 && polygon.mode) {
        drawing.NextSubPolygon();
    } else if (step == 2 && polygon.mode) {
        polygon.Close(motion.penDown, drawing.reading);
        motion.penPos = polygon.startPoint;
        motion.penDown = polygon.savedPenDown;
    }
}

}  // namespace handlers
}  // namespace qm
