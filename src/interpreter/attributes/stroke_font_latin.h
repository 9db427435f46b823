// The outlines of the Latin-1 characters 160-255 and of the florin sign, drawn as text.
//
// Accented letters are an ASCII letter and a mark: the mark stands over the small letters as
// written and is raised for capitals, which puts it above the cap height 12. Letter form and grid:
// stroke_font_ascii.h; the notation: stroke_font_encoding.h. Tests:
// tests/interpreter/stroke_font_test.cpp.
#pragma once

#include <string_view>

#include "interpreter/attributes/stroke_font_ascii.h"
#include "interpreter/attributes/stroke_font_encoding.h"

namespace qm {

// Marks, placed for the small letters with their height of 8.
inline constexpr std::string_view kGrave = "4,12 7,10";
inline constexpr std::string_view kAcute = "5,10 8,12";
inline constexpr std::string_view kCircumflex = "3,10 6,12 9,10";
inline constexpr std::string_view kTilde = "2,10 3,11 5,11 7,10 9,10 10,11";
inline constexpr std::string_view kDiaeresis =
    "3,10 5,10 5,11 3,11 3,10 | 7,10 9,10 9,11 7,11 7,10";
inline constexpr std::string_view kRing = "5,9 4,10 4,11 5,12 7,12 8,11 8,10 7,9 5,9";
inline constexpr std::string_view kCedilla = "6,0 6,-2 7,-2 8,-3 7,-4 4,-4";
// How far a mark is raised to stand on a capital.
inline constexpr int kOnCapital = 3;

// Accents take the place of the dot.
inline constexpr std::string_view kDotlessI = "4,8 6,8 6,0 | 4,0 8,0";

// Code page 850 has it at 159; it is the one letter of 128-159 that Latin-1 lacks.
inline constexpr Outline kFlorin = {159, "10,11 9,12 8,12 7,11 5,-2 4,-4 3,-4 2,-3 | 3,7 9,7"};

// clang-format off
inline constexpr Outline kLatinOutlines[] = {
    {0xA0, ""},  // no-break space
    {0xA1, "6,4 6,-4 | 5,7 7,7 7,8 5,8 5,7"},  // inverted exclamation mark
    {0xA2, Letter('c'), "6,10 6,-2"},  // cent
    {0xA3, "10,10 9,11 8,12 6,12 5,11 4,9 4,3 3,1 2,0 10,0 | 2,6 8,6"},  // pound
    {0xA4, "5,3 4,4 3,6 4,8 5,9 7,9 8,8 9,6 8,4 7,3 5,3 | 2,2 4,4 | 2,10 4,8"  // currency
           " | 10,10 8,8 | 10,2 8,4"},
    {0xA5, "2,12 6,6 10,12 | 6,6 6,0 | 3,5 9,5 | 3,2 9,2"},  // yen
    {0xA6, "6,13 6,8 | 6,4 6,-1"},  // broken bar
    {0xA7, "9,11 7,12 5,12 3,11 3,9 9,5 9,3 8,2 | 4,8 3,7 3,5 9,1 9,-1 7,-2 5,-2 3,-1"},  // section
    {0xA8, kDiaeresis},
    {0xA9, "4,0 2,2 1,4 1,8 2,10 4,12 8,12 10,10 11,8 11,4 10,2 8,0 4,0"  // copyright
           " | 8,8 7,9 5,9 4,8 4,4 5,3 7,3 8,4"},
    {0xAA, "8,11 7,12 5,12 4,11 4,8 5,7 7,7 8,8 | 8,12 8,7 | 3,5 9,5"},  // feminine ordinal
    {0xAB, "6,8 2,4 6,0 | 10,8 6,4 10,0"},  // left guillemet
    {0xAC, "2,7 10,7 10,4"},  // not
    {0xAD, Letter('-')},  // soft hyphen
    {0xAE, "4,0 2,2 1,4 1,8 2,10 4,12 8,12 10,10 11,8 11,4 10,2 8,0 4,0"  // registered
           " | 4,3 4,9 7,9 8,8 8,7 7,6 4,6 | 6,6 8,3"},
    {0xAF, "3,11 9,11"},  // macron
    {0xB0, "5,8 4,9 4,11 5,12 7,12 8,11 8,9 7,8 5,8"},  // degree
    {0xB1, "2,7 10,7 | 6,11 6,3 | 2,1 10,1"},  // plus-minus
    {0xB2, "4,11 5,12 7,12 8,11 8,10 4,6 8,6"},  // superscript two
    {0xB3, "4,12 8,12 6,10 7,10 8,9 8,7 7,6 5,6 4,7"},  // superscript three
    {0xB4, "5,9 7,12"},  // acute accent
    {0xB5, "2,8 2,-4 | 2,3 3,1 5,0 7,0 9,1 10,2 | 10,8 10,0"},  // micro
    {0xB6, "10,12 5,12 3,11 2,9 3,7 5,6 7,6 | 7,12 7,-2 | 10,12 10,-2"},  // pilcrow
    {0xB7, "5,5 7,5 7,6 5,6 5,5"},  // middle dot
    {0xB8, kCedilla},
    {0xB9, "4,11 6,12 6,6 | 4,6 8,6"},  // superscript one
    {0xBA, "5,7 4,8 4,11 5,12 7,12 8,11 8,8 7,7 5,7 | 3,5 9,5"},  // masculine ordinal
    {0xBB, "6,8 10,4 6,0 | 2,8 6,4 2,0"},  // right guillemet
    {0xBC, "1,11 3,12 3,7 | 2,0 10,12 | 10,0 10,5 7,2 11,2"},  // one quarter
    {0xBD, "1,11 3,12 3,7 | 2,0 10,12 | 7,4 8,5 10,5 11,4 11,3 7,0 11,0"},  // one half
    {0xBE, "1,12 5,12 3,10 4,10 5,9 5,8 4,7 2,7 1,8 | 2,0 10,12"  // three quarters
           " | 10,0 10,5 7,2 11,2"},
    {0xBF, "10,-2 9,-3 7,-4 5,-4 3,-3 2,-2 2,0 3,1 5,2 6,3 6,5"  // inverted question mark
           " | 5,7 7,7 7,8 5,8 5,7"},

    {0xC0, Letter('A'), kGrave, kOnCapital},
    {0xC1, Letter('A'), kAcute, kOnCapital},
    {0xC2, Letter('A'), kCircumflex, kOnCapital},
    {0xC3, Letter('A'), kTilde, kOnCapital},
    {0xC4, Letter('A'), kDiaeresis, kOnCapital},
    {0xC5, Letter('A'), kRing, kOnCapital},
    {0xC6, "0,0 6,12 11,12 | 6,12 6,0 11,0 | 3,6 10,6"},  // AE
    {0xC7, Letter('C'), kCedilla},
    {0xC8, Letter('E'), kGrave, kOnCapital},
    {0xC9, Letter('E'), kAcute, kOnCapital},
    {0xCA, Letter('E'), kCircumflex, kOnCapital},
    {0xCB, Letter('E'), kDiaeresis, kOnCapital},
    {0xCC, Letter('I'), kGrave, kOnCapital},
    {0xCD, Letter('I'), kAcute, kOnCapital},
    {0xCE, Letter('I'), kCircumflex, kOnCapital},
    {0xCF, Letter('I'), kDiaeresis, kOnCapital},
    {0xD0, Letter('D'), "0,6 5,6"},  // Eth
    {0xD1, Letter('N'), kTilde, kOnCapital},
    {0xD2, Letter('O'), kGrave, kOnCapital},
    {0xD3, Letter('O'), kAcute, kOnCapital},
    {0xD4, Letter('O'), kCircumflex, kOnCapital},
    {0xD5, Letter('O'), kTilde, kOnCapital},
    {0xD6, Letter('O'), kDiaeresis, kOnCapital},
    {0xD7, "3,3 9,9 | 3,9 9,3"},  // multiplication
    {0xD8, Letter('O'), "0,-1 12,13"},  // O with stroke
    {0xD9, Letter('U'), kGrave, kOnCapital},
    {0xDA, Letter('U'), kAcute, kOnCapital},
    {0xDB, Letter('U'), kCircumflex, kOnCapital},
    {0xDC, Letter('U'), kDiaeresis, kOnCapital},
    {0xDD, Letter('Y'), kAcute, kOnCapital},
    {0xDE, "2,0 2,12 | 2,9 7,9 9,8 10,7 10,5 9,4 7,3 2,3"},  // Thorn
    {0xDF, "2,0 2,9 3,11 5,12 7,12 9,11 9,8 8,7 6,6 8,6 10,4 10,2 9,1 7,0 5,0"},  // sharp s

    {0xE0, Letter('a'), kGrave},
    {0xE1, Letter('a'), kAcute},
    {0xE2, Letter('a'), kCircumflex},
    {0xE3, Letter('a'), kTilde},
    {0xE4, Letter('a'), kDiaeresis},
    {0xE5, Letter('a'), kRing},
    {0xE6, "1,7 2,8 5,8 6,7 6,1 5,0 2,0 1,1 1,3 2,4 11,4 11,7 10,8 7,8 6,7"  // ae
           " | 6,1 7,0 10,0 11,1"},
    {0xE7, Letter('c'), kCedilla},
    {0xE8, Letter('e'), kGrave},
    {0xE9, Letter('e'), kAcute},
    {0xEA, Letter('e'), kCircumflex},
    {0xEB, Letter('e'), kDiaeresis},
    {0xEC, kDotlessI, kGrave},
    {0xED, kDotlessI, kAcute},
    {0xEE, kDotlessI, kCircumflex},
    {0xEF, kDotlessI, kDiaeresis},
    {0xF0, "10,4 9,6 7,7 5,7 3,6 2,4 2,3 3,1 5,0 7,0 9,1 10,3 10,5 9,8 7,11 5,12"  // eth
           " | 5,9 9,12"},
    {0xF1, Letter('n'), kTilde},
    {0xF2, Letter('o'), kGrave},
    {0xF3, Letter('o'), kAcute},
    {0xF4, Letter('o'), kCircumflex},
    {0xF5, Letter('o'), kTilde},
    {0xF6, Letter('o'), kDiaeresis},
    {0xF7, "2,6 10,6 | 5,9 7,9 7,10 5,10 5,9 | 5,2 7,2 7,3 5,3 5,2"},  // division
    {0xF8, Letter('o'), "1,-1 11,9"},  // o with stroke
    {0xF9, Letter('u'), kGrave},
    {0xFA, Letter('u'), kAcute},
    {0xFB, Letter('u'), kCircumflex},
    {0xFC, Letter('u'), kDiaeresis},
    {0xFD, Letter('y'), kAcute},
    {0xFE, "2,12 2,-4 | 2,2 3,1 5,0 7,0 9,1 10,3 10,5 9,7 7,8 5,8 3,7 2,6"},  // thorn
    {0xFF, Letter('y'), kDiaeresis},
};
// clang-format on

}  // namespace qm
