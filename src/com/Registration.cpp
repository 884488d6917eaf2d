#include "Registration.h"

#include "Catalogue.h"
#include "ComResources.h"
#include "Module.h"
#include "TypeLibrary.h"

#include <olectl.h>

#include <string>

namespace orbex::com {
namespace {

constexpr LCID kOwnLocale = 0x409;  // the locale inside the type library

struct KeyClose {
    void operator()(HKEY key) const { RegCloseKey(key); }
};
using UniqueKey = std::unique_ptr<std::remove_pointer_t<HKEY>, KeyClose>;

std::wstring GuidText(const GUID& guid) {
    wchar_t text[40] = {};
    StringFromGUID2(guid, text, 40);
    return text;
}

std::wstring ProgId(const ClassEntry& entry) { return std::wstring(Library().name) + L"." + entry.name; }

// Creates `path` below `root` and sets one named value (nullptr: the default value).
LSTATUS SetText(HKEY root, const std::wstring& path, const wchar_t* name, const std::wstring& value) {
    HKEY raw = nullptr;
    LSTATUS status = RegCreateKeyExW(root, path.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &raw, nullptr);
    if (status != ERROR_SUCCESS) return status;
    UniqueKey key(raw);
    return RegSetValueExW(key.get(), name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                          static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
}

LSTATUS RegisterClass(HKEY root, const ClassEntry& entry, const std::wstring& modulePath) {
    const std::wstring progId = ProgId(entry);
    const std::wstring clsidKey = L"CLSID\\" + GuidText(entry.classId);
    const LibraryEntry& library = Library();
    const std::wstring version = std::to_wstring(library.majorVersion) + L"." + std::to_wstring(library.minorVersion);
    const struct {
        std::wstring path;
        const wchar_t* name;
        std::wstring value;
    } values[] = {
        {progId, nullptr, entry.name},
        {progId + L"\\CLSID", nullptr, GuidText(entry.classId)},
        {clsidKey, nullptr, progId},
        {clsidKey + L"\\InprocServer32", nullptr, modulePath},
        {clsidKey + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
        {clsidKey + L"\\ProgID", nullptr, progId},
        {clsidKey + L"\\TypeLib", nullptr, GuidText(library.libraryId)},
        {clsidKey + L"\\Version", nullptr, version},
        {clsidKey + L"\\Programmable", nullptr, L""},
    };
    for (const auto& value : values) {
        const LSTATUS status = SetText(root, value.path, value.name, value.value);
        if (status != ERROR_SUCCESS) return status;
    }
    return ERROR_SUCCESS;
}

void UnregisterClass(HKEY root, const ClassEntry& entry) {
    RegDeleteTreeW(root, ProgId(entry).c_str());
    RegDeleteTreeW(root, (L"CLSID\\" + GuidText(entry.classId)).c_str());
}

const wchar_t* PlatformKey() { return sizeof(void*) == 8 ? L"win64" : L"win32"; }

// The type library's own locale is 0x409, under which RegisterTypeLib enters it; the
// registration table names locale 0, which is where clients asking for neutral look.
std::wstring NeutralLocaleKey() {
    const LibraryEntry& library = Library();
    return L"TypeLib\\" + GuidText(library.libraryId) + L"\\" + std::to_wstring(library.majorVersion) + L"." +
           std::to_wstring(library.minorVersion) + L"\\" + std::to_wstring(library.locale) + L"\\" + PlatformKey();
}

}  // namespace

HRESULT RegisterServer() {
    const std::wstring modulePath = ModulePath();
    for (const ClassEntry& entry : Classes()) {
        if (!entry.create) continue;
        const LSTATUS status = RegisterClass(HKEY_CLASSES_ROOT, entry, modulePath);
        if (status != ERROR_SUCCESS) {
            UnregisterServer();
            return HRESULT_FROM_WIN32(status);
        }
    }
    ITypeLib* library = TypeLibrary();
    if (!library) {
        UnregisterServer();
        return SELFREG_E_TYPELIB;
    }
    HRESULT hr = RegisterTypeLib(library, const_cast<OLECHAR*>(modulePath.c_str()), nullptr);
    if (SUCCEEDED(hr) && SetText(HKEY_CLASSES_ROOT, NeutralLocaleKey(), nullptr, modulePath) != ERROR_SUCCESS)
        hr = E_FAIL;
    if (FAILED(hr)) UnregisterServer();
    return FAILED(hr) ? SELFREG_E_TYPELIB : S_OK;
}

HRESULT UnregisterServer() {
    for (const ClassEntry& entry : Classes())
        if (entry.create) UnregisterClass(HKEY_CLASSES_ROOT, entry);
    // The neutral entry first, so that UnRegisterTypeLib finds no other locale left and removes
    // the library's keys whole.
    const std::wstring neutral = NeutralLocaleKey();
    RegDeleteKeyW(HKEY_CLASSES_ROOT, neutral.c_str());
    RegDeleteKeyW(HKEY_CLASSES_ROOT, neutral.substr(0, neutral.rfind(L'\\')).c_str());
    const LibraryEntry& library = Library();
    const SYSKIND kind = sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32;
    UnRegisterTypeLib(library.libraryId, library.majorVersion, library.minorVersion, kOwnLocale, kind);
    return S_OK;
}

}  // namespace orbex::com
