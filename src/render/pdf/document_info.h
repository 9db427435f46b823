// What a PDF file says of itself: title, creator, date, names of the pages. Test:
// tests/render/pdf/pdf_writer_test.cpp.
#pragma once

#include <string>
#include <vector>

#include "render/page_writers.h"

namespace qm::pdf {

// The information dictionary, with `title` and, where there is one page, its name. The date is that
// of SOURCE_DATE_EPOCH (seconds since 1970) and is left out without it, so that the same pages
// always give the same bytes.
std::string InformationOf(const std::string& title, const std::vector<PageSource>& pages);

// Entry of the catalogue that names each page as the plot does.
std::string PageLabelsOf(const std::vector<PageSource>& pages);

}  // namespace qm::pdf
