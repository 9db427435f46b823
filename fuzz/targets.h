// The fuzz targets: functions that take any bytes and return. Nothing may crash in them, read or
// write out of bounds, leak, hang, or convert a number to one that it is not.
//
// fuzz_main.cpp makes a libFuzzer program of each, tests/fuzz/corpus_test.cpp runs each over
// fuzz/corpus/NAME/, which holds what was found once. scripts/fuzz runs them and reads the table
// below.
#pragma once

#include <cstddef>
#include <string_view>

namespace qm::fuzz {

// plot_targets.cpp
void Detect(std::string_view plot);     // is it a plot?
void Interpret(std::string_view plot);  // read in document mode, what is drawn is dropped
void Reading(std::string_view plot);    // the same with a plotter's reading
// Rows of one small picture, every method and plane kind, then its bitmap. Three bytes say what the
// picture is; then, for each transfer, one the method and one its length.
void Rows(std::string_view rows);

// filter_targets.cpp
void Filter(std::string_view plot);    // the whole import filter on the embedded host
void Archive(std::string_view zip);    // the archive library's five functions
void Replay(std::string_view script);  // a replay script into both save components

// writer_targets.cpp. The first ones open the plot and write all its pages, Drawing writes a
// display list made of the bytes, which holds what no plot can bring into one.
void Svg(std::string_view plot);
void Pdf(std::string_view plot);
void Png(std::string_view plot);
void Viewer(std::string_view plot);
void Save(std::string_view plot);  // HP-GL/2, and HP-RTL of 1, 8 and 24 bits a dot
void Drawing(std::string_view bytes);

// What an input is written in, which decides how it is mutated.
enum class Language { kBytes, kPlot, kScript };

struct Target {
    std::string_view name;
    void (*run)(std::string_view input);
    Language language;
};

inline constexpr Target kTargets[] = {
    // clang-format off
    {"detect",    Detect,    Language::kPlot},
    {"interpret", Interpret, Language::kPlot},
    {"reading",   Reading,   Language::kPlot},
    {"rows",      Rows,      Language::kBytes},
    {"filter",    Filter,    Language::kPlot},
    {"archive",   Archive,   Language::kBytes},
    {"replay",    Replay,    Language::kScript},
    {"svg",       Svg,       Language::kPlot},
    {"pdf",       Pdf,       Language::kPlot},
    {"png",       Png,       Language::kPlot},
    {"viewer",    Viewer,    Language::kPlot},
    {"save",      Save,      Language::kPlot},
    {"drawing",   Drawing,   Language::kBytes},
    // clang-format on
};

// The target of that name, the first one for any other.
constexpr const Target& FindTarget(std::string_view name) {
    for (const Target& target : kTargets) {
        if (target.name == name) return target;
    }
    return kTargets[0];
}

}  // namespace qm::fuzz
