// Layers: an optional-content group for each pen, which viewers list and switch (ISO 32000-1,
// 8.11). Test: tests/render/pdf/pdf_writer_test.cpp.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <tuple>

#include "render/page_writers.h"
#include "render/pdf/pdf_file.h"

namespace qm::pdf {

class Layers {
  public:
    explicit Layers(PdfFile& file) : file_(file) {}

    // The group of a page's layer: pages share it when number, name and visibility are the same. 0
    // when there are too many.
    ObjectNumber GroupOf(const PageSource& page, std::int32_t number);
    // Entry of the catalogue; empty without layers.
    std::string Properties() const;

  private:
    using Key = std::tuple<std::int32_t, std::string, bool>;  // number, name, visible

    PdfFile& file_;
    std::map<Key, ObjectNumber> groups_;
};

}  // namespace qm::pdf
