// The components and the structure: headers, settings, attributes, the mapping's freezing point,
// nested structures, refusals.
#include <qmfilter.h>

#include "export/save_filter.h"
#include "export/save_structure.h"
#include "host/source_and_events.h"
#include "platform/variant.h"
#include "tests/export/exported.h"

namespace qm {
namespace {

// A point at 100, 200 shows scale, offset and flip at once.
const char* const kPoint = "object 1203\nAppendPoint 100 200\nend\n";

std::string PointText(int x, int y) {
    const std::string at = std::to_string(x) + "," + std::to_string(y);
    return "PU" + at + "PD" + at + ";\r\n";
}

TEST(ExportFramework, WholeDocuments) {
    EXPECT_EQ(Exported("").bytes, "BPINSP1;TR0;\r\nPU;PG;");
    EXPECT_EQ(Exported("", ReplayFormat::kHprtl).bytes, "\033%%-1B;BP5,1;INTR0\r\nPUSP0PG;");
    EXPECT_EQ(Exported("attribute NodeID \"Page 1\"\nattribute NodeID\n").bytes,
              "BPINSP1;TR0;\r\n\r\nPG;\r\n\r\nPG;\r\nPU;PG;");
}

TEST(ExportFramework, MappingFollowsAttributesAndSettings) {
    const struct Row {
        const char* name;
        const char* setup;
        int x, y;
    } rows[] = {
        {"no crop: flipped against 0", "", 100, -200},
        {"the top is one more than CropMaxY", "attribute CropMaxY 1000.0", 100, 801},
        {"integers count as well", "attribute CropMaxY 1000", 100, 801},
        {"height is cut after the shift", "attribute CropMinY -10.7\nattribute CropMaxY 99.9", 100,
         110 - 210},
        {"y upward", "attribute CropMaxY 1000.0\nattribute DirectionY true", 100, 200},
        {"y upward again downward",
         "attribute DirectionY true\nattribute DirectionY false\nattribute CropMaxY 9.0", 100,
         -190},
        {"a crop right of 0 moves x", "attribute CropMinX 10.7", 90, -200},
        {"a crop left of 0 moves x", "attribute CropMinX -10.7", 110, -200},
        {"a crop above 0 leaves y", "attribute CropMinY 10.7\nattribute DirectionY true", 100, 200},
        {"a crop below 0 moves y", "attribute CropMinY -10.7\nattribute DirectionY true", 100, 210},
        {"UserDPI", "setting UserDPI 300.0", 338, -677},
        {"UserDPI with scaling", "setting UserDPI 508.0\nattribute OriginalScaling 2.0", 100, -200},
        {"UserDPI wins over LpiX", "setting UserDPI 508.0\nattribute LpiX 2032.0", 200, -400},
        {"LpiX", "attribute LpiX 2032.0", 200, -400},
        {"LpiY alone means nothing", "attribute LpiY 2032.0", 100, -200},
        {"a negative UserDPI is none", "setting UserDPI -300.0\nattribute LpiX 508.0", 50, -100},
        {"scaling without UserDPI means nothing", "attribute OriginalScaling 2.0", 100, -200},
        {"translation is kept only",
         "attribute OriginalTranslationX 5.0\nattribute OriginalTranslationY 5.0", 100, -200},
        {"names are compared exactly", "attribute cropminx 10.0\nattribute CropMinXX 10.0", 100,
         -200},
        {"no number: stays", "attribute CropMinX 10.0\nattribute CropMinX \"wide\"", 90, -200},
        {"nothing fits 32 bits", "attribute LpiX 1e300", INT32_MIN, INT32_MIN},
        {"division by zero", "setting UserDPI 300.0\nattribute OriginalScaling 0.0", INT32_MIN,
         INT32_MIN},
    };
    for (const Row& row : rows) {
        const std::string script = std::string(row.setup) + "\n" + kPoint;
        EXPECT_EQ(
            Between(Exported(script).bytes, plot_text::kVectorHeader, plot_text::kVectorTrailer),
            PointText(row.x, row.y))
            << row.name;
    }
}

TEST(ExportFramework, FirstSinkFreezesTheMapping) {
    const std::string crop = "attribute CropMaxY 1000.0\nattribute CropMinX 5.0\n";
    const std::string late =
        "attribute CropMaxY 10.0\nattribute CropMinX 7.0\nattribute LpiX 5.0\n";
    const auto body = [](const std::string& script) {
        return Between(Exported(script).bytes, plot_text::kVectorHeader, plot_text::kVectorTrailer);
    };
    EXPECT_EQ(body(crop + kPoint + late + kPoint), PointText(95, 801) + PointText(95, 801));
    // A raster sink freezes it too.
    EXPECT_EQ(body("object 1202\nCreateRasterStorage 1 1 1 0 1 1 0\nend\n" + crop + kPoint),
              PointText(100, -200));
    // The direction is the one at the sink's creation.
    EXPECT_EQ(body(crop + kPoint + "attribute DirectionY true\n" + kPoint),
              PointText(95, 801) + PointText(95, 200));
}

TEST(ExportFramework, NestedStructuresMapByTheirOwnAttributes) {
    const std::string outer =
        "setting UserDPI 508.0\nattribute CropMinX 5.0\nattribute CropMaxY 1000.0\n"
        "attribute DirectionY true\nattribute OriginalScaling 2.0\n" +
        std::string(kPoint);
    const std::string inner = "attribute CropMaxY 499.0\n" + std::string(kPoint) + "end\n";
    for (const char* type : {"1100", "1101", "1102"}) {
        EXPECT_EQ(Between(Exported(outer + "object " + type + "\n" + inner + kPoint).bytes,
                          plot_text::kVectorHeader, plot_text::kVectorTrailer),
                  PointText(95, 200) + PointText(200, 600) + PointText(95, 200))
            << type;
    }
}

TEST(ExportFramework, NestedStructuresInheritPens) {
    EXPECT_EQ(VectorText("AppendPen 2\nend",
                         "setting UsePenTable true\nsetting UseLineWeights true\n"
                         "pentable Measurement true\npen 2 - - 1.0\nattribute PenTable\n"
                         "object 1102"),
              "PW1.00,2;\r\nPC2,0,0,0;SP2;\r\nLT;\r\n");
}

TEST(ExportFramework, RefusedObjectsAreReported) {
    const ExportResult result = Exported(
        "object 1203\nend\nobject 1204\nAppendPen 2\nobject 1200\nend\nobject 0\nobject 1203\n"
        "AppendPen 1\nend\n");
    EXPECT_EQ(result.messages,
              "test:3: CreateObject returned E_INVALIDARG\n"
              "test:5: CreateObject returned E_INVALIDARG\n"
              "test:7: CreateObject returned E_INVALIDARG\n");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.bytes, "BPINSP1;TR0;\r\nLT0;\r\nPU;PG;");
    for (const int type : {1000, 1103, 1199, 1201, 1205, 1207, 2000, 2001, 3000, 3006, -1}) {
        EXPECT_EQ(Exported("object " + std::to_string(type)).status, 1) << type;
    }
}

TEST(ExportFramework, SettingsTakeVariantTrueOnly) {
    const struct Row {
        const char* name;
        const char* setting;
        bool on;
    } rows[] = {
        {"absent", "setting UserDPI 1016.0", false},
        {"true", "setting UseLineWeights true", true},
        {"false", "setting UseLineWeights false", false},
        {"a plain 1", "setting UseLineWeights 1", false},
        {"65534", "setting UseLineWeights 65534", false},
        {"65535", "setting UseLineWeights 65535", true},
        {"-1", "setting UseLineWeights -1", true},
        {"another case", "setting uselineweights true", false},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(VectorText("AppendLineWeight 35", row.setting), row.on ? "PW0.35,0;\r\n" : "")
            << row.name;
    }
}

// Of the settings the HP-RTL filter reads the resolution alone.
TEST(ExportFramework, RasterFilterReadsUserDpiOnly) {
    const ExportResult result = Exported(
        "setting UserDPI 508.0\nsetting UseLineWeights true\nsetting MonoColor 255\n"
        "object 1206\nAppendPoint 1.0 2.0\nAppendLineWeight 35\nAppendDrawColor 1 2 3\nend\n",
        ReplayFormat::kHprtl);
    EXPECT_EQ(Between(result.bytes, plot_text::kRasterHeader, plot_text::kRasterTrailer),
              "PU2,4PD2,4;\r\nPC0,1,2,3;\r\nSP0;");
}

TEST(ExportFramework, WithoutAStreamTheStructureIsThereButWritesFail) {
    const LONG before = LiveObjectCount();
    {
        ComPtr<IQmFilterSave> filter = MakeObject<CQmFilterSaveHPGL>();
        EXPECT_EQ(filter->CloseDocument(), E_FAIL);
        ComPtr<IQmDataObject> target = MakeObject<DataObject>(ComPtr<IStream>(), std::wstring());
        for (IQmDataObject* object : {static_cast<IQmDataObject*>(nullptr), target.Get()}) {
            ComPtr<IUnknown> saved;
            EXPECT_EQ(filter->CreateDocument(object, nullptr, saved.Put()), E_FAIL);
            const auto structure = saved.As<IQmSaveStructure>();
            ASSERT_TRUE(structure);
            const Bstr page(L"NodeID");
            EXPECT_EQ(structure->SetAttribute(page.Get(), Variant().Get()), S_OK);
            ComPtr<IUnknown> sink;
            EXPECT_EQ(structure->CreateObject(QM_VECTOR_BLOCK, 0, sink.Put()), S_OK);
            EXPECT_EQ(sink.As<IQmSaveVectorData>()->AppendPen(1), E_FAIL);
            EXPECT_EQ(structure->CreateObject(QM_VECTOR_BLOCK, 0, nullptr), E_POINTER);
        }
        EXPECT_EQ(filter->CreateDocument(target.Get(), nullptr, nullptr), E_POINTER);
    }
    EXPECT_EQ(LiveObjectCount(), before);
}

// Hosts pass these as plain numbers, so a renumbering would not be noticed by any compiler.
TEST(ExportFramework, EnumerationValues) {
    EXPECT_EQ((std::vector<int>{QM_COLLECTION, QM_PEN_TABLE, QM_RASTER_WB, QM_WINDING}),
              (std::vector<int>{2001, 3006, 9, 1}));
}

// A settings object that answers no attributes is as none; a target is asked for its stream once a
// document.
TEST(ExportFramework, SinksOutliveTheFilter) {
    const LONG before = LiveObjectCount();
    {
        const auto stream = MakeObject<RecordingStream>();
        ComPtr<IUnknown> saved;
        ComPtr<IUnknown> sink;
        {
            ComPtr<IQmFilterSave> filter = MakeObject<CQmFilterSaveHPGL>();
            const auto target = MakeObject<DataObject>(ComPtr<IStream>(stream), std::wstring());
            EXPECT_EQ(filter->CreateDocument(target.Get(), stream.Get(), saved.Put()), S_OK);
            EXPECT_EQ(saved.As<IQmSaveStructure>()->CreateObject(QM_VECTOR_BLOCK, 0, sink.Put()),
                      S_OK);
        }
        saved.Reset();
        EXPECT_EQ(sink.As<IQmSaveVectorData>()->AppendDrawMode(9), S_OK);
        EXPECT_EQ(stream->Bytes(), "BPINSP1;TR0;\r\nMC1,168;");
    }
    EXPECT_EQ(LiveObjectCount(), before);
}

}  // namespace
}  // namespace qm
