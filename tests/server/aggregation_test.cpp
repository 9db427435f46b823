// Class factories, objects alone and as parts of others, locks.
#include <gtest/gtest.h>

#include "server/class_factory.h"
#include "tests/server/sample_component.h"

namespace {

using qm::ComPtr;

class ClassFactoryTest : public testing::Test {
  protected:
    void TearDown() override {
        factory_.Reset();
        EXPECT_EQ(qm::LiveObjectCount(), before_);
    }
    const LONG before_ = qm::LiveObjectCount();
    ComPtr<IClassFactory> factory_ =
        qm::MakeObject<qm::ClassFactory>(&qm::MakeComponent<qm::SampleComponent>);
};

TEST_F(ClassFactoryTest, MakesObjects) {
    ComPtr<IQmFilterSave> component;
    EXPECT_EQ(factory_->CreateInstance(nullptr, __uuidof(IQmFilterSave), component.PutVoid()),
              S_OK);
    EXPECT_TRUE(component.As<IConnectionPointContainer>());
    ComPtr<IQmLayers> none;
    EXPECT_EQ(factory_->CreateInstance(nullptr, __uuidof(IQmLayers), none.PutVoid()),
              E_NOINTERFACE);
    EXPECT_EQ(factory_->CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(ClassFactoryTest, PartTakesTheIdentityOfTheWhole) {
    const auto outer = qm::MakeObject<qm::Outer>();
    ASSERT_EQ(factory_->CreateInstance(outer.Get(), IID_IUnknown, outer->part.PutVoid()), S_OK);
    const auto save = outer.As<IQmFilterSave>();
    ASSERT_TRUE(save);
    EXPECT_EQ(save.As<IUnknown>(), outer.As<IUnknown>());
    EXPECT_NE(outer->part, outer.As<IUnknown>());
    EXPECT_EQ(outer->part.As<IUnknown>(), outer->part);
    EXPECT_TRUE(save.As<_IQmFilterSaveEvents>());
    // Nothing of the part is counted by the part itself.
    const ULONG references = save->AddRef();
    EXPECT_EQ(outer->Release(), references - 1);

    const auto container = save.As<IConnectionPointContainer>();
    ComPtr<IConnectionPoint> point;
    ASSERT_EQ(container->FindConnectionPoint(__uuidof(_IQmFilterSaveEvents), point.Put()), S_OK);
    ComPtr<IConnectionPointContainer> back;
    ASSERT_EQ(point->GetConnectionPointContainer(back.Put()), S_OK);
    EXPECT_EQ(back.As<IUnknown>(), outer.As<IUnknown>());
}

TEST_F(ClassFactoryTest, WholeLivesAsLongAsAnInterfaceOfThePart) {
    auto outer = qm::MakeObject<qm::Outer>();
    ASSERT_EQ(factory_->CreateInstance(outer.Get(), IID_IUnknown, outer->part.PutVoid()), S_OK);
    const LONG alive = qm::LiveObjectCount();
    auto save = outer.As<IQmFilterSave>();
    // A sink that holds the component, as hosts do: the circle is the sink's to break.
    DWORD cookie = 0;
    ComPtr<IConnectionPoint> point;
    save.As<IConnectionPointContainer>()->FindConnectionPoint(__uuidof(_IQmFilterSaveEvents),
                                                              point.Put());
    int events = 0;
    point->Advise(qm::MakeObject<qm::SampleSink>([&, save] {
                      ++events;
                      point->Unadvise(cookie);
                      return true;
                  }).Get(),
                  &cookie);
    outer.Reset();
    EXPECT_EQ(qm::LiveObjectCount(), alive + 1);
    EXPECT_EQ(save->CloseDocument(), S_FALSE);
    EXPECT_EQ(save->CloseDocument(), S_OK);
    EXPECT_EQ(events, 1);
}

TEST_F(ClassFactoryTest, PartIsAskedForAsIUnknownOnly) {
    const auto outer = qm::MakeObject<qm::Outer>();
    ComPtr<IQmFilterSave> save;
    EXPECT_EQ(factory_->CreateInstance(outer.Get(), __uuidof(IQmFilterSave), save.PutVoid()),
              CLASS_E_NOAGGREGATION);
    EXPECT_FALSE(save);
}

TEST_F(ClassFactoryTest, LocksCount) {
    EXPECT_EQ(factory_->LockServer(FALSE), E_FAIL);
    EXPECT_EQ(factory_->LockServer(TRUE), S_OK);
    EXPECT_EQ(factory_->LockServer(TRUE), S_OK);
    EXPECT_EQ(factory_->LockServer(FALSE), S_OK);
    EXPECT_TRUE(qm::IsModuleLocked());
    EXPECT_EQ(factory_->LockServer(FALSE), S_OK);
    EXPECT_FALSE(qm::IsModuleLocked());
}

}  // namespace
