// Output: the one way from the command handlers to the drawing operations.
//
// It passes every call on and remembers whether the current page holds anything: an operation that
// draws says so here, and nowhere else. Nothing in it is virtual; the call behind it is. Tests:
// tests/interpreter/pages_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "common/geometry.h"
#include "interpreter/drawing_operations.h"
#include "interpreter/turned_operations.h"

namespace qm {

class Output {
  public:
    // `operations` takes the calls and must outlive this object.
    explicit Output(DrawingOperations& operations)
        : base_(operations), operations_(&operations), turned_(operations) {}
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    // --- Page -----------------------------------------------------------------------------------
    // Nothing was drawn yet on the current page.
    bool PageEmpty() const { return pageEmpty_; }
    // For the commands that count as drawing although they may send nothing.
    void MarkDrawn() { pageEmpty_ = false; }
    // The next page begins empty.
    void EndPage(std::int32_t pageIndex) {
        operations_->EndPage(static_cast<std::uint32_t>(pageIndex));
        pageEmpty_ = true;
    }
    void SetFrameOffset(std::int32_t distance) { operations_->SetFrameOffset(distance); }
    // What follows is turned by `degrees` (0, 90, 180, 270) on a sheet of `size`
    // (turned_operations.h).
    void Turn(int degrees, PointI size) {
        turned_.Turn(degrees, size);
        operations_ = degrees == 0 ? &base_ : &turned_;
    }

    // --- Operations that draw -------------------------------------------------------------------
    void Line(PointI from, PointI to) {
        MarkDrawn();
        operations_->Line(from.x, from.y, to.x, to.y);
    }
    // Line for every line of the strokes.
    void Letter(const Strokes& strokes) {
        MarkDrawn();
        operations_->Letter(strokes);
    }
    void Rectangle(BoxI box) {
        MarkDrawn();
        operations_->Rectangle(box.a.x, box.a.y, box.b.x, box.b.y);
    }
    void FilledRectangle(BoxI box) {
        MarkDrawn();
        operations_->FilledRectangle(box.a.x, box.a.y, box.b.x, box.b.y);
    }
    void Circle(PointI centre, std::int32_t radius) {
        MarkDrawn();
        operations_->Circle(centre.x, centre.y, radius);
    }
    // False when the receiver wants segments instead.
    bool Arc(PointI centre, std::int32_t radius, double start, double sweep) {
        MarkDrawn();
        return operations_->Arc(centre.x, centre.y, radius, start, sweep) != 0;
    }
    void Polyline(std::int32_t count, PointI* points) {
        MarkDrawn();
        operations_->Polyline(count, points);
    }
    void FilledPolygon(std::vector<PointI>& points) {
        MarkDrawn();
        operations_->FilledPolygon(static_cast<std::int32_t>(points.size()), points.data());
    }
    void FilledPolyPolygon(std::vector<PointI>& points, const std::vector<std::int32_t>& counts) {
        MarkDrawn();
        operations_->FilledPolyPolygon(points.data(), counts.data(),
                                       static_cast<std::int32_t>(counts.size()));
    }
    // The block behind the handle `bitmap` passes to the receiver.
    void Raster(BoxI box, void* bitmap, std::int32_t rop) {
        MarkDrawn();
        operations_->Raster(box.a.x, box.a.y, box.b.x, box.b.y, bitmap, 0, rop);
    }

    // --- Attributes -----------------------------------------------------------------------------
    void SetPatternLength(std::int32_t length, std::int32_t mask) {
        operations_->SetPatternLength(length, static_cast<std::uint32_t>(mask));
    }
    void SetLineStyle(std::int32_t style) { operations_->SetLineStyle(style); }
    void SetPen(std::int32_t pen) { operations_->SetPen(pen); }
    void SetLineWidth(std::int32_t width) { operations_->SetLineWidth(width); }
    void SetColor(std::uint32_t colour) { operations_->SetColor(colour); }
    void SetDrawMode(std::int32_t mode) { operations_->SetDrawMode(mode); }
    void SetLineType(std::int32_t count, const std::int32_t* gaps) {
        operations_->SetLineType(count, gaps);
    }
    void SetLineAttributes(std::int32_t bits) { operations_->SetLineAttributes(bits); }
    void DefineFillPattern(std::int32_t index, std::int32_t width, std::int32_t height,
                           const std::vector<std::uint8_t>& bits) {
        operations_->DefineFillPattern(index, width, height, static_cast<std::int32_t>(bits.size()),
                                       bits.data());
    }
    void SetFillType(std::int32_t kind, std::int32_t index) {
        operations_->SetFillType(kind, index);
    }

    // --- Labels ---------------------------------------------------------------------------------
    void BeginLabelExtent(const char* text, std::int32_t height) {
        operations_->BeginLabelExtent(text, 0.0, height, 0);
    }
    void EndLabelExtent(const char* text) { operations_->EndLabelExtent(text); }

  private:
    DrawingOperations& base_;
    DrawingOperations* operations_;  // base_, or turned_ on the way to it
    TurnedOperations turned_;
    bool pageEmpty_ = true;
};

}  // namespace qm
