// The component DLL, loaded from beside the test program, and registered while a test needs it.
#pragma once

#include <gtest/gtest.h>
#include <objbase.h>

#include "platform/library.h"

namespace qm {

class ServerModule : public testing::Test {
  protected:
    ServerModule() { CoInitialize(nullptr); }
    ~ServerModule() override {
        CoFreeUnusedLibraries();
        CoUninitialize();
    }

    HRESULT Call(const char* entryPoint) const {
        const auto function = module_.Function<HRESULT STDAPICALLTYPE()>(entryPoint);
        return function == nullptr ? E_NOTIMPL : function();
    }

  private:
    const Library module_{"QmFilter_HPGL.dll"};
};

class RegisteredServer : public ServerModule {
  protected:
    void SetUp() override { ASSERT_EQ(Call("DllRegisterServer"), S_OK); }
    void TearDown() override { EXPECT_EQ(Call("DllUnregisterServer"), S_OK); }
};

}  // namespace qm
