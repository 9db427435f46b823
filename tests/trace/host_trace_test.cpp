// The host-call trace: how it ends; whole imports stand in tests/cli/golden.
#include "trace/host_trace.h"

#include <gtest/gtest.h>
#include <olectl.h>

#include <algorithm>

#include "host/document_node.h"
#include "host/drawing_block.h"
#include "platform/text.h"

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
        {"nothing drawn", "IN;SP1;PU;PU;PU;PU;PU;", {},
         "block1 EndOfData\nblock1 IsEmpty true\ncontents PutAttribute \"TotalNodes\" 0 2\n"
         "result S_OK\n"},
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

TEST(HostTrace, ProgressLinesStandAmongTheCalls) {
    TraceOptions options;
    options.progress = true;
    const std::string plot = "IN;SP1;PU;PU;PU;PU;PD1,1;" + std::string(300, ';') + "PD2,2;";
    const std::string trace = Trace(plot, options);
    EXPECT_LT(trace.find("AppendLine 0 0 1 1\n"), trace.find("progress 50\n"));
    EXPECT_LT(trace.find("progress 50\n"), trace.find("AppendLine 1 1 2 2\n"));
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
    EXPECT_EQ(value.AsInteger(), 7);
    EXPECT_EQ(document->GetAttribute(refused.Get(), 0, value.Put()), E_INVALIDARG);
    const auto node = OwnObject<DocumentNode>(document.Get());
    ASSERT_TRUE(node);
    EXPECT_EQ(node->Attributes().Entries().size(), 1U);
    EXPECT_EQ(lines.size(), 4U);
}

TEST(TraceHost, KeepsNoDrawing) {
    const TraceHost host([](std::string_view) { return S_OK; });
    ComPtr<IUnknown> contents;
    ComPtr<IUnknown> page;
    ComPtr<IUnknown> child;
    const Variant name = Variant::Text(L"a");
    ASSERT_EQ(host.MakeDocument()->CreateChild(QM_CONTENTS, name.Get(), name.Get(), contents.Put()),
              S_OK);
    ASSERT_EQ(
        contents.As<IQmDocument>()->CreateChild(QM_CONTAINER, name.Get(), name.Get(), page.Put()),
        S_OK);
    ASSERT_EQ(
        page.As<IQmDocument>()->CreateChild(QM_VECTOR_BLOCK, name.Get(), name.Get(), child.Put()),
        S_OK);
    const auto block = child.As<IQmBuildVectorData>();
    for (LONG i = 0; i < 100000; ++i) block->AppendLine(i, 0, i, 9);
    EXPECT_LT(OwnObject<DrawingBlock>(child.Get())->Drawing().UsedBytes(), 20000U);
    VARIANT_BOOL empty = VARIANT_TRUE;
    EXPECT_EQ(block->IsEmpty(&empty), S_OK);
    EXPECT_EQ(empty, VARIANT_FALSE);
}

TEST(TraceHost, StatusNames) {
    EXPECT_EQ(StatusName(S_OK), "S_OK");
    EXPECT_EQ(StatusName(E_OUTOFMEMORY), "E_OUTOFMEMORY");
    EXPECT_EQ(StatusName(CONNECT_E_CANNOTCONNECT), "0x80040202");
}

}  // namespace
}  // namespace qm
