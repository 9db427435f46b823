// See reading.h.
#include "interpreter/reading.h"

#include <algorithm>

#include "common/units.h"

namespace qm {

Sheet SheetBetween(PointD p1, PointD p2) {
    constexpr PointD kCharacter{114.0, 150.0};
    return {p1,
            p2,
            {std::min((p2.x - p1.x) * 0.0075, kCharacter.x),
             std::min((p2.y - p1.y) * 0.015, kCharacter.y)}};
}

std::optional<Sheet> SheetOf(double width, double height) {
    const auto fits = [](double side) { return side >= 10.0 && side <= 10000.0; };
    if (!fits(width) || !fits(height)) return {};
    return SheetBetween({0.0, 0.0}, {std::max(width, height) * kUnitsPerMillimetre,
                                     std::min(width, height) * kUnitsPerMillimetre});
}

Reading Reading::Plotter(const Sheet& sheet) {
    Reading reading;
    reading.initializes = true;
    reading.scalesFromSheet = true;
    reading.needsWholeWindow = true;
    reading.turnsWithinPages = true;
    reading.labelsOnGrid = true;
    reading.sizesGoBack = true;
    reading.waitsForSelect = true;
    reading.closesSubPolygons = true;
    reading.edgesWhole = true;
    reading.fillsByType = true;
    reading.dashesByLength = true;
    reading.percentWidths = true;
    reading.pensOutlastPages = true;
    reading.pensHaveWidth = true;
    reading.cutsByChord = true;
    reading.drawsPenDown = true;
    reading.joinsRuns = true;
    reading.clipsCircles = true;
    reading.endsPictures = true;
    reading.invertsPictures = true;
    reading.knowsPalettes = true;
    reading.placesOnSheet = true;
    reading.drawsPrintJobs = true;
    reading.sheet = sheet;
    return reading;
}

}  // namespace qm
