// Reading: which of two readings of the plot language is in force, switch by switch.
//
// The engine's reading is the default and the one that its documents depend on; Plotter() is what
// an HP-GL/2 plotter draws, and where classic HP-GL differs what a 7475A or 7550A draws. Each
// switch is asked where a comment on a quirk tells what the engine does instead. Tests:
// tests/interpreter/reading_test.cpp.
#pragma once

#include <optional>

#include "common/geometry.h"

namespace qm {

// What is in the plotter. Plotter units, the long side along x.
struct Sheet {
    PointD p1{603.0, 521.0};  // the default P1 and P2; these are a 7475A's on A4
    PointD p2{10603.0, 7721.0};
    PointD characterSize{75.0, 108.0};  // of labels before any SI or SR
};

// With P1 and P2 there, and the characters of that distance: 0.75 and 1.5 percent of it, but no
// larger than HP-GL/2's.
Sheet SheetBetween(PointD p1, PointD p2);

// A sheet of so many millimetres, 10 to 10000, either side first, with P1 and P2 in its corners;
// nothing for other sizes.
std::optional<Sheet> SheetOf(double width, double height);

struct Reading {
    // The engine's reading.
    Reading() = default;
    // What a plotter draws. `sheet` counts until the plot gives a size of its own (PS).
    static Reading Plotter(const Sheet& sheet = {});

    // --- Coordinates ----------------------------------------------------------------------------
    bool initializes = false;       // IN and DF reset what the guides list
    bool scalesFromSheet = false;   // IP, IR and SC start from the sheet and leave the pen in place
    bool needsWholeWindow = false;  // an IW of less than four numbers does nothing
    bool turnsWithinPages = false;  // RO turns what follows it, not what the page shows already

    // --- Labels ---------------------------------------------------------------------------------
    bool labelsOnGrid = false;    // labels, LO, DV and CP go by character cells, whatever SC says
    bool sizesGoBack = false;     // ES alone brings the default back
    bool waitsForSelect = false;  // AD defines a set, SA selects it

    // --- Areas ----------------------------------------------------------------------------------
    bool closesSubPolygons = false;  // PM1 and PM2 close every sub-polygon
    bool edgesWhole = false;         // EP draws every edge with pen-down points; EW exists
    bool fillsByType = false;        // FT rules every area command, in the window, by AC

    // --- Lines and pens -------------------------------------------------------------------------
    bool dashesByLength = false;    // line types have lengths; LT99 brings the last one back
    bool percentWidths = false;     // WU1: a width of 1 is one hundredth of the distance
    bool pensOutlastPages = false;  // a new page knows pen, width and line type
    bool pensHaveWidth = false;     // 0.35 mm until PW, and behind PW alone, WU and IN

    // --- Arcs and curves ------------------------------------------------------------------------
    bool cutsByChord = false;   // arcs with a chord angle, or by CT1 a deviation, are polygons
    bool drawsPenDown = false;  // arcs and curves draw with the pen down only, as far as told
    bool joinsRuns = false;     // long curves and PE commands have no gaps
    bool clipsCircles = false;  // the window clips CI too

    // --- Pictures -------------------------------------------------------------------------------
    bool endsPictures = false;     // ESC E, ESC*rB and ESC*rC finish an open picture
    bool invertsPictures = false;  // raster operation 51 shows the negative
    bool knowsPalettes = false;    // ESC*r1U, ESC*r3U and the fourth of four planes count
    bool placesOnSheet = false;    // rows run across the sheet, as wide as the widest of them
    bool drawsPrintJobs = false;   // ESC E enters the raster language, PCL jobs have pictures

    Sheet sheet;
};

}  // namespace qm
