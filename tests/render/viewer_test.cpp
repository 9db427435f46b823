// The viewer page: its data by columns, compression, and the file around them.
#include "render/viewer/viewer_writer.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <functional>

#include "common/numbers.h"
#include "render/viewer/deflate_sink.h"
#include "render/viewer/page_encoder.h"
#include "tests/common/hex_text.h"
#include "tests/render/memory_sink.h"

namespace {

using namespace qm;

// "RECORDS X Y BYTES" of the only block, each column in hexadecimal.
std::string Columns(const DisplayList& list) {
    MemorySink sink;
    PageEncoder encoder(sink);
    Play(list, encoder);
    encoder.Finish();
    std::string text;
    std::size_t at = 4;
    for (std::size_t column = 0; column < 4; ++column) {
        const auto length = static_cast<std::size_t>(sink.text[column]);
        text += (column > 0 ? " " : "") +
                ToHex(reinterpret_cast<const std::uint8_t*>(&sink.text[at]), length);
        at += length;
    }
    EXPECT_EQ(at, sink.text.size());
    return text;
}

struct EncodedRow {
    const char* name;
    std::function<void(DisplayList&)> draw;
    // Behind the first style: record 0, number 0, and the 13 bytes of a thin black line on layer 0.
    const char* columns;
};

const PointI kSquare[] = {{0, 0}, {10, 0}, {10, 10}, {0, 10}};

// clang-format off
const EncodedRow kEncoded[] = {
    {"a line", [](auto& list) { list.AppendLine({1, 2}, {4, -2}); }, "0D 0206 0407 "},
    {"lines that continue",
     [](auto& list) { list.AppendLine({0, 0}, {5, 0}); list.AppendLine({5, 0}, {5, 64}); },
     "0E 000A00 00008001 "},
    {"an area", [](auto& list) { list.AppendPolygon({kSquare, 4}, true); },
     "020104 00140013 00001400 "},
    {"a circle and a disc",
     [](auto& list) { list.AppendCircle({1, 1}, -7, false); list.AppendCircle({1, 1}, 200, true); },
     "030704C801 0200 0200 "},
    {"a text", [](auto& list) { list.AppendText({{0, 0}, {5, 9}}, "</b>"); },
     "0604 000A 0012 3C2F623E"},
    {"an outline comes back to its start",
     [](auto& list) { list.AppendRectangle({{0, 0}, {1, 2}}, false); },
     "10 0002000100 0000040003 "},
    {"a new attribute that changes nothing",
     [](auto& list) { list.AppendLine({0, 0}, {1, 1}); list.AppendValue(RecordKind::kPen, 3);
         list.AppendLine({0, 0}, {1, 1}); }, "0D0D 00020102 00020102 "},
    {"a pattern that changes under its number",
     [](auto& list) { list.AppendLine({0, 0}, {1, 1}); list.AppendFillStyle(3, 7);
         for (const char* row : {"\x80", "\x40"}) {
             const std::uint8_t bits[] = {static_cast<std::uint8_t>(*row), 0};
             list.DefineFillPattern({7, 1, 1, {bits, 2}}); list.AppendRectangle({{0, 0}, {1, 1}}, true); } },
     "0D080101000100000000000000000000000100020104"
     "080101000200000000000000000000000200020104 "
     "00020102000100020001 00020100020001000200 80004000"},
    {"the box of a clip region, and its end",
     [](auto& list) { list.AppendLine({0, 0}, {1, 1}); list.AppendClipRegion({kSquare, 4});
         list.AppendLine({2, 2}, {3, 3}); list.EndClipRegion(); list.AppendLine({0, 0}, {1, 1}); },
     "0D090D0A0D 000201140F020502 000201140F020502 "},
    {"a pen that draws nothing",
     [](auto& list) { list.AppendLine({0, 0}, {1, 1}); list.AppendValue(RecordKind::kDrawMode, 11);
         list.AppendLine({5, 5}, {6, 6}); }, "0D000100000000000000000000040000 0002 0002 "},
};
// clang-format on

TEST(PageEncoder, WritesRecordsAndPointsInColumns) {
    for (const EncodedRow& row : kEncoded) {
        DisplayList list;
        row.draw(list);
        EXPECT_EQ(Columns(list), "0000" + std::string(26, '0') + row.columns) << row.name;
    }
}

std::string Inflated(std::string_view packed, std::size_t size) {
    std::string text(size + 1, '\0');
    z_stream z{};
    inflateInit2(&z, -15);
    z.next_in = const_cast<Bytef*>(reinterpret_cast<const Bytef*>(packed.data()));
    z.avail_in = static_cast<uInt>(packed.size());
    z.next_out = reinterpret_cast<Bytef*>(text.data());
    z.avail_out = static_cast<uInt>(text.size());
    EXPECT_EQ(inflate(&z, Z_FINISH), Z_STREAM_END);
    text.resize(z.total_out);
    inflateEnd(&z);
    return text;
}

// Past the trial of a quarter of a megabyte, with and without regularity.
TEST(DeflateSink, PacksWhatGetsSmallerAndStoresTheRest) {
    std::string regular;
    std::string random;
    std::uint32_t seed = 1;
    while (regular.size() < 1000000) {
        seed = seed * 1664525U + 1013904223U;
        random += static_cast<char>(seed >> 24);
        regular += static_cast<char>(seed >> 30);
    }
    for (const std::string& text : {regular, random}) {
        MemorySink sink;
        DeflateSink deflate(sink);
        for (std::size_t at = 0; at < text.size(); at += 70000) {
            deflate.Write(std::string_view(text).substr(at, 70000));
        }
        deflate.Finish();
        EXPECT_EQ(Inflated(sink.text, text.size()), text);
        EXPECT_LT(sink.text.size(), text == regular ? text.size() / 2 : text.size() + 1000);
    }
}

TEST(WriteViewer, KeepsTheTextsOfThePlotOutOfTheMarkup) {
    DisplayList list;
    list.AppendLine({0, 0}, {400, 400});
    list.AppendText({{0, 0}, {90, 90}}, "</script><img src=x onerror=alert(1)>");
    ViewerDocument document;
    document.fileName = "<b>&\".plt";
    document.pages.push_back({});
    document.pages[0].drawing = &list;
    document.pages[0].name = "<i>";
    MemorySink sink;
    WriteViewer(document, {}, sink);
    EXPECT_NE(sink.text.find("<title>&lt;b&gt;&amp;&quot;.plt</title>"), std::string::npos);
    for (const char* never : {"<b>", "<i>", "<img", "onerror", "{{data}}"}) {
        EXPECT_EQ(sink.text.find(never), std::string::npos) << never;
    }
    // The policy, the document and the one page.
    EXPECT_NE(sink.text.find("content=\"default-src 'none'; script-src 'sha256-"),
              std::string::npos);
    EXPECT_NE(sink.text.find("id=\"document\""), std::string::npos);
    EXPECT_NE(sink.text.find("id=\"page0\""), std::string::npos);
    EXPECT_EQ(sink.text.find("id=\"page1\""), std::string::npos);
}

}  // namespace
