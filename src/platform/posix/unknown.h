// IUnknown, IDispatch and IClassFactory, as the SDK's <unknwn.h> and <oaidl.h> declare them.
//
// Interfaces have no virtual destructor: it would shift the methods that follow. Identifiers are
// defined in identifiers.cpp. Tests: tests/platform/com_object_test.cpp,
// tests/platform/class_table_test.cpp.
#pragma once

#include "platform/posix/types.h"

struct IUnknown {
    // Sets *object to the interface, with a reference of the caller's, or to null with
    // E_NOINTERFACE.
    virtual HRESULT QueryInterface(REFIID riid, void** object) = 0;
    virtual ULONG AddRef() = 0;
    virtual ULONG Release() = 0;
};
using LPUNKNOWN = IUnknown*;

struct ITypeInfo;
struct DISPPARAMS;
struct EXCEPINFO;
struct tagVARIANT;
using DISPID = LONG;
using LCID = DWORD;

// Never called natively; it exists so that VARIANTs can carry dispatch pointers.
struct IDispatch : public IUnknown {
    virtual HRESULT GetTypeInfoCount(UINT* count) = 0;
    virtual HRESULT GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) = 0;
    virtual HRESULT GetIDsOfNames(REFIID riid, LPOLESTR* names, UINT count, LCID locale,
                                  DISPID* ids) = 0;
    virtual HRESULT Invoke(DISPID member, REFIID riid, LCID locale, WORD flags,
                           DISPPARAMS* parameters, tagVARIANT* result, EXCEPINFO* exception,
                           UINT* argument) = 0;
};

struct IClassFactory : public IUnknown {
    // `outer` is the controlling object when the new one is to be aggregated, else null.
    virtual HRESULT CreateInstance(IUnknown* outer, REFIID riid, void** object) = 0;
    virtual HRESULT LockServer(BOOL lock) = 0;
};

// clang-format off
__CRT_UUID_DECL(IUnknown, 0x00000000, 0x0000, 0x0000, 0xc0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46)
__CRT_UUID_DECL(IDispatch, 0x00020400, 0x0000, 0x0000, 0xc0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46)
__CRT_UUID_DECL(IClassFactory, 0x00000001, 0x0000, 0x0000, 0xc0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46)
// clang-format on

extern "C" const IID IID_IUnknown;
extern "C" const IID IID_IDispatch;
extern "C" const IID IID_IClassFactory;
