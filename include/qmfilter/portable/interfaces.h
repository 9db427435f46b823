// The interfaces that all components build on, as the SDK's <unknwn.h>, <oaidl.h> and <ocidl.h>
// declare them: IUnknown, IDispatch, IClassFactory, connection points with their enumerators.
//
// Interfaces have no virtual destructor: it would shift the methods that follow. Identifiers are
// defined in interfaces.cpp. Tests: tests/platform/com_object_test.cpp,
// tests/host/open_plot_test.cpp.
#pragma once

#include "qmfilter/portable/types.h"

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

// ---------------------------------------------------------------- Connection points

struct CONNECTDATA {
    IUnknown* pUnk;
    DWORD dwCookie;
};

struct IConnectionPoint;
struct IConnectionPointContainer;

struct IEnumConnections : public IUnknown {
    // S_FALSE when fewer than `count` were left. Each pUnk is the caller's reference.
    virtual HRESULT Next(ULONG count, CONNECTDATA* connections, ULONG* fetched) = 0;
    virtual HRESULT Skip(ULONG count) = 0;
    virtual HRESULT Reset() = 0;
    virtual HRESULT Clone(IEnumConnections** copy) = 0;
};

struct IEnumConnectionPoints : public IUnknown {
    virtual HRESULT Next(ULONG count, IConnectionPoint** points, ULONG* fetched) = 0;
    virtual HRESULT Skip(ULONG count) = 0;
    virtual HRESULT Reset() = 0;
    virtual HRESULT Clone(IEnumConnectionPoints** copy) = 0;
};

struct IConnectionPoint : public IUnknown {
    virtual HRESULT GetConnectionInterface(IID* iid) = 0;
    virtual HRESULT GetConnectionPointContainer(IConnectionPointContainer** container) = 0;
    // Keeps a reference to `sink` until Unadvise(*cookie). CONNECT_E_CANNOTCONNECT: it lacks the
    // interface.
    virtual HRESULT Advise(IUnknown* sink, DWORD* cookie) = 0;
    virtual HRESULT Unadvise(DWORD cookie) = 0;
    virtual HRESULT EnumConnections(IEnumConnections** connections) = 0;
};

struct IConnectionPointContainer : public IUnknown {
    virtual HRESULT EnumConnectionPoints(IEnumConnectionPoints** points) = 0;
    virtual HRESULT FindConnectionPoint(REFIID riid, IConnectionPoint** point) = 0;
};

// clang-format off
__CRT_UUID_DECL(IEnumConnections, 0xb196b287, 0xbab4, 0x101a, 0xb6, 0x9c, 0x00, 0xaa, 0x00, 0x34, 0x1d, 0x07)
__CRT_UUID_DECL(IEnumConnectionPoints, 0xb196b285, 0xbab4, 0x101a, 0xb6, 0x9c, 0x00, 0xaa, 0x00, 0x34, 0x1d, 0x07)
__CRT_UUID_DECL(IConnectionPoint, 0xb196b286, 0xbab4, 0x101a, 0xb6, 0x9c, 0x00, 0xaa, 0x00, 0x34, 0x1d, 0x07)
__CRT_UUID_DECL(IConnectionPointContainer, 0xb196b284, 0xbab4, 0x101a, 0xb6, 0x9c, 0x00, 0xaa, 0x00, 0x34, 0x1d, 0x07)
// clang-format on

extern "C" const IID IID_IEnumConnections;
extern "C" const IID IID_IEnumConnectionPoints;
extern "C" const IID IID_IConnectionPoint;
extern "C" const IID IID_IConnectionPointContainer;
