// WritePdf (page_writers.h): pages as sheets of their own size, page by page from the display list
// to the sink. Test: tests/render/pdf/pdf_writer_test.cpp.
#include <cmath>

#include "common/colour.h"
#include "common/numbers.h"
#include "common/tool_error.h"
#include "render/page_frame.h"
#include "render/page_writers.h"
#include "render/pdf/document_info.h"
#include "render/pdf/page_painter.h"
#include "render/pdf/pdf_syntax.h"

namespace qm {

namespace {

using pdf::Document;
using pdf::ObjectNumber;
using pdf::Real;
using pdf::Reference;

constexpr double kPoints = 72.0;
// A page has at most 200 inches of its own unit, and that is at most so many points.
constexpr double kMaxSide = 14400.0;
constexpr double kMaxUserUnit = 75000.0;
// From here on coordinates are written from the drawing's corner: viewers count in single
// precision.
constexpr double kFar = 1 << 20;

struct Sheet {
    double userUnit = 1.0;  // points
    double width = 0.0;     // in that unit
    double height = 0.0;
    pdf::PagePlace place;
};

Sheet SheetOf(const PageSource& page, const PageOptions& options) {
    const Extent extent = GistOf(*page.drawing).extent;
    Sheet sheet;
    const PageFrame frame = FrameOf(page, extent, options);
    const double pointsPerUnit = kPoints / frame.unitsPerInch;
    const double side = std::max(frame.width, frame.height) * pointsPerUnit;
    if (!(side <= kMaxSide * kMaxUserUnit)) {
        throw PageError((page.name.empty() ? "the page" : page.name) +
                        " is too large for a PDF; write SVG instead");
    }
    sheet.userUnit = std::max(1.0, std::ceil(side / kMaxSide));
    const double scale = pointsPerUnit / sheet.userUnit;
    sheet.width = frame.width * scale;
    sheet.height = frame.height * scale;
    sheet.place.frame = frame;
    const Matrix& m = frame.toSheet;
    // A page's y runs up, a sheet's down.
    sheet.place.toPage = {m.a * scale,  -m.b * scale, m.c * scale,
                          -m.d * scale, m.e * scale,  sheet.height - m.f * scale};
    sheet.place.hairline = options.hairlineMillimetres / kMillimetresPerInch * frame.unitsPerInch;
    if (std::abs(extent.minX) > kFar || std::abs(extent.minY) > kFar) {
        sheet.place.origin = {RoundToInt32(extent.minX), RoundToInt32(extent.minY)};
    }
    return sheet;
}

// What stands in front of a page's content.
std::string PrologueOf(const Sheet& sheet, bool blends, const Background& background) {
    std::string text;
    const bool coloured = background.kind == Background::Kind::kColour;
    // Colours are mixed with those of the paper, which has none of its own.
    if (blends || coloured) {
        std::string colour = "1 g";
        if (coloured) {
            const Colour parts = Colour::FromBgr(background.colour);
            colour.clear();
            for (const int part : {parts.red, parts.green, parts.blue}) {
                colour += Real(part / 255.0, 3) + ' ';
            }
            colour += "rg";
        }
        text += colour + " 0 0 " + Real(sheet.width) + ' ' + Real(sheet.height) + " re f 0 g\n";
    }
    Matrix matrix = sheet.place.toPage;
    const PointI origin = sheet.place.origin;
    matrix.e += matrix.a * origin.x + matrix.c * origin.y;
    matrix.f += matrix.b * origin.x + matrix.d * origin.y;
    return text + pdf::MatrixText(matrix) + " cm 3 Tr\n";
}

ObjectNumber WritePage(Document& document, const PageSource& page, const PageOptions& options,
                       std::uint32_t number, ObjectNumber parent) {
    const Sheet sheet = SheetOf(page, options);
    pdf::PagePainter painter(document, page, options, sheet.place, number);
    Play(*page.drawing, painter);
    const std::vector<ObjectNumber>& content = painter.Finish();
    const bool blends = painter.Blends();
    std::string object = "<</Type/Page/Parent " + Reference(parent) + "/MediaBox[0 0 " +
                         Real(sheet.width) + ' ' + Real(sheet.height) + ']';
    if (sheet.userUnit > 1.0) object += "/UserUnit " + Real(sheet.userUnit);
    if (blends) object += "/Group<</S/Transparency/CS/DeviceRGB>>";
    object += "/Contents[" + Reference(document.file.WriteStream(
                                 "", PrologueOf(sheet, blends, options.background)));
    for (const ObjectNumber piece : content) object += ' ' + Reference(piece);
    object += "]/Resources" + painter.Resources() + ">>";
    return document.file.WriteObject(object);
}

}  // namespace

void WritePdf(const std::vector<PageSource>& pages, const PageOptions& options, OutputSink& sink) {
    Document document(sink);
    pdf::PdfFile& file = document.file;
    const ObjectNumber tree = file.NewObject();
    std::string kids;
    std::uint32_t number = 0;
    for (const PageSource& page : pages) {
        kids += Reference(WritePage(document, page, options, ++number, tree)) + ' ';
    }
    document.fonts.Write(file);
    file.WriteObject(
        tree, "<</Type/Pages/Count " + std::to_string(pages.size()) + "/Kids[" + kids + "]>>");
    const ObjectNumber catalogue = file.WriteObject(
        "<</Type/Catalog/Pages " + Reference(tree) + pdf::PageLabelsOf(pages) +
        document.layers.Properties() + "/ViewerPreferences<</DisplayDocTitle true>>>>");
    const ObjectNumber info = file.WriteObject(pdf::InformationOf(options.title, pages));
    file.Finish(catalogue, info);
}

}  // namespace qm
