// The host-call trace: how it ends; whole imports stand in tests/cli/golden.
#include "trace/host_trace.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "host/drawing_block.h"

namespace qm {
namespace {

TEST(HostTrace, Endings) {
    TraceOptions stop;
    stop.progress = true;
    stop.abortAt = 40;
    // clang-format off
    const struct {
        const char* name;
        std::string plot;
        TraceOptions options;
        const char* lastLines;
    } rows[] = {
        {"no plot", "plain words", {}, "result E_FAIL\n"},
        {"aborted", "IN;SP1;PU;PU;PU;PU;PU;" + std::string(200, ';'), stop,
         "progress 38\nprogress 39\nprogress 40\nblock1 EndOfData\nblock1 IsEmpty true\n"
         "contents PutAttribute \"TotalNodes\" 0 2\nresult E_ABORT\n"},
    };
    // clang-format on
    for (const auto& row : rows) {
        const std::string trace = Trace(row.plot, row.options);
        const std::string_view expected = row.lastLines;
        const std::size_t start = trace.size() - std::min(trace.size(), expected.size());
        EXPECT_EQ(trace.substr(start), expected) << row.name;
    }
    EXPECT_EQ(LiveObjectCount(), 0);
}

// What the trace passes a call to is an object of the host, which keeps what it is told.
TEST(TraceHost, PassesCallsOn) {
    std::vector<std::string> lines;
    const TraceHost host([&](std::string_view line) {
        lines.emplace_back(line);
        return line == "document PutAttribute \"Refused\" 1 0" ? E_ACCESSDENIED : S_OK;
    });
    const auto document = host.MakeDocument();
    const Bstr kept(L"Kept");
    const Bstr refused(L"Refused");
    Variant value;
    EXPECT_EQ(document->PutAttribute(kept.Get(), Variant::Integer(7).Get(), 0), S_OK);
    EXPECT_EQ(document->PutAttribute(refused.Get(), Variant::Integer(1).Get(), 0), E_ACCESSDENIED);
    EXPECT_EQ(document->GetAttribute(kept.Get(), 0, value.Put()), S_OK);
    EXPECT_EQ(IntegerOf(value.Get()), 7);
    EXPECT_EQ(document->GetAttribute(refused.Get(), 0, value.Put()), E_INVALIDARG);
    EXPECT_EQ(lines.size(), 4U);
}

TEST(TraceHost, KeepsNoDrawing) {
    const TraceHost host([](std::string_view) { return S_OK; });
    ComPtr<IUnknown> child = host.MakeDocument().As<IUnknown>();
    const Variant name = Variant::Text(L"a");
    for (const SHORT kind : {QM_CONTENTS, QM_CONTAINER, QM_VECTOR_BLOCK}) {
        const auto parent = child.As<IQmDocument>();
        ASSERT_EQ(parent->CreateChild(kind, name.Get(), name.Get(), child.Put()), S_OK);
    }
    const auto block = child.As<IQmBuildVectorData>();
    for (LONG i = 0; i < 100000; ++i) block->AppendLine(i, 0, i, 9);
    EXPECT_LT(OwnObject<DrawingBlock>(child.Get())->Drawing().UsedBytes(), 20000U);
    VARIANT_BOOL empty = VARIANT_TRUE;
    EXPECT_EQ(block->IsEmpty(&empty), S_OK);
    EXPECT_EQ(empty, VARIANT_FALSE);
}

}  // namespace
}  // namespace qm
