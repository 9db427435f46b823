// COM's way to classes: registered class objects, CoCreateInstance.
//
// A class object belongs to the thread that registered it, as it belongs to that thread's apartment
// on Windows: each thread that reads a plot registers its own host classes, and needs no lock.
// ProgIDs are in platform/prog_id.h. Test:
// tests/host/open_plot_test.cpp.
#pragma once

#include "qmfilter/portable/interfaces.h"

enum CLSCTX : DWORD { CLSCTX_INPROC_SERVER = 0x1, CLSCTX_ALL = 0x17 };
enum REGCLS : DWORD { REGCLS_SINGLEUSE = 0, REGCLS_MULTIPLEUSE = 1 };
enum COINIT : DWORD { COINIT_MULTITHREADED = 0, COINIT_APARTMENTTHREADED = 2 };

// S_OK for the first call of a thread, S_FALSE for further ones; each is paired with
// CoUninitialize. The last CoUninitialize revokes the thread's class objects.
HRESULT CoInitialize(LPVOID reserved) noexcept;
HRESULT CoInitializeEx(LPVOID reserved, DWORD model) noexcept;
void CoUninitialize() noexcept;

// Keeps a reference to `factory` until CoRevokeClassObject(*cookie). `context` and `flags` are not
// used.
HRESULT CoRegisterClassObject(REFCLSID clsid, IUnknown* factory, DWORD context, DWORD flags,
                              DWORD* cookie) noexcept;
// E_INVALIDARG for a cookie this thread does not have.
HRESULT CoRevokeClassObject(DWORD cookie) noexcept;
// REGDB_E_CLASSNOTREG when the thread has no such class; the latest registration wins.
HRESULT CoGetClassObject(REFCLSID clsid, DWORD context, void* server, REFIID riid,
                         void** object) noexcept;
HRESULT CoCreateInstance(REFCLSID clsid, IUnknown* outer, DWORD context, REFIID riid,
                         void** object) noexcept;
