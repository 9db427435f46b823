// HPGLRead around its two passes, which stand in detect.cpp and interpret.cpp; and the answers of a
// source that holds nothing, for receivers that read none.
#include "interpreter/hpgl_read.h"

#include "interpreter/plotter.h"

namespace qm {

std::uint32_t DrawingOperations::ReadData(void* /*buffer*/, std::uint32_t /*maxBytes*/) {
    return 0;
}

void DrawingOperations::Letter(const Strokes& strokes) {
    const PointI* points = strokes.points;
    for (std::size_t run = 0; run < strokes.runs; ++run) {
        const std::size_t length = strokes.lengths[run];
        for (std::size_t i = 1; i < length; ++i) {
            Line(points[i - 1].x, points[i - 1].y, points[i].x, points[i].y);
        }
        points += length;
    }
}

std::uint32_t DrawingOperations::GetDataSize() { return 0; }

std::uint32_t DrawingOperations::SeekData(std::int32_t /*offset*/, std::int32_t /*origin*/) {
    return 0;
}

HPGLRead::HPGLRead() : plotter_(std::make_unique<Plotter>(*this)) {}
HPGLRead::~HPGLRead() = default;

void HPGLRead::EnterDocumentMode() { plotter_->raster.documentMode = true; }

void HPGLRead::SetBudgetBytes(std::uint32_t bytes) { plotter_->budgetBytes = bytes; }

void HPGLRead::SetReading(const Reading& reading) { plotter_->reading = reading; }

const PlotNotes& HPGLRead::Notes() const { return plotter_->notes; }

std::int32_t HPGLRead::Rotation() const { return plotter_->drawing.coordinates.rotation; }

}  // namespace qm
