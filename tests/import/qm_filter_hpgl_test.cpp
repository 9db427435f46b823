// The import filter as a host meets it: opening, nodes, refusals, exhausted memory.
#include "tests/import/allocation_limit.h"
#include "tests/import/import_fixture.h"

namespace qm {
namespace {

const std::string kTwoPages = PlotOf("PD1,1;PG;PD2,2;");

TEST_F(ImportTest, OpeningNeedsASourceWithAPlot) {
    const auto document = host_->MakeDocument();
    const auto noStream = MakeObject<DataObject>(document, L"");
    const auto noStorage = MakeObject<DataObject>(nullptr, L"");
    EXPECT_EQ(filter_->OpenDocument(nullptr, document.Get(), 0), E_FAIL);
    EXPECT_EQ(filter_->OpenDocument(noStream.Get(), nullptr, 0), E_FAIL);
    EXPECT_EQ(filter_->OpenDocument(noStream.Get(), document.Get(), 0), E_FAIL);
    EXPECT_EQ(filter_->OpenDocument(noStorage.Get(), document.Get(), 0), E_FAIL);
    EXPECT_EQ(GetNode(), E_FAIL);
    for (const char* file : {"", "PK\3\4", "PK", "Dear reader, this is no plot.\n"}) {
        EXPECT_EQ(Open(file), E_FAIL) << file;
    }
    EXPECT_TRUE(lines_.empty());
    EXPECT_EQ(GetNode(), E_FAIL);
}

TEST_F(ImportTest, NodeSpecifications) {
    const struct {
        Variant node;
        HRESULT first;   // as the call that loads
        HRESULT second;  // as a later call
        const char* name;
    } rows[] = {
        {Variant(), S_OK, S_OK, "container1"},
        {Variant::Boolean(false), S_OK, S_OK, "container1"},
        {Variant::Text(L"Page 1"), S_OK, S_OK, "container1"},
        // The first call returns the first page whatever name it is asked for.
        {Variant::Text(L"Page 2"), S_OK, S_OK, "container2"},
        {Variant::Text(L"page 1"), S_OK, E_FAIL, ""},
        {Variant::Integer(1), E_FAIL, E_FAIL, ""},
    };
    for (const auto& row : rows) {
        TearDown();
        SetUp();
        ASSERT_EQ(Open(kTwoPages), S_OK);
        EXPECT_EQ(GetNode(row.node), row.first);
        EXPECT_EQ(node_, SUCCEEDED(row.first) ? "container1" : "");
        EXPECT_EQ(filter_->GetNode(Variant().Get(), 0, nullptr), S_OK) << "need not be taken";
        lines_.clear();
        EXPECT_EQ(GetNode(row.node), row.second);
        EXPECT_EQ(node_, row.name);
        // Nothing but the lookup: the file is not read again.
        EXPECT_LE(lines_.size(), 1U);
    }
}

TEST_F(ImportTest, AFileCanBeOpenedAfterAnother) {
    ASSERT_EQ(Open(kTwoPages), S_OK);
    ASSERT_EQ(GetNode(), S_OK);
    ASSERT_EQ(Open(PlotOf("")), S_OK);
    EXPECT_EQ(GetNode(), S_OK);
    EXPECT_TRUE(Wrote("contents PutAttribute \"TotalNodes\" 0 2"));
    EXPECT_EQ(Open("no plot"), E_FAIL);
    EXPECT_EQ(GetNode(), E_FAIL);
}

TEST_F(ImportTest, RefusalsOfTheHost) {
    const struct {
        const char* line;
        HRESULT open;
        HRESULT node;
    } rows[] = {
        {"document CreateChild 1101 \"Contents\" true", E_FAIL, E_FAIL},
        {"container1 created", S_OK, E_FAIL},
        {"container1 CreateChild 1203 0 0", S_OK, E_FAIL},
        {"block1 IsEmpty false", S_OK, E_FAIL},
        // The second page has no block: what it holds is lost, and so is the last question.
        {"container2 created", S_OK, E_FAIL},
        {"container2 CreateChild 1203 10000 0", S_OK, E_FAIL},
        {"block2 IsEmpty false", S_OK, E_FAIL},
        // Not checked.
        {"block1 AppendLine 0 0 1 1", S_OK, S_OK},
        {"layers1 created", S_OK, S_OK},
        {"pentable2 created", S_OK, S_OK},
        {"contents AddChild \"Page 2\" container2 0", S_OK, S_OK},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.line);
        TearDown();
        SetUp();
        refused_ = {{row.line, E_UNEXPECTED}};
        EXPECT_EQ(Open(kTwoPages), row.open);
        EXPECT_EQ(GetNode(), row.node);
        EXPECT_TRUE(Wrote(row.line));
        EXPECT_EQ(node_.empty(), FAILED(row.node));
    }
}

TEST_F(ImportTest, ExhaustedMemoryIsAStatus) {
    ASSERT_EQ(Open(kTwoPages), S_OK);
    {
        const AllocationLimit limit(30000);  // less than a builder
        EXPECT_EQ(GetNode(), E_OUTOFMEMORY);
        EXPECT_EQ(Open(kTwoPages), E_OUTOFMEMORY);
    }
    EXPECT_EQ(Open(kTwoPages), S_OK);
    EXPECT_EQ(GetNode(), S_OK);
}

TEST(CreateFilter, AnswersItsInterfacesOnly) {
    void* object = nullptr;
    EXPECT_EQ(CreateQmFilterHPGL(nullptr, __uuidof(IQmFilterSave), &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(CreateQmFilterHPGL(nullptr, __uuidof(IQmFilter), nullptr), E_POINTER);
    EXPECT_EQ(LiveObjectCount(), 0);
}

}  // namespace
}  // namespace qm
