// Creates a class from the current user's registration alone, the way COM on Windows does it:
// ProgID, CLSID, in-process server and type library read from HKEY_CURRENT_USER\Software\Classes,
// the server loaded and asked for its class factory. Wine's COM reads only the machine's classes,
// so CoCreateInstance cannot show a per-user registration there.
//
// usage: peruser_client ProgID
// exit 0: created, the object answered and the registered type library loads; 1: the ProgID is
// not registered for the user; 2: it is, but something it names does not work.
#include <windows.h>
#include <oleauto.h>

#include <cstdio>
#include <memory>
#include <string>

namespace {

struct KeyClose {
    void operator()(HKEY key) const { RegCloseKey(key); }
};
using UniqueKey = std::unique_ptr<std::remove_pointer_t<HKEY>, KeyClose>;
struct Release {
    void operator()(IUnknown* object) const { object->Release(); }
};
template <class T>
using Ref = std::unique_ptr<T, Release>;
struct LibraryFree {
    void operator()(HMODULE module) const { FreeLibrary(module); }
};
struct BstrFree {
    void operator()(BSTR text) const { SysFreeString(text); }
};
using UniqueBstr = std::unique_ptr<OLECHAR, BstrFree>;

// The default value of a key below the user's classes root; "" when it is missing.
std::wstring UserClassesText(const std::wstring& path) {
    HKEY raw = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, (L"Software\\Classes\\" + path).c_str(), 0, KEY_READ, &raw) != ERROR_SUCCESS)
        return L"";
    UniqueKey key(raw);
    wchar_t text[MAX_PATH] = {};
    DWORD size = sizeof(text) - sizeof(wchar_t);
    if (RegQueryValueExW(key.get(), nullptr, nullptr, nullptr, reinterpret_cast<BYTE*>(text), &size) != ERROR_SUCCESS)
        return L"";
    return text;
}

int Fail(const char* what) {
    std::printf("%s\n", what);
    return 2;
}

// FileLib.ParseFilenameExt("C:\a\b.txt") through IDispatch, as a script would call it.
bool Answers(IDispatch* object) {
    OLECHAR* name = const_cast<OLECHAR*>(L"ParseFilenameExt");
    DISPID id = 0;
    if (FAILED(object->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id))) return false;
    VARIANT argument;
    argument.vt = VT_BSTR;
    UniqueBstr path(SysAllocString(L"C:\\a\\b.txt"));
    argument.bstrVal = path.get();
    DISPPARAMS parameters{&argument, nullptr, 1, 0};
    VARIANT result;
    VariantInit(&result);
    const HRESULT hr = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, &result,
                                      nullptr, nullptr);
    const bool answered = SUCCEEDED(hr) && result.vt == VT_BSTR && std::wstring(result.bstrVal) == L"txt";
    VariantClear(&result);
    return answered;
}

using Module = std::unique_ptr<std::remove_pointer_t<HMODULE>, LibraryFree>;
using GetClassObject = HRESULT(WINAPI*)(REFCLSID, REFIID, void**);

// Creates the class through the server's own class factory, as CoCreateInstance would.
Ref<IDispatch> Create(const Module& module, const std::wstring& classId) {
    const auto getClassObject = reinterpret_cast<GetClassObject>(
        reinterpret_cast<void*>(GetProcAddress(module.get(), "DllGetClassObject")));
    CLSID clsid{};
    IClassFactory* factory = nullptr;
    if (!getClassObject || FAILED(CLSIDFromString(classId.c_str(), &clsid)) ||
        FAILED(getClassObject(clsid, IID_IClassFactory, reinterpret_cast<void**>(&factory))))
        return nullptr;
    const Ref<IClassFactory> ownedFactory(factory);
    IDispatch* object = nullptr;
    if (FAILED(ownedFactory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(&object)))) return nullptr;
    return Ref<IDispatch>(object);
}

int Check(const std::wstring& server, const std::wstring& classId, const std::wstring& typeLibrary) {
    const Module module(LoadLibraryW(server.c_str()));
    if (!module) return Fail("the registered server does not load");
    if (const Ref<IDispatch> object = Create(module, classId); !object || !Answers(object.get()))
        return Fail("the registered server's object does not answer");
    ITypeLib* library = nullptr;
    if (FAILED(LoadTypeLibEx(typeLibrary.c_str(), REGKIND_NONE, &library)))
        return Fail("the registered type library does not load");
    library->Release();
    return 0;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    if (argc != 2) return Fail("usage: peruser_client ProgID");
    const std::wstring classId = UserClassesText(std::wstring(argv[1]) + L"\\CLSID");
    if (classId.empty()) {
        std::printf("not registered for the user\n");
        return 1;
    }
    const std::wstring server = UserClassesText(L"CLSID\\" + classId + L"\\InprocServer32");
    const std::wstring libraryId = UserClassesText(L"CLSID\\" + classId + L"\\TypeLib");
    const std::wstring version = UserClassesText(L"CLSID\\" + classId + L"\\Version");
    const std::wstring typeLibrary = UserClassesText(L"TypeLib\\" + libraryId + L"\\" + version + L"\\0\\" +
                                                     (sizeof(void*) == 8 ? L"win64" : L"win32"));
    if (server.empty() || typeLibrary.empty()) return Fail("the registration is incomplete");

    CoInitialize(nullptr);
    const int status = Check(server, classId, typeLibrary);
    CoUninitialize();
    if (status == 0) std::printf("created from the user's registration\n");
    return status;
}
