// Integer types, GUIDs, status codes and calling-convention words of the Windows SDK, for other
// systems.
//
// Only names the SDK has, with the SDK's sizes; the headers in qmfilter/sdk/ hand them out as
// <windows.h>, <ole2.h>, ... and are on the include path only when the target is not Windows. LONG
// is 32 bits here (int) and there (long): print it as static_cast<int> with %d. wchar_t is the wide
// character of both systems although it is 4 bytes here and 2 there, so that literals and wcs
// functions work: wide characters never go into files. Test: tests/platform/bstr_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

using BOOL = int;
using INT = int;
using UINT = unsigned int;
using CHAR = char;
using BYTE = std::uint8_t;
using SHORT = std::int16_t;
using USHORT = std::uint16_t;
using WORD = std::uint16_t;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using DWORD = std::uint32_t;
using LONGLONG = std::int64_t;
using ULONGLONG = std::uint64_t;
using FLOAT = float;
using DOUBLE = double;
using SIZE_T = std::size_t;
using LPVOID = void*;
using LPCVOID = const void*;
using HANDLE = void*;
using HGLOBAL = HANDLE;
using LPSTR = char*;
using LPCSTR = const char*;
using WCHAR = wchar_t;
using OLECHAR = wchar_t;
using LPWSTR = wchar_t*;
using LPCWSTR = const wchar_t*;
using LPOLESTR = OLECHAR*;
using LPCOLESTR = const OLECHAR*;
using BSTR = OLECHAR*;
using HRESULT = std::int32_t;
using VARIANT_BOOL = std::int16_t;
using VARTYPE = std::uint16_t;

struct FILETIME {
    DWORD dwLowDateTime;
    DWORD dwHighDateTime;
};

// The SDK's unions also carry the halves as nameless members; ISO C++ has no nameless structs, so
// `u` and `QuadPart` are all.
union LARGE_INTEGER {
    struct Halves {
        DWORD LowPart;
        LONG HighPart;
    } u;
    LONGLONG QuadPart;
};

union ULARGE_INTEGER {
    struct Halves {
        DWORD LowPart;
        DWORD HighPart;
    } u;
    ULONGLONG QuadPart;
};

// NOLINTBEGIN: the SDK's own macro names; the generated interface headers are written in terms of
// them.
#define TRUE 1
#define FALSE 0
#define MAX_PATH 260
#define WINAPI
#define STDMETHODCALLTYPE
#define STDAPICALLTYPE
#define CALLBACK
#define STDMETHOD(method) virtual HRESULT STDMETHODCALLTYPE method
#define STDMETHODIMP HRESULT STDMETHODCALLTYPE
#define EXTERN_C extern "C"
#define STDAPI extern "C" HRESULT STDAPICALLTYPE
#define DECLSPEC_UUID(text)
#define DECLSPEC_NOVTABLE
#define DECLSPEC_SELECTANY __attribute__((weak))
#define MIDL_INTERFACE(text) struct
#define interface struct
#define FORCEINLINE inline
#define CONST_VTBL
#define BEGIN_INTERFACE
#define END_INTERFACE
#define __RPC_USER
#define OLESTR(text) L##text
// NOLINTEND

struct GUID {
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];
};
using IID = GUID;
using CLSID = GUID;
using REFGUID = const GUID&;
using REFIID = const IID&;
using REFCLSID = const CLSID&;

inline bool operator==(const GUID& a, const GUID& b) noexcept {
    return std::memcmp(&a, &b, sizeof(GUID)) == 0;
}
inline bool operator!=(const GUID& a, const GUID& b) noexcept { return !(a == b); }
inline bool IsEqualGUID(REFGUID a, REFGUID b) noexcept { return a == b; }
inline bool IsEqualIID(REFIID a, REFIID b) noexcept { return a == b; }
inline bool IsEqualCLSID(REFCLSID a, REFCLSID b) noexcept { return a == b; }

// The identifier that __CRT_UUID_DECL attached to a type; __uuidof(T) and __uuidof(pointer) ask for
// it.
template <typename T>
struct UuidOfType;
template <typename T>
struct UuidOfType<T*> : UuidOfType<T> {};

// NOLINTBEGIN: names the generated headers and the compilers for Windows share.
#define __CRT_UUID_DECL(type, l, w1, w2, b1, b2, b3, b4, b5, b6, b7, b8)             \
    extern "C++" {                                                                   \
    template <>                                                                      \
    struct UuidOfType<type> {                                                        \
        static constexpr GUID value = {l, w1, w2, {b1, b2, b3, b4, b5, b6, b7, b8}}; \
    };                                                                               \
    }
#define __uuidof(x) (UuidOfType<__typeof(x)>::value)
#ifdef INITGUID
#define DEFINE_GUID(name, l, w1, w2, b1, b2, b3, b4, b5, b6, b7, b8) \
    EXTERN_C const GUID name = {l, w1, w2, {b1, b2, b3, b4, b5, b6, b7, b8}}
#else
#define DEFINE_GUID(name, l, w1, w2, b1, b2, b3, b4, b5, b6, b7, b8) EXTERN_C const GUID name
#endif
// NOLINTEND

extern "C" const GUID GUID_NULL;

// Status codes, by value. HRESULT is signed: failures are negative.
constexpr HRESULT StatusCode(std::uint32_t bits) noexcept { return static_cast<HRESULT>(bits); }
inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT S_FALSE = 1;
inline constexpr HRESULT E_NOTIMPL = StatusCode(0x80004001);
inline constexpr HRESULT E_NOINTERFACE = StatusCode(0x80004002);
inline constexpr HRESULT E_POINTER = StatusCode(0x80004003);
inline constexpr HRESULT E_ABORT = StatusCode(0x80004004);
inline constexpr HRESULT E_FAIL = StatusCode(0x80004005);
inline constexpr HRESULT E_UNEXPECTED = StatusCode(0x8000FFFF);
inline constexpr HRESULT E_ACCESSDENIED = StatusCode(0x80070005);
inline constexpr HRESULT E_OUTOFMEMORY = StatusCode(0x8007000E);
inline constexpr HRESULT E_INVALIDARG = StatusCode(0x80070057);
inline constexpr HRESULT CO_E_CLASSSTRING = StatusCode(0x800401F3);
inline constexpr HRESULT REGDB_E_CLASSNOTREG = StatusCode(0x80040154);
inline constexpr HRESULT CLASS_E_NOAGGREGATION = StatusCode(0x80040110);
inline constexpr HRESULT CLASS_E_CLASSNOTAVAILABLE = StatusCode(0x80040111);
inline constexpr HRESULT CONNECT_E_NOCONNECTION = StatusCode(0x80040200);
inline constexpr HRESULT CONNECT_E_ADVISELIMIT = StatusCode(0x80040201);
inline constexpr HRESULT CONNECT_E_CANNOTCONNECT = StatusCode(0x80040202);
inline constexpr HRESULT DISP_E_TYPEMISMATCH = StatusCode(0x80020005);
inline constexpr HRESULT DISP_E_BADVARTYPE = StatusCode(0x80020008);
inline constexpr HRESULT DISP_E_OVERFLOW = StatusCode(0x8002000A);
inline constexpr HRESULT STG_E_INVALIDFUNCTION = StatusCode(0x80030001);
inline constexpr HRESULT STG_E_FILENOTFOUND = StatusCode(0x80030002);
inline constexpr HRESULT STG_E_ACCESSDENIED = StatusCode(0x80030005);
inline constexpr HRESULT STG_E_INVALIDPOINTER = StatusCode(0x80030009);
inline constexpr HRESULT STG_E_SEEKERROR = StatusCode(0x80030019);
inline constexpr HRESULT STG_E_WRITEFAULT = StatusCode(0x8003001D);
inline constexpr HRESULT STG_E_READFAULT = StatusCode(0x8003001E);
inline constexpr HRESULT STG_E_MEDIUMFULL = StatusCode(0x80030070);

constexpr bool SUCCEEDED(HRESULT status) noexcept { return status >= 0; }
constexpr bool FAILED(HRESULT status) noexcept { return status < 0; }

static_assert(sizeof(GUID) == 16 && sizeof(LONG) == 4 && sizeof(LARGE_INTEGER) == 8);
