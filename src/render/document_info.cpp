// See document_info.h.
#include "render/document_info.h"

#include <cstdio>
#include <cstdlib>

#include "common/numbers.h"
#include "platform/text.h"

namespace qm {

namespace {

constexpr long long kSecondsPerDay = 86400;
constexpr long long kEndOfYear9999 = 253402300800;

bool IsLeap(int year) { return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0; }

// By hand: the library's calendar keeps its answer in a global.
CalendarTime CalendarOf(long long seconds) {
    static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    CalendarTime time;
    int days = static_cast<int>(seconds / kSecondsPerDay);
    const int rest = static_cast<int>(seconds % kSecondsPerDay);
    for (; days >= (IsLeap(time.year) ? 366 : 365); ++time.year) {
        days -= IsLeap(time.year) ? 366 : 365;
    }
    for (;; ++time.month) {
        const int length = kDays[time.month - 1] + (time.month == 2 && IsLeap(time.year) ? 1 : 0);
        if (days < length) break;
        days -= length;
    }
    time.day = days + 1;
    time.hour = rest / 3600;
    time.minute = rest / 60 % 60;
    time.second = rest % 60;
    return time;
}

}  // namespace

std::optional<CalendarTime> SourceDate() {
    const char* const text = std::getenv("SOURCE_DATE_EPOCH");
    if (text == nullptr || *text == '\0') return std::nullopt;
    char* end = nullptr;
    const long long seconds = std::strtoll(text, &end, 10);
    if (*end != '\0' || seconds < 0 || seconds >= kEndOfYear9999) return std::nullopt;
    return CalendarOf(seconds);
}

std::string DateText(const CalendarTime& time) {
    char text[80];
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02dZ", time.year, time.month,
                  time.day, time.hour, time.minute, time.second);
    return text;
}

std::string TitleOf(const std::string& plot, const std::string& page) {
    const std::string title = plot + (plot.empty() || page.empty() ? "" : ", ") + page;
    std::wstring wide = Utf8ToWide(title);
    wchar_t before = L'\0';
    for (wchar_t& c : wide) {
        const bool isByte = c >= 0xDC80 && c <= 0xDCFF && (before < 0xD800 || before > 0xDBFF);
        before = c;
        if (isByte) c = 0xFFFD;
    }
    return WideToUtf8(wide);
}

}  // namespace qm
