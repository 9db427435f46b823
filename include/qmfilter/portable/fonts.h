// Font measurement under GDI's names, without a font library: heights follow from a face's ascent
// and descent.
//
// A positive lfHeight is the height of the character cell, a negative one the height of the em
// square; 0 is the system's default. Pixels of a 96 dpi screen. Widths are estimates from the
// face's average character. Facts: the ascent and descent that Windows uses of the faces' OS/2
// tables. Test: tests/platform/fonts_test.cpp.
#pragma once

#include "qmfilter/portable/types.h"

using HGDIOBJ = HANDLE;
using HFONT = HANDLE;
using HDC = HANDLE;
using HWND = HANDLE;

inline constexpr int LF_FACESIZE = 32;

struct LOGFONTA {
    LONG lfHeight;
    LONG lfWidth;
    LONG lfEscapement;
    LONG lfOrientation;
    LONG lfWeight;
    BYTE lfItalic;
    BYTE lfUnderline;
    BYTE lfStrikeOut;
    BYTE lfCharSet;
    BYTE lfOutPrecision;
    BYTE lfClipPrecision;
    BYTE lfQuality;
    BYTE lfPitchAndFamily;
    CHAR lfFaceName[LF_FACESIZE];
};
static_assert(sizeof(LOGFONTA) == 60);

struct SIZE {
    LONG cx;
    LONG cy;
};

struct TEXTMETRICA {
    LONG tmHeight;
    LONG tmAscent;
    LONG tmDescent;
    LONG tmInternalLeading;
    LONG tmExternalLeading;
    LONG tmAveCharWidth;
    LONG tmMaxCharWidth;
    LONG tmWeight;
    LONG tmOverhang;
    LONG tmDigitizedAspectX;
    LONG tmDigitizedAspectY;
    BYTE tmFirstChar;
    BYTE tmLastChar;
    BYTE tmDefaultChar;
    BYTE tmBreakChar;
    BYTE tmItalic;
    BYTE tmUnderlined;
    BYTE tmStruckOut;
    BYTE tmPitchAndFamily;
    BYTE tmCharSet;
};

// A device context that holds the default font. Null when memory runs out; end it with ReleaseDC.
HDC GetDC(HWND window) noexcept;
int ReleaseDC(HWND window, HDC context) noexcept;
// An unknown face counts as Arial; its name's case does not matter. The caller ends it with
// DeleteObject.
HFONT CreateFontIndirectA(const LOGFONTA* description) noexcept;
// Selects a font and returns the one selected before, null on failure. A selected font must not be
// deleted.
HGDIOBJ SelectObject(HDC context, HGDIOBJ font) noexcept;
BOOL DeleteObject(HGDIOBJ font) noexcept;
// cy is the height of the cell whatever the text.
BOOL GetTextExtentPoint32A(HDC context, LPCSTR text, int length, SIZE* size) noexcept;
BOOL GetTextMetricsA(HDC context, TEXTMETRICA* metrics) noexcept;
