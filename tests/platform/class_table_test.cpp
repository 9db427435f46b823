// Registered classes, ProgIDs and creation through them.
#include <gtest/gtest.h>
#include <objbase.h>

#include <thread>

#include "platform/com_object.h"
#include "platform/prog_id.h"

namespace {

constexpr CLSID kClass = {
    0xa42a1ebb, 0xeb62, 0x4f98, {0xa3, 0x2d, 0x9b, 0x42, 0xb3, 0x5c, 0xd0, 0x15}};
constexpr wchar_t kProgId[] = L"QmTest.Stream";

// Makes memory streams, so that the test needs no class of its own.
class StreamFactory final : public qm::ComObject<IClassFactory> {
  public:
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID riid,
                                             void** object) noexcept override {
        if (outer != nullptr) return CLASS_E_NOAGGREGATION;
        qm::ComPtr<IStream> stream;
        const HRESULT status = CreateStreamOnHGlobal(nullptr, TRUE, stream.Put());
        return FAILED(status) ? status : stream->QueryInterface(riid, object);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) noexcept override { return S_OK; }
};

HRESULT Create(REFCLSID clsid) {
    qm::ComPtr<IStream> stream;
    return CoCreateInstance(clsid, nullptr, CLSCTX_ALL, IID_IStream, stream.PutVoid());
}

class ClassTable : public testing::Test {
  protected:
    void SetUp() override {
        before_ = qm::LiveObjectCount();
        ASSERT_TRUE(SUCCEEDED(CoInitialize(nullptr)));
        const auto factory = qm::MakeObject<StreamFactory>();
        ASSERT_EQ(CoRegisterClassObject(kClass, factory.Get(), CLSCTX_INPROC_SERVER,
                                        REGCLS_MULTIPLEUSE, &cookie_),
                  S_OK);
    }
    void TearDown() override {
        CoUninitialize();
        EXPECT_EQ(qm::LiveObjectCount(), before_);
    }

    LONG before_ = 0;
    DWORD cookie_ = 0;
};

TEST_F(ClassTable, CreatesUntilRevoked) {
    CoInitialize(nullptr);  // as each part of a program does for itself
    CoUninitialize();
    EXPECT_EQ(Create(kClass), S_OK);
    qm::ComPtr<IUnknown> wrong;
    EXPECT_EQ(CoCreateInstance(kClass, nullptr, CLSCTX_ALL, IID_IDispatch, wrong.PutVoid()),
              E_NOINTERFACE);
    EXPECT_EQ(Create(IID_IStream), REGDB_E_CLASSNOTREG);
    EXPECT_EQ(CoRevokeClassObject(cookie_), S_OK);
    EXPECT_EQ(Create(kClass), REGDB_E_CLASSNOTREG);
    EXPECT_TRUE(FAILED(CoRevokeClassObject(cookie_)));
}

TEST_F(ClassTable, ClassesBelongToTheirThread) {
    HRESULT there = S_OK;
    std::thread([&there] { there = Create(kClass); }).join();
    EXPECT_TRUE(FAILED(there));
}

TEST_F(ClassTable, ProgIds) {
    CLSID found = kClass;
    EXPECT_EQ(qm::ClassIdFromProgId(kProgId, &found), CO_E_CLASSSTRING);
    ASSERT_EQ(qm::RegisterProgId(kProgId, kClass), S_OK);
    EXPECT_EQ(qm::ClassIdFromProgId(L"qmtest.STREAM", &found), S_OK);
    EXPECT_TRUE(found == kClass);
    EXPECT_EQ(Create(found), S_OK);
    EXPECT_EQ(qm::UnregisterProgId(kProgId), S_OK);
    EXPECT_EQ(qm::UnregisterProgId(kProgId), S_OK);
    EXPECT_EQ(qm::ClassIdFromProgId(kProgId, &found), CO_E_CLASSSTRING);
}

}  // namespace
