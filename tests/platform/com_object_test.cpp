// The reference counting base and the owning pointer.
#include "platform/com_object.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

namespace {

class Factory final : public qm::ComObject<IClassFactory, ISequentialStream> {
  public:
    explicit Factory(bool fail = false) {
        if (fail) throw std::bad_alloc();
    }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID, void**) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Read(void*, ULONG, ULONG*) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Write(const void*, ULONG, ULONG*) noexcept override { return S_OK; }
};

// Hands itself out while it dies, as an object does whose sink is released by the destructor.
struct Lingering final : qm::ComObject<IUnknown> {
    explicit Lingering(int& count) : deaths(count) {}
    ~Lingering() override {
        ++deaths;
        const qm::ComPtr<IUnknown> self(this);
    }
    int& deaths;
};

TEST(ComObject, OneIdentityWhateverTheInterface) {
    const auto object = qm::MakeObject<Factory>();
    const auto factory = qm::Query<IClassFactory>(static_cast<ISequentialStream*>(object.Get()));
    const auto stream = factory.As<ISequentialStream>();
    ASSERT_TRUE(factory && stream);
    EXPECT_NE(static_cast<void*>(factory.Get()), static_cast<void*>(stream.Get()));
    EXPECT_EQ(factory.As<IUnknown>(), stream.As<IUnknown>());
    IUnknown* none = factory.Get();
    EXPECT_EQ(object->QueryInterface(IID_IStream, reinterpret_cast<void**>(&none)), E_NOINTERFACE);
    EXPECT_EQ(none, nullptr);
    EXPECT_EQ(object->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST(ComObject, FailedConstructionCountsNothing) {
    EXPECT_FALSE(qm::MakeObject<Factory>(true));
    EXPECT_EQ(qm::LiveObjectCount(), 0);
}

TEST(ComObject, ExceptionsBecomeStatusCodes) {
    EXPECT_EQ(qm::Guarded([] { return S_FALSE; }), S_FALSE);
    EXPECT_EQ(qm::Guarded([]() -> HRESULT { throw std::bad_alloc(); }), E_OUTOFMEMORY);
    EXPECT_EQ(qm::Guarded([]() -> HRESULT { throw std::out_of_range("index"); }), E_FAIL);
}

TEST(ComPtr, MovesSharesAndHandsOut) {
    int deaths = 0;
    qm::ComPtr<Lingering> first = qm::MakeObject<Lingering>(deaths);
    qm::ComPtr<IUnknown> shared = first;
    qm::ComPtr<Lingering> moved = std::move(first);
    EXPECT_FALSE(first);  // NOLINT(bugprone-use-after-move): moved from means empty
    moved.Reset();
    IUnknown* out = nullptr;
    EXPECT_EQ(shared.CopyTo(&out), S_OK);
    shared.Put();
    EXPECT_EQ(deaths, 0);
    shared.Attach(out);
    shared = nullptr;
    EXPECT_EQ(deaths, 1);
    EXPECT_EQ(shared.CopyTo(&out), E_FAIL);
    EXPECT_EQ(out, nullptr);
}

}  // namespace
