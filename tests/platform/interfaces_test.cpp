// The generated interface header: identifiers agree between header and definitions, enumeration
// values, and that a class can implement the interfaces with the types both systems share.
#include <gtest/gtest.h>
#include <ocidl.h>
#include <qmfilter.h>

#include <set>
#include <string>

namespace {

TEST(Interfaces, IdentifiersOfHeaderAndDefinitionsAgreeAndDiffer) {
    const struct Row {
        const char* name;
        GUID fromHeader;
        GUID defined;
    } rows[] = {
        {"IQmAttributes", __uuidof(IQmAttributes), IID_IQmAttributes},
        {"IQmDataObject", __uuidof(IQmDataObject), IID_IQmDataObject},
        {"IQmDocument", __uuidof(IQmDocument), IID_IQmDocument},
        {"IQmBuildVectorData", __uuidof(IQmBuildVectorData), IID_IQmBuildVectorData},
        {"IQmLayers", __uuidof(IQmLayers), IID_IQmLayers},
        {"IQmPenTable", __uuidof(IQmPenTable), IID_IQmPenTable},
        {"IQmFilter", __uuidof(IQmFilter), IID_IQmFilter},
        {"_IQmFilterEvents", __uuidof(_IQmFilterEvents), IID__IQmFilterEvents},
        {"IQmFilterSave", __uuidof(IQmFilterSave), IID_IQmFilterSave},
        {"_IQmFilterSaveEvents", __uuidof(_IQmFilterSaveEvents), IID__IQmFilterSaveEvents},
        {"IQmSaveStructure", __uuidof(IQmSaveStructure), IID_IQmSaveStructure},
        {"IQmSaveVectorData", __uuidof(IQmSaveVectorData), IID_IQmSaveVectorData},
        {"IQmSaveVectorDataD", __uuidof(IQmSaveVectorDataD), IID_IQmSaveVectorDataD},
        {"IQmSaveRasterData", __uuidof(IQmSaveRasterData), IID_IQmSaveRasterData},
        {"IStream", __uuidof(IStream), IID_IStream},
        {"IUnknown through a pointer", __uuidof(IUnknown*), IID_IUnknown},
        {"IConnectionPoint", __uuidof(IConnectionPoint), IID_IConnectionPoint},
    };
    std::set<std::string> seen;
    for (const Row& row : rows) {
        EXPECT_TRUE(row.fromHeader == row.defined) << row.name;
        const std::string bytes(reinterpret_cast<const char*>(&row.defined), sizeof(GUID));
        EXPECT_TRUE(seen.insert(bytes).second) << row.name;
    }
}

// Hosts pass these as plain numbers, so a renumbering would not be noticed by any compiler.
TEST(Interfaces, EnumerationValues) {
    EXPECT_EQ(QM_CONTENTS, 1101);
    EXPECT_EQ(QM_CONTAINER, 1102);
    EXPECT_EQ(QM_RASTER_BLOCK, 1202);
    EXPECT_EQ(QM_VECTOR_BLOCK, 1203);
    EXPECT_EQ(QM_VECTOR_BLOCKD, 1206);
    EXPECT_EQ(QM_COLLECTION, 2001);
    EXPECT_EQ(QM_PEN_TABLE, 3006);
    EXPECT_EQ(QM_RASTER_WB, 9);
    EXPECT_EQ(QM_WINDING, 1);
}

}  // namespace
