#include "render/pdf/document_info.h"

#include <cstdio>
#include <cstdlib>
#include <optional>

#include "render/pdf/pdf_syntax.h"

namespace qm::pdf {

namespace {

constexpr long long kSecondsPerDay = 86400;
constexpr long long kEndOfYear9999 = 253402300800;

std::optional<long long> SourceDate() {
    const char* const text = std::getenv("SOURCE_DATE_EPOCH");
    if (text == nullptr || *text == '\0') return std::nullopt;
    char* end = nullptr;
    const long long seconds = std::strtoll(text, &end, 10);
    if (*end != '\0' || seconds < 0 || seconds >= kEndOfYear9999) return std::nullopt;
    return seconds;
}

bool IsLeap(long long year) { return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0; }

// "D:20240229120000Z". By hand: the library's calendar keeps its answer in a global.
std::string DateText(long long seconds) {
    static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    long long days = seconds / kSecondsPerDay;
    const long long time = seconds % kSecondsPerDay;
    long long year = 1970;
    for (; days >= (IsLeap(year) ? 366 : 365); ++year) days -= IsLeap(year) ? 366 : 365;
    int month = 0;
    for (;; ++month) {
        const int length = kDays[month] + (month == 1 && IsLeap(year) ? 1 : 0);
        if (days < length) break;
        days -= length;
    }
    char text[64];
    std::snprintf(text, sizeof text, "D:%04lld%02d%02lld%02lld%02lld%02lldZ", year, month + 1,
                  days + 1, time / 3600, time / 60 % 60, time % 60);
    return text;
}

}  // namespace

std::string InformationOf(const std::string& title, const std::vector<PageSource>& pages) {
    std::string info = "<<";
    const std::string page = pages.size() == 1 ? pages.front().name : "";
    const std::string words = title + (title.empty() || page.empty() ? "" : ", ") + page;
    if (!words.empty()) info += "/Title" + TextString(words);
    info += "/Creator(qmplot)/Producer(QmFilter HPGL)";
    if (const auto date = SourceDate()) info += "/CreationDate(" + DateText(*date) + ')';
    return info + ">>";
}

std::string PageLabelsOf(const std::vector<PageSource>& pages) {
    std::string labels = "/PageLabels<</Nums[";
    for (std::size_t i = 0; i < pages.size(); ++i) {
        labels += std::to_string(i) + "<</P" + TextString(pages[i].name) + ">>";
    }
    return labels + "]>>";
}

}  // namespace qm::pdf
