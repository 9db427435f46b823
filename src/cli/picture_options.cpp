// See picture_options.h.
#include "cli/picture_options.h"

#include <utility>

namespace qm::cli {

OptionGroup PictureGroup(WriteOptions& options) {
    constexpr double kMinDpi = 1.0;
    constexpr double kMaxDpi = 10000.0;
    constexpr int kMaxSide = 32767;
    Option dpi = NumberOption(
        "dpi", "N", "Dots per inch of png (150 if not given) and of HP-RTL (300)",
        [&options](double given) { options.page.dpi = options.plot.rtlDpi = given; }, kMinDpi,
        kMaxDpi);
    Option size = IntegerOption("size", 0, "N", "png: dots of the longer side, in place of --dpi",
                                options.page.sideDots, 1, kMaxSide);
    Option hard =
        Flag("no-antialias", 0, "png, HP-RTL: dots have the colours of the plot, edges are hard",
             options.page.smooth, false);
    Option rtl =
        Flag("rtl", 0, "plt: HP-RTL, each page as a picture, instead of HP-GL/2", options.plot.rtl);
    Option compact =
        Flag("compact", 0, "plt: encoded polylines, joined lines and sorted pens, in few bytes",
             options.plot.compact);
    Option bits =
        ChoiceOption("bits", "1|8|24", "HP-RTL: bits of a dot, 24 if not given",
                     [&options](const std::string& n) { options.plot.bits = std::stoi(n); });
    dpi.formats = "png rtl";
    size.formats = "png";
    size.bars = "dpi";
    hard.formats = "png rtl";
    rtl.formats = "rtl";
    compact.formats = "compact";
    bits.formats = "rtl";
    return {"Pictures and plots",
            {std::move(dpi), std::move(size), std::move(hard), std::move(rtl), std::move(compact),
             std::move(bits)}};
}

}  // namespace qm::cli
