// A host that uses the interfaces themselves: the headers stand alone, and the library has what
// they declare.
#include <dlfcn.h>
#include <qmfilter/qmfilter.h>

int main(int, char** arguments) {
    void* const module = dlopen(arguments[1], RTLD_NOW);
    if (module == nullptr) return 1;
    const auto getClass =
        reinterpret_cast<HRESULT (*)(REFCLSID, REFIID, void**)>(dlsym(module, "DllGetClassObject"));
    IClassFactory* factory = nullptr;
    if (FAILED(getClass(CLSID_QmFilterHPGL, IID_IClassFactory, reinterpret_cast<void**>(&factory))))
        return 2;
    IQmFilter* filter = nullptr;
    const HRESULT status =
        factory->CreateInstance(nullptr, __uuidof(IQmFilter), reinterpret_cast<void**>(&filter));
    factory->Release();
    if (FAILED(status)) return 3;
    filter->Release();
    SysFreeString(SysAllocString(L"text"));
    return 0;
}
