// See reading.h.
#include "interpreter/reading.h"

namespace qm {

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
