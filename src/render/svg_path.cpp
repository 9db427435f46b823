// See svg_path.h.
#include "render/svg_path.h"

#include <cmath>

namespace qm {

void SvgPath::Number(std::int64_t number, bool first) {
    // A letter or a minus sign parts numbers as well as a blank.
    if (!first && number >= 0) out_ << ' ';
    out_ << number;
}

void SvgPath::MoveTo(PointI point) {
    if (placed_) {
        if (point == at_) {
            out_ << "m0 0";
        } else {
            out_ << 'm';
            Number(std::int64_t{point.x} - at_.x, true);
            Number(std::int64_t{point.y} - at_.y, false);
        }
    } else {
        out_ << 'M';
        Number(point.x, true);
        Number(point.y, false);
    }
    at_ = start_ = point;
    // Pairs behind an M would be absolute.
    command_ = placed_ ? 'l' : 0;
    placed_ = true;
}

void SvgPath::LineTo(PointI point) {
    const std::int64_t dx = std::int64_t{point.x} - at_.x;
    const std::int64_t dy = std::int64_t{point.y} - at_.y;
    const char command = dy == 0 ? 'h' : dx == 0 ? 'v' : 'l';
    const bool letter = command != command_;
    if (letter) out_ << command;
    if (dx != 0 || command == 'h') Number(dx, letter);
    if (dy != 0) Number(dy, letter && command == 'v');
    command_ = command;
    at_ = point;
}

void SvgPath::Polyline(PointSpan points, bool close) {
    if (points.count == 0) return;
    points_ += points.count;
    const bool joined = placed_ && !close && command_ != 0 && points[0] == at_;
    if (!joined) MoveTo(points[0]);
    for (std::size_t i = 1; i < points.count; ++i) LineTo(points[i]);
    if (points.count == 1) LineTo(points[0]);
    if (!close) return;
    out_ << 'z';
    at_ = start_;
    command_ = 0;
}

void SvgPath::Rectangle(const BoxI& box) {
    const PointI corners[] = {box.a, {box.b.x, box.a.y}, box.b, {box.a.x, box.b.y}};
    Polyline({corners, 4}, true);
}

void SvgPath::Arc(const ArcShape& arc) {
    const double end = double{arc.start} + arc.span;
    const PointD from = PointOnArc(arc, arc.start);
    const PointD to = PointOnArc(arc, end);
    out_ << 'M' << from.x << ' ' << from.y << 'A' << std::abs(double{1} * arc.radiusX) << ' '
         << std::abs(double{1} * arc.radiusY) << " 0 " << (std::abs(arc.span) > 180.0F ? '1' : '0')
         << ' ' << (arc.span > 0.0F ? '1' : '0') << ' ' << to.x << ' ' << to.y;
    points_ += 2;
    placed_ = false;
    command_ = 0;
}

}  // namespace qm
