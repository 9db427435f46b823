// Both ways of compressing: what comes out is a zlib stream of what went in.
#include "render/deflater.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/render/memory_sink.h"
#include "tests/render/png_reader.h"

namespace {

using namespace qm;

std::string Noise(std::size_t size) {
    std::string text;
    std::uint32_t state = 1;
    while (text.size() < size) {
        state = state * 1664525U + 1013904223U;
        text += static_cast<char>(state >> 24);
    }
    return text;
}

struct DeflateCase {
    const char* name;
    std::string bytes;
    std::size_t piece;  // written at once
    bool dense;
};

const DeflateCase kDeflateCases[] = {
    {"nothing", "", 1, false},
    {"a byte", "q", 1, false},
    {"runs", std::string(300000, 'a'), 10000, false},
    {"noise of several pieces", Noise(400000), 9999, false},
    {"noise said to be dense", Noise(400000), 9999, true},
};

void Check(Deflater& deflater) {
    for (const DeflateCase& deflate : kDeflateCases) {
        MemorySink sink;
        deflater.Begin();
        for (std::size_t at = 0; at < deflate.bytes.size(); at += deflate.piece) {
            deflater.Write(std::string_view(deflate.bytes).substr(at, deflate.piece), sink);
            if (at == 0 && deflate.dense) deflater.SetDense(true, sink);
        }
        deflater.End(sink);
        EXPECT_EQ(Inflated(sink.text, deflate.bytes.size()), deflate.bytes) << deflate.name;
    }
}

TEST(Deflater, ZlibKeepsWhatIsWritten) {
    Check(*MakeZlibDeflater(1));
    Check(*MakeZlibDeflater(6));
}

TEST(Deflater, TheFastOneKeepsWhatIsWritten) { Check(*MakeFastDeflater(1)); }

TEST(Deflater, RunsBecomeSmall) {
    for (const auto& deflater : {MakeZlibDeflater(1), MakeFastDeflater(1)}) {
        MemorySink sink;
        deflater->Begin();
        deflater->Write(std::string(300000, 'a'), sink);
        deflater->End(sink);
        EXPECT_LT(sink.text.size(), 6000U);
    }
}

}  // namespace
