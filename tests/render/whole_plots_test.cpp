// What the golden plots become where a compressor packs the result: checksums of what it is given.
// When one changes on purpose: look at the files that qmplot writes, then take the new sum.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <regex>

#include "render/viewer/page_encoder.h"
#include "tests/host/host_test.h"
#include "tests/render/pdf/pdf_reader.h"
#include "tests/render/png_reader.h"

namespace {

using namespace qm;

class WholePlots : public HostTest {
  protected:
    // Plot by plot the sum of what `write` makes of its pages.
    static std::string Sums(std::string (*write)(const std::vector<PageSource>& pages)) {
        std::string sums;
        for (const std::string name : {"chance", "chance-pictures", "sheet", "turned"}) {
            std::ifstream file(QM_GOLDEN "/" + name + ".plt", std::ios::binary);
            const std::string plot{std::istreambuf_iterator<char>(file), {}};
            OpenedPlot opened;
            EXPECT_EQ(Open(plot, opened), S_OK) << name;
            std::vector<PageSource> pages;
            for (const PlotPage& page : opened.pages) pages.push_back(SourceOf(page));
            const std::string text = write(pages);
            std::ostringstream sum;
            sum << name << ' ' << std::hex
                << crc32(0, reinterpret_cast<const Bytef*>(text.data()),
                         static_cast<uInt>(text.size()))
                << '\n';
            sums += sum.str();
        }
        return sums;
    }
};

TEST_F(WholePlots, AsPdf) {
    const auto objects = [](const std::vector<PageSource>& pages) {
        // Without lengths and the date.
        const std::regex length("/Length [0-9]+|^[0-9]+$");
        std::string text;
        for (const auto& [number, object] : Pdf(pages).objects) {
            if (object.value.find("/ObjStm") != std::string::npos ||
                object.value.find("Date") != std::string::npos)
                continue;
            text += std::regex_replace(object.value, length, "") + object.stream;
        }
        return text;
    };
    EXPECT_EQ(Sums(objects),
              "chance 6e3ecaad\nchance-pictures 7399fc9f\nsheet be0b81d9\nturned e62e11f0\n");
}

TEST_F(WholePlots, ForTheViewer) {
    const auto columns = [](const std::vector<PageSource>& pages) {
        MemorySink sink;
        for (const PageSource& page : pages) {
            PageEncoder encoder(sink);
            Play(*page.drawing, encoder);
            encoder.Finish();
        }
        return sink.text;
    };
    EXPECT_EQ(Sums(columns),
              "chance d211a5ba\nchance-pictures 1b2405f9\nsheet 52fd559e\nturned acc4b1bd\n");
}

TEST_F(WholePlots, AsPng) {
    const auto dots = [](const std::vector<PageSource>& pages) {
        std::string text;
        for (PageSource page : pages) {
            // As it is, turned on a sheet that cuts it, then with hard edges.
            for (const double turned : {0.0, 90.0, 180.0}) {
                PageOptions options;
                options.dpi = 40;
                page.rotation += turned;
                if (turned > 0) options.paper = {90.0, 60.0};
                options.smooth = turned < 180;
                MemorySink sink;
                WritePng(page, options, sink);
                const PngDots picture(sink.text);
                text += std::to_string(picture.Type()) + ' ' + std::to_string(picture.Width());
                for (int y = 0; y < picture.Height(); ++y) {
                    for (int x = 0; x < picture.Width(); ++x)
                        text += std::to_string(picture.At(x, y));
                }
            }
        }
        return text;
    };
    EXPECT_EQ(Sums(dots),
              "chance 55004e88\nchance-pictures bf320afe\nsheet 2ee8c33b\nturned a251dc90\n");
}

}  // namespace
