// Loading libraries by their Windows names. platform_module is built for this test and stands
// beside the program.
#include <gtest/gtest.h>

#include "platform/library.h"

namespace {

TEST(Library, LoadsFromBesideTheProgram) {
    const qm::Library library("platform_module.dll");
    ASSERT_TRUE(library);
    const auto triple = library.Function<int(int)>("TripleForTest");
    ASSERT_NE(triple, nullptr);
    EXPECT_EQ(triple(14), 42);
    EXPECT_EQ(library.Function<int(int)>("NoSuchFunction"), nullptr);
    EXPECT_TRUE(qm::Library("platform_module.DLL"));
}

TEST(Library, AbsentOnesAreNull) {
    EXPECT_FALSE(qm::Library("qm_no_such_library.dll"));
    EXPECT_FALSE(qm::Library("no_such_folder/platform_module.dll"));
    EXPECT_EQ(LoadLibraryW(L"qm_no_such_library.dll"), nullptr);
    EXPECT_EQ(qm::Library().Function<int(int)>("TripleForTest"), nullptr);
}

}  // namespace
