// What SVG, PDF and PNG files say of themselves: title, creator, date. Test:
// tests/render/svg_writer_test.cpp, tests/render/pdf/pdf_writer_test.cpp.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qm {

inline constexpr std::string_view kCreator = "qmplot";

// In UTC.
struct CalendarTime {
    int year = 1970;
    int month = 1;
    int day = 1;
    int hour = 0;
    int minute = 0;
    int second = 0;
};

// What SOURCE_DATE_EPOCH says (seconds since 1970); nothing without it, so that the same pages
// always give the same bytes, and for what is no time up to the year 9999.
std::optional<CalendarTime> SourceDate();
// "2024-02-29T12:00:00Z" (RFC 3339).
std::string DateText(const CalendarTime& time);

// "plan.plt, Page 1", or the one of both that is not empty; bytes that are no UTF-8 become U+FFFD.
std::string TitleOf(const std::string& plot, const std::string& page);

}  // namespace qm
