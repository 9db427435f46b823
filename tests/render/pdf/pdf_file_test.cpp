// Objects, streams and syntax of PDF files.
#include "render/pdf/pdf_file.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "render/pdf/pdf_syntax.h"
#include "tests/render/pdf/pdf_reader.h"

namespace {

using namespace qm;
using namespace qm::pdf;

TEST(PdfFile, FindsEveryObjectAgain) {
    MemorySink sink;
    PdfFile file(sink);
    const ObjectNumber late = file.NewObject();
    const ObjectNumber few = file.WriteStream("/Kind 1", "few");
    // More noise than is held back: its length comes behind it.
    const ObjectNumber many = file.NewObject();
    std::string noise;
    std::uint32_t seed = 1;
    while (noise.size() < 1000000) {
        seed = seed * 1664525U + 1013904223U;
        noise += static_cast<char>(seed >> 24);
    }
    file.BeginStream(many, "/Kind 2");
    for (std::size_t at = 0; at < noise.size(); at += 100000) file.Append(noise.substr(at, 100000));
    file.EndStream();
    // More objects than one object stream holds.
    std::vector<ObjectNumber> small;
    for (int i = 0; i < 450; ++i) small.push_back(file.WriteObject(std::to_string(i)));
    file.WriteObject(late, "<</Late 1>>");
    file.Finish(late, small[0]);

    const PdfReader reader(sink.text);
    EXPECT_EQ(reader.objects.at(few).stream, "few");
    EXPECT_TRUE(reader.objects.at(many).stream == noise);
    EXPECT_EQ(reader.objects.at(late).value, "<</Late 1>>");
    for (std::size_t i = 0; i < small.size(); ++i) {
        EXPECT_EQ(reader.objects.at(small[i]).value, std::to_string(i));
    }
    EXPECT_NE(reader.trailer.find("/Root 1 0 R/Info " + Reference(small[0])), std::string::npos);
}

TEST(PdfSyntax, NumbersAreShortAndDefined) {
    EXPECT_EQ(Real(0.5), "0.5");
    EXPECT_EQ(Real(-0.00001), "0");
    EXPECT_EQ(Real(12000.0, 0), "12000");
    EXPECT_EQ(Real(std::nan("")), "0");
    EXPECT_EQ(Real(-std::numeric_limits<double>::infinity()), "-1000000000000");
}

TEST(PdfSyntax, TextsAreAsciiOrUtf16) {
    EXPECT_EQ(TextString("a(b)\\"), "(a\\(b\\)\\\\)");
    EXPECT_EQ(TextString("\xC3\xA9\xF0\x9F\x98\x80\xFF"), "<FEFF00E9D83DDE00>");
}

}  // namespace
