// The exports of an in-process server, and the module's entry point. DllInstall adds the
// per-user registration (`regsvr32 /n /i:user Orbex.dll`) beside the machine-wide one.
#include "Catalogue.h"
#include "ClassFactory.h"
#include "Module.h"
#include "Registration.h"
#include "TypeLibrary.h"

using namespace orbex::com;

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) {
        SetModuleInstance(instance);
        DisableThreadLibraryCalls(instance);
    }
    return TRUE;
}

extern "C" HRESULT STDAPICALLTYPE DllCanUnloadNow() {
    if (!CanUnloadModule()) return S_FALSE;
    ReleaseTypeLibrary();
    return S_OK;
}

extern "C" HRESULT STDAPICALLTYPE DllGetClassObject(REFCLSID clsid, REFIID riid, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    for (const ClassEntry& entry : Classes()) {
        if (IsEqualCLSID(clsid, entry.classId)) {
            PinModule();
            return GetClassFactory(entry, riid, object);
        }
    }
    return CLASS_E_CLASSNOTAVAILABLE;
}

extern "C" HRESULT STDAPICALLTYPE DllRegisterServer() { return RegisterServer(Scope::Machine); }

extern "C" HRESULT STDAPICALLTYPE DllUnregisterServer() { return UnregisterServer(Scope::Machine); }

extern "C" HRESULT STDAPICALLTYPE DllInstall(BOOL install, LPCWSTR commandLine) {
    Scope scope;
    if (!ScopeOfCommandLine(commandLine, &scope)) return E_INVALIDARG;
    return install ? RegisterServer(scope) : UnregisterServer(scope);
}
