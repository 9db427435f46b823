#include "render/pdf/document_info.h"

#include <cstdio>

#include "render/document_info.h"
#include "render/pdf/pdf_syntax.h"

namespace qm::pdf {

namespace {

// "D:20240229120000Z".
std::string PdfDateText(const CalendarTime& time) {
    char text[80];
    std::snprintf(text, sizeof text, "D:%04d%02d%02d%02d%02d%02dZ", time.year, time.month, time.day,
                  time.hour, time.minute, time.second);
    return text;
}

}  // namespace

std::string InformationOf(const std::string& title, const std::vector<PageSource>& pages) {
    std::string info = "<<";
    const std::string page = pages.size() == 1 ? pages.front().name : "";
    const std::string words = TitleOf(title, page);
    if (!words.empty()) info += "/Title" + TextString(words);
    info += "/Creator(" + std::string(kCreator) + ")/Producer(QmFilter HPGL)";
    if (const auto date = SourceDate()) info += "/CreationDate(" + PdfDateText(*date) + ')';
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
