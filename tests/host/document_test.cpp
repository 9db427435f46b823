// The host's COM objects as a filter sees them: document tree, attributes, layers, pens, drawing
// block.
#include <gtest/gtest.h>

#include "host/document_node.h"
#include "host/drawing_block.h"
#include "host/layers_and_pens.h"
#include "host/page_summary.h"

namespace {

using namespace qm;

class HostDocument : public testing::Test {
  protected:
    void TearDown() override { EXPECT_EQ(LiveObjectCount(), 0); }

    static ComPtr<DocumentNode> Node(SHORT type) { return MakeObject<DocumentNode>(type); }
};

TEST_F(HostDocument, AttributesAreCopiedAndReplaced) {
    const auto node = Node(QM_CONTAINER);
    const Bstr name(L"LpiX");
    EXPECT_EQ(node->PutAttribute(name.Get(), Variant::Integer(1).Get(), 2), S_OK);
    EXPECT_EQ(node->PutAttribute(name.Get(), Variant::Double(1016.0).Get(), 0), S_OK);
    EXPECT_EQ(node->Attributes().Entries().size(), 1U);
    Variant value;
    EXPECT_EQ(node->GetAttribute(name.Get(), 0, value.Put()), S_OK);
    EXPECT_EQ(value.AsDouble(), 1016.0);
    EXPECT_EQ(node->GetAttribute(Bstr(L"lpix").Get(), 0, value.Put()), E_INVALIDARG);
    EXPECT_EQ(value.Type(), VT_EMPTY);
}

TEST_F(HostDocument, NodesHoldOnlyTheirKinds) {
    const std::pair<SHORT, SHORT> wrong[] = {{QM_DOCUMENT, QM_VECTOR_BLOCK},
                                             {QM_CONTAINER, QM_RASTER_BLOCK},
                                             {QM_CONTENTS, QM_CONTENTS}};
    for (const auto& [parent, child] : wrong) {
        ComPtr<IUnknown> made;
        const Variant name = Variant::Text(L"a");
        EXPECT_EQ(Node(parent)->CreateChild(child, name.Get(), Variant().Get(), made.Put()),
                  E_INVALIDARG);
    }
}

TEST_F(HostDocument, FindsChildrenByKindAndExactName) {
    const auto contents = Node(QM_CONTENTS);
    const auto page = Node(QM_CONTAINER);
    const Variant name = Variant::Text(L"Page 1");
    EXPECT_EQ(contents->AddChild(name.Get(), page.Get(), 0), S_OK);
    EXPECT_EQ(contents->AddChild(name.Get(), contents.Get(), 0), E_INVALIDARG);
    ComPtr<IUnknown> found;
    EXPECT_EQ(contents->GetChild(QM_CONTAINER, name.Get(), found.Put()), S_OK);
    EXPECT_EQ(OwnObject<DocumentNode>(found.Get()), page);
    EXPECT_TRUE(
        FAILED(contents->GetChild(QM_CONTAINER, Variant::Text(L"page 1").Get(), found.Put())));
    EXPECT_TRUE(FAILED(contents->GetChild(QM_CONTENTS, name.Get(), found.Put())));
    EXPECT_FALSE(found);
}

TEST_F(HostDocument, PenTableLeavesWhatIsNotGiven) {
    const auto table = MakeObject<PenTable>();
    LONG style = 7, colour = 7, count = 0, number = 0;
    DOUBLE width = 7.0;
    EXPECT_EQ(table->AddPen(2, 0xFF00, -1.0, 0xFFFFFFFF), S_OK);
    EXPECT_EQ(table->GetPen(9, &style, &colour, &width), E_INVALIDARG);
    EXPECT_EQ(table->GetPen(2, &style, &colour, &width), S_OK);
    EXPECT_TRUE(style == 7 && colour == 0xFF00 && width == 7.0);
    EXPECT_EQ(table->AddPen(2, 0xFFFFFFFF, 0.5, 3), S_OK);
    EXPECT_EQ(table->GetPen(2, &style, &colour, &width), S_OK);
    EXPECT_TRUE(style == 3 && width == 0.5);
    EXPECT_EQ(table->GetPenCount(&count), S_OK);
    EXPECT_EQ(table->GetPenNumber(0, &number), S_OK);
    EXPECT_TRUE(count == 1 && number == 2);
    EXPECT_EQ(table->GetPenNumber(1, &number), E_INVALIDARG);
    EXPECT_TRUE(Query<IQmAttributes>(static_cast<IQmPenTable*>(table.Get())));
    const auto layers = MakeObject<LayerCollection>();
    EXPECT_EQ(layers->GetLayer(-1, nullptr, nullptr, nullptr, nullptr), E_INVALIDARG);
    EXPECT_EQ(layers->AddLayer(3, nullptr, 0, 0), S_OK);
    EXPECT_FALSE(ReadLayers(layers.Get()).at(0).visible);
}

TEST_F(HostDocument, BlockRefusesWhatTheContractDoesNotAllow) {
    const auto block = MakeObject<DrawingBlock>();
    const LONG points[] = {0, 0, 5, 0, 5, 5};
    const LONG lengths[] = {2, 1};
    const LONG negative[] = {4, -1};
    const BYTE bytes[] = {0xAA, 0x55};
    VARIANT_BOOL empty = VARIANT_FALSE;
    EXPECT_EQ(block->AppendPolygon(-1, points, VARIANT_TRUE), E_INVALIDARG);
    EXPECT_EQ(block->AppendPolygon(3, nullptr, VARIANT_TRUE), E_INVALIDARG);
    EXPECT_EQ(block->AppendPolyPolygon(2, lengths, 4, points, VARIANT_TRUE), E_INVALIDARG);
    EXPECT_EQ(block->AppendPolyPolygon(2, negative, 3, points, VARIANT_TRUE), E_INVALIDARG);
    EXPECT_EQ(block->AppendDib(0, 0, 1, 1, -4, bytes, 0), E_INVALIDARG);
    EXPECT_EQ(block->IsEmpty(&empty), S_OK);
    EXPECT_EQ(empty, VARIANT_TRUE);
    EXPECT_EQ(block->AppendPolyPolygon(2, lengths, 3, points, VARIANT_TRUE), S_OK);
    EXPECT_EQ(block->AppendDib(0, 0, 1, 1, 2, bytes, 7), S_OK);
    EXPECT_EQ(Summarise(block->Drawing()).extent.maxY, 5.0);
}

}  // namespace
