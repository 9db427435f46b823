// Fill patterns as tiling patterns: one object a pattern and page, whatever it fills and in which
// colour (ISO 32000-1, 8.7.3). Test: tests/render/pdf/pdf_writer_test.cpp.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <tuple>

#include "host/display_list.h"
#include "render/page_frame.h"
#include "render/pdf/page_resources.h"
#include "render/pdf/pdf_file.h"

namespace qm::pdf {

class Tilings {
  public:
    // `toPage`: from the drawing to the page.
    Tilings(PdfFile& file, const Matrix& toPage, PageResources& resources)
        : file_(file), toPage_(toPage), resources_(resources) {}

    // The number N of the name /PN of a drawable pattern.
    std::size_t NumberOf(const FillPattern& pattern);

  private:
    PdfFile& file_;
    Matrix toPage_;
    PageResources& resources_;
    // By width, height and the address of the bits, which tells redefinitions of an index apart.
    std::map<std::tuple<std::int32_t, std::int32_t, const std::uint8_t*>, std::size_t> numbers_;
};

}  // namespace qm::pdf
