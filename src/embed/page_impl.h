// What stands behind a qmfilter::Page. Test: tests/embed/plot_test.cpp.
#pragma once

#include "host/open_plot.h"
#include "qmfilter/plot.h"

namespace qmfilter {

class Page::Impl {
  public:
    explicit Impl(qm::PlotPage opened) : page(std::move(opened)) {}

    qm::PlotPage page;
};

}  // namespace qmfilter
