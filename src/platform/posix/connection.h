// Connection points (outgoing interfaces) and their enumerators, as the SDK's <ocidl.h> declares
// them.
//
// Declarations only: the component server implements them. Identifiers are defined in
// identifiers.cpp.
#pragma once

#include "platform/posix/unknown.h"

struct CONNECTDATA {
    IUnknown* pUnk;
    DWORD dwCookie;
};

struct IConnectionPoint;
struct IConnectionPointContainer;

MIDL_INTERFACE("b196b287-bab4-101a-b69c-00aa00341d07")
IEnumConnections : public IUnknown {
    // S_FALSE when fewer than `count` were left. Each pUnk is the caller's reference.
    virtual HRESULT STDMETHODCALLTYPE Next(ULONG count, CONNECTDATA * connections,
                                           ULONG * fetched) = 0;
    virtual HRESULT STDMETHODCALLTYPE Skip(ULONG count) = 0;
    virtual HRESULT STDMETHODCALLTYPE Reset() = 0;
    virtual HRESULT STDMETHODCALLTYPE Clone(IEnumConnections * *copy) = 0;
};

MIDL_INTERFACE("b196b285-bab4-101a-b69c-00aa00341d07")
IEnumConnectionPoints : public IUnknown {
    virtual HRESULT STDMETHODCALLTYPE Next(ULONG count, IConnectionPoint * *points,
                                           ULONG * fetched) = 0;
    virtual HRESULT STDMETHODCALLTYPE Skip(ULONG count) = 0;
    virtual HRESULT STDMETHODCALLTYPE Reset() = 0;
    virtual HRESULT STDMETHODCALLTYPE Clone(IEnumConnectionPoints * *copy) = 0;
};

MIDL_INTERFACE("b196b286-bab4-101a-b69c-00aa00341d07")
IConnectionPoint : public IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID * iid) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer *
                                                                  *container) = 0;
    // Keeps a reference to `sink` until Unadvise(*cookie). CONNECT_E_CANNOTCONNECT: it lacks the
    // interface.
    virtual HRESULT STDMETHODCALLTYPE Advise(IUnknown * sink, DWORD * cookie) = 0;
    virtual HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) = 0;
    virtual HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections * *connections) = 0;
};

MIDL_INTERFACE("b196b284-bab4-101a-b69c-00aa00341d07")
IConnectionPointContainer : public IUnknown {
    virtual HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints * *points) = 0;
    virtual HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID riid,
                                                          IConnectionPoint * *point) = 0;
};

__CRT_UUID_DECL(IEnumConnections, 0xb196b287, 0xbab4, 0x101a, 0xb6, 0x9c, 0x00, 0xaa, 0x00, 0x34,
                0x1d, 0x07)
__CRT_UUID_DECL(IEnumConnectionPoints, 0xb196b285, 0xbab4, 0x101a, 0xb6, 0x9c, 0x00, 0xaa, 0x00,
                0x34, 0x1d, 0x07)
__CRT_UUID_DECL(IConnectionPoint, 0xb196b286, 0xbab4, 0x101a, 0xb6, 0x9c, 0x00, 0xaa, 0x00, 0x34,
                0x1d, 0x07)
__CRT_UUID_DECL(IConnectionPointContainer, 0xb196b284, 0xbab4, 0x101a, 0xb6, 0x9c, 0x00, 0xaa, 0x00,
                0x34, 0x1d, 0x07)

extern "C" const IID IID_IEnumConnections;
extern "C" const IID IID_IEnumConnectionPoints;
extern "C" const IID IID_IConnectionPoint;
extern "C" const IID IID_IConnectionPointContainer;
