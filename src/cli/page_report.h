// PageReport: what `qmplot info` tells of a page, gathered before it is printed as text
// (info_text.cpp) or as JSON (info_json.cpp). Test: tests/cli/transcripts_test.cpp.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/open_plot.h"
#include "host/page_summary.h"

namespace qm::cli {

struct PenReport {
    std::int32_t number = 0;
    // 0x00BBGGRR, those it drew with in the order of their first use, kMostColours at most; what
    // the page's layer says when it drew nothing.
    std::vector<std::uint32_t> colours;
    std::uint64_t drawn = 0;  // primitives
    std::string layer;        // UTF-8

    static constexpr std::size_t kMostColours = 16;
};

// A picture or a text, in drawing order.
struct ContentReport {
    bool isText = false;
    std::string text;        // UTF-8
    Extent box;              // empty for a text without strokes
    std::int32_t width = 0;  // dots of a picture; 0: its header says nothing sensible
    std::int32_t height = 0;
    int bits = 0;
};

struct PageReport {
    std::size_t number = 0;  // as --page counts
    std::string name;        // UTF-8, the page's title
    double rotation = 0.0;   // degrees
    PageSummary summary;
    std::vector<PenReport> pens;
    std::vector<ContentReport> contents;
};

struct PlotReport {
    std::string file;
    std::string format;
    std::vector<std::string> notes;
    std::vector<PageReport> pages;
};

// "everything on page 1 is white; --pen 0=black shows it", of the page of that number.
std::string NoteOfWhite(std::size_t number, const PageSummary& summary);

// "#rrggbb" of 0x00BBGGRR.
std::string HexOf(std::uint32_t colour);

// Without `texts` only pictures are listed.
PageReport ReportOf(const PlotPage& page, std::size_t number, bool texts);

// For people, lines below each other.
std::string InfoText(const PlotReport& report);
// One line for programs, without its end; docs/json.md describes it.
std::string InfoJson(const PlotReport& report);

}  // namespace qm::cli
