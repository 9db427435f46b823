// Plots that ask for more than their bytes may have: how much they get, and that the plot goes on.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "interpreter/null_builder.h"
#include "interpreter/pages.h"
#include "interpreter/plot_notes.h"
#include "interpreter/plot_work.h"

namespace qm {
namespace {

// Counts what the limits are about.
class Counter final : public NullBuilder {
  public:
    using NullBuilder::NullBuilder;
    void Line(std::int32_t, std::int32_t, std::int32_t, std::int32_t) override { ++lines; }
    void Polyline(std::int32_t count, PointI*) override { points += count; }
    void FilledPolygon(std::int32_t count, PointI*) override { points += count; }
    void Circle(std::int32_t, std::int32_t, std::int32_t) override { ++circles; }
    void DefineFillPattern(std::int32_t, std::int32_t, std::int32_t, std::int32_t size,
                           const std::uint8_t*) override {
        patternBytes += size;
    }
    void EndPage(std::uint32_t) override { ++pages; }

    std::int64_t lines = 0, points = 0, circles = 0, patternBytes = 0, pages = 0;
};

std::string Repeated(const std::string& text, int count) {
    std::string all;
    for (int i = 0; i < count; ++i) all += text;
    return all;
}

constexpr char kSquare[] = "PM0;PD40000,0,40000,40000,0,40000;PM2;";

struct LimitRow {
    const char* name;
    std::string plot;
    std::int64_t Counter::*count;
    std::int64_t unit;  // what one command of the plot counts
    std::int64_t base;
    std::int64_t perByte;
    std::int64_t each;  // units of the budget for one that is counted
    const char* met;
};

TEST(Limits, ACommandThatFindsNothingLeftIsLeftOut) {
    const std::string polygon = "PM0;PD" + Repeated("1,2,", 9999) + "0,0;PM2;";
    const std::string comb = "IW0,0,9,9;PM0;PD" + Repeated("0,9,9999,9,", 2500) + "0,0;PM2;";
    using Work = PlotWork;
    const LimitRow rows[] = {
        {"edges", polygon + Repeated("EP", 3000), &Counter::points, 10002, Work::kVertices,
         Work::kVerticesPerByte, 1, "polygons drawn again"},
        {"fills", polygon + Repeated("FP", 3000), &Counter::points, 10002, Work::kVertices,
         Work::kVerticesPerByte, 1, "polygons drawn again"},
        {"hatches", kSquare + std::string("FT3,1,0;") + Repeated("FP", 1000), &Counter::lines, 1,
         Work::kCrossings, Work::kCrossingsPerByte, 3, "hatch lines"},
        {"patterns", Repeated("RF1,255,255;", 4000), &Counter::patternBytes, 8160,
         Work::kPatternBytes, Work::kPatternBytesPerByte, 1, "fill patterns"},
        {"pages", Repeated("CI9;PG;", 1500), &Counter::pages, 1, PageState::kMaxPages, 0, 1,
         "page ends"},
    };
    for (const LimitRow& row : rows) {
        const std::string plot = row.plot + "CI5;";
        Counter counter(plot);
        counter.Interpret();
        const auto bytes = static_cast<std::int64_t>(plot.size());
        const std::int64_t most = (row.base + row.perByte * bytes) / row.each;
        EXPECT_LE(counter.*row.count, most) << row.name;
        EXPECT_GE(counter.*row.count, most - row.unit) << row.name;
        EXPECT_EQ(counter.Notes().limitsMet, row.met) << row.name;
        EXPECT_GE(counter.circles, 1) << row.name;
    }
    const std::string plot = comb + Repeated("FP", 99);
    Counter counter(plot);
    counter.Interpret();
    EXPECT_EQ(counter.Notes().limitsMet, "cuts of tangled polygons");
}

TEST(Limits, WhatFitsIsDrawnWhole) {
    const std::string plot = std::string(kSquare) + "FT4,40,45;" + Repeated("FP;EP;", 100) +
                             Repeated("RF1,64,64;", 1000) + Repeated("CI9;PG;", 500);
    Counter counter(plot);
    counter.Interpret();
    EXPECT_EQ(counter.Notes().limitsMet, "");
    EXPECT_EQ(counter.pages, 500);
}

}  // namespace
}  // namespace qm
