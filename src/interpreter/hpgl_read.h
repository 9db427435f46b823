// HPGLRead: the interpreter. It pulls bytes through ReadData, recognises two-letter commands and
// escapes, keeps the plotter's state and calls the drawing operations that a derived class gives
// effect to.
//
// Entry points: Detect (is this a plot?) and Interpret (read it all). Commands stand in handlers.h,
// one page for all; their table in command_table.cpp; the state in plotter.h. One object reads one
// file, on one thread; several objects may run on several threads. Nothing in a plot makes it fail:
// malformed input is clamped, defaulted or skipped. Tests: tests/interpreter/.
#pragma once

#include <cstdint>
#include <memory>

#include "interpreter/drawing_operations.h"

namespace qm {

struct PlotNotes;
struct Plotter;
struct Reading;

class HPGLRead : public DrawingOperations {
  public:
    HPGLRead();
    ~HPGLRead() override;
    HPGLRead(const HPGLRead&) = delete;
    HPGLRead& operator=(const HPGLRead&) = delete;

    // Detection pass: 1 when the input is a plot file. Reads only as far as it needs, draws
    // nothing.
    int Detect();
    // Interpreting pass over the whole input; returns the number of pages completed plus 1, also
    // after an abort.
    std::int32_t Interpret();

    // From now on raster pictures are made; without this call their data is consumed all the same.
    void EnterDocumentMode();
    // What commands mean in Interpret, which is to run next; without this call the engine's
    // reading.
    void SetReading(const Reading& reading);
    // What Interpret found worth telling.
    const PlotNotes& Notes() const;
    // The plot may cause no more work than one of so many bytes; for plots that come unpacked.
    void SetBudgetBytes(std::uint32_t bytes);

  protected:
    // The last RO, degrees as given.
    std::int32_t Rotation() const;
    // The whole state, for tests of a part of it; plotter.h is not for receivers.
    Plotter& State() { return *plotter_; }

  private:
    std::unique_ptr<Plotter> plotter_;
};

}  // namespace qm
