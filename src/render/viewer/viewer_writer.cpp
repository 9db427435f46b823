#include "render/viewer/viewer_writer.h"

#include "common/packed_bitmap.h"
#include "host/page_summary.h"
#include "platform/text.h"
#include "render/base64_sink.h"
#include "render/fill_pattern.h"
#include "render/page_frame.h"
#include "render/png_writer.h"
#include "render/text_buffer.h"
#include "render/viewer/deflate_sink.h"
#include "render/viewer/page_encoder.h"
#include "render/viewer/viewer_program.h"

namespace qm {

namespace {

// Raised when the data changes its form; the program in the same file reads no other.
constexpr std::uint64_t kDataVersion = 1;

// ---------------------------------------------------------------------------------------- header

void AddFrame(Column& header, const PageFrame& frame, const Extent& extent) {
    const Matrix& m = frame.toSheet;
    for (const double number : {frame.unitsPerInch, frame.width, frame.height, m.a, m.b, m.c, m.d,
                                m.e, m.f, extent.minX, extent.minY, extent.maxX, extent.maxY}) {
        header.Double(number);
    }
}

void AddLayers(Column& header, const PageSource& page) {
    if (page.layers == nullptr) return header.Unsigned(0);
    header.Unsigned(page.layers->size());
    for (const PageLayer& layer : *page.layers) {
        header.Signed(layer.number);
        header.Text(WideToUtf8(layer.name));
        for (const int shift : {0, 8, 16}) {
            header.Byte(static_cast<std::uint8_t>(layer.colour >> shift & 0xFF));
        }
        header.Byte(layer.visible ? 1 : 0);
    }
}

Column HeaderOf(const ViewerDocument& document, const PageOptions& options) {
    Column header;
    header.Unsigned(kDataVersion);
    header.Text(document.fileName);
    header.Text(document.format);
    header.Unsigned(document.fileBytes);
    header.Unsigned(document.pages.size());
    for (const PageSource& page : document.pages) {
        const PageSummary summary = Summarise(*page.drawing);
        header.Text(page.name);
        AddFrame(header, FrameOf(page, summary.extent, options), summary.extent);
        for (const std::uint64_t count : {summary.lines, summary.polylines, summary.polygons,
                                          summary.rectangles, summary.circles, summary.arcs,
                                          summary.texts, summary.pictures, summary.fillPatterns}) {
            header.Unsigned(count);
        }
        AddLayers(header, page);
    }
    return header;
}

// ------------------------------------------------------------------------------------------- data

// An element of a type that browsers do not execute, its content coded in Base64.
class DataElement final : public OutputSink {
  public:
    DataElement(TextBuffer& out, std::string_view id) : out_(out), base64_(out) {
        out_ << "<script type=\"application/octet-stream\" id=\"" << id << "\">";
    }
    void Write(std::string_view bytes) override { base64_.Write(bytes); }
    void Finish() {
        base64_.Finish();
        out_ << "</script>\n";
    }

  private:
    TextBuffer& out_;
    Base64Sink base64_;
};

// Each picture of a page as an element of its own, in the order of their records.
class PictureWriter final : public DisplayListVisitor {
  public:
    PictureWriter(const PageSource& page, std::string prefix, TextBuffer& out)
        : page_(page), prefix_(std::move(prefix)), out_(out) {}

    void Picture(const DrawingStyle&, const BoxI&, std::int32_t rasterOperation,
                 ByteRun bitmap) override {
        if (!IsShownPicture(rasterOperation, bitmap)) return;
        DataElement element(out_, prefix_ + std::to_string(count_++));
        WritePicture(*PackedBitmapView::Parse(bitmap.data, bitmap.size),
                     page_.whiteIsClear && PictureIsClear(rasterOperation), element);
        element.Finish();
    }

  private:
    const PageSource& page_;
    std::string prefix_;
    TextBuffer& out_;
    std::size_t count_ = 0;
};

void WriteData(const ViewerDocument& document, const PageOptions& options, TextBuffer& out) {
    DataElement header(out, "document");
    header.Write(HeaderOf(document, options).View());
    header.Finish();
    for (std::size_t i = 0; i < document.pages.size(); ++i) {
        const PageSource& page = document.pages[i];
        const std::string id = "page" + std::to_string(i);
        DataElement element(out, id);
        DeflateSink deflate(element);
        PageEncoder encoder(deflate);
        encoder.progress = options.progress;
        Play(*page.drawing, encoder);
        encoder.Finish();
        deflate.Finish();
        element.Finish();
        PictureWriter pictures(page, id + "-picture", out);
        Play(*page.drawing, pictures);
    }
}

// --------------------------------------------------------------------------------------- the page

void WriteHash(const Sha256& hash, TextBuffer& out) {
    out << "'sha256-";
    Base64Sink base64(out);
    base64.Write({reinterpret_cast<const char*>(hash.data()), hash.size()});
    base64.Finish();
    out << '\'';
}

void WritePolicy(const ViewerProgram& program, TextBuffer& out) {
    out << "default-src 'none'; script-src ";
    WriteHash(program.scriptSha256, out);
    out << "; style-src ";
    WriteHash(program.styleSha256, out);
    // blob: is what the page makes itself: its worker, and pictures decoded from the data.
    out << "; img-src data: blob:; worker-src blob:; base-uri 'none'; form-action 'none'";
}

}  // namespace

void WriteViewer(const ViewerDocument& document, const PageOptions& options, OutputSink& sink) {
    const ViewerProgram program = EmbeddedViewer();
    TextBuffer out(sink);
    std::string_view rest = program.page;
    for (std::size_t open = rest.find("{{"); open != rest.npos; open = rest.find("{{")) {
        out << rest.substr(0, open);
        const std::size_t close = rest.find("}}", open);
        const std::string_view name = rest.substr(open + 2, close - open - 2);
        if (name == "title") out.Escaped(document.fileName);
        if (name == "policy") WritePolicy(program, out);
        if (name == "style") out << program.style;
        if (name == "data") WriteData(document, options, out);
        if (name == "script") out << program.script;
        rest.remove_prefix(close + 2);
    }
    out << rest;
    out.Flush();
}

}  // namespace qm
