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
