#include "Registration.h"

#include "Catalogue.h"
#include "Module.h"

#include <olectl.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace orbex::com {
namespace {

struct KeyClose {
    void operator()(HKEY key) const { RegCloseKey(key); }
};
using UniqueKey = std::unique_ptr<std::remove_pointer_t<HKEY>, KeyClose>;

// The classes root of a scope. Machine-wide entries go to HKEY_LOCAL_MACHINE\Software\Classes
// rather than HKEY_CLASSES_ROOT: a write there lands under the current user when the key
// already exists there, which would tie a machine-wide registration to one user.
LSTATUS OpenClassesRoot(Scope scope, UniqueKey* root) {
    const HKEY base = scope == Scope::User ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
    HKEY raw = nullptr;
    const LSTATUS status = RegCreateKeyExW(base, L"Software\\Classes", 0, nullptr, 0, KEY_READ | KEY_WRITE,
                                           nullptr, &raw, nullptr);
    root->reset(raw);
    return status;
}

std::wstring GuidText(const GUID& guid) {
    wchar_t text[40] = {};
    StringFromGUID2(guid, text, 40);
    return text;
}

std::wstring ProgId(const ClassEntry& entry) { return std::wstring(Library().name) + L"." + entry.name; }

std::wstring VersionText() {
    const LibraryEntry& library = Library();
    return std::to_wstring(library.majorVersion) + L"." + std::to_wstring(library.minorVersion);
}

// One text value: its key below the classes root, its name (nullptr: the default value).
struct Value {
    std::wstring path;
    const wchar_t* name;
    std::wstring text;
};

LSTATUS SetTexts(HKEY root, const std::vector<Value>& values) {
    for (const Value& value : values) {
        HKEY raw = nullptr;
        LSTATUS status = RegCreateKeyExW(root, value.path.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &raw, nullptr);
        if (status != ERROR_SUCCESS) return status;
        UniqueKey key(raw);
        status = RegSetValueExW(key.get(), value.name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.text.c_str()),
                                static_cast<DWORD>((value.text.size() + 1) * sizeof(wchar_t)));
        if (status != ERROR_SUCCESS) return status;
    }
    return ERROR_SUCCESS;
}

LSTATUS RegisterClass(HKEY root, const ClassEntry& entry, const std::wstring& modulePath) {
    const std::wstring progId = ProgId(entry);
    const std::wstring clsidKey = L"CLSID\\" + GuidText(entry.classId);
    return SetTexts(root, {
                              {progId, nullptr, entry.name},
                              {progId + L"\\CLSID", nullptr, GuidText(entry.classId)},
                              {clsidKey, nullptr, progId},
                              {clsidKey + L"\\InprocServer32", nullptr, modulePath},
                              {clsidKey + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
                              {clsidKey + L"\\ProgID", nullptr, progId},
                              {clsidKey + L"\\TypeLib", nullptr, GuidText(Library().libraryId)},
                              {clsidKey + L"\\Version", nullptr, VersionText()},
                              {clsidKey + L"\\Programmable", nullptr, L""},
                          });
}

// The standard Automation marshaler, which serves every dual interface from the type library.
constexpr wchar_t kAutomationMarshaler[] = L"{00020424-0000-0000-C000-000000000046}";

std::wstring TypeLibKey() { return L"TypeLib\\" + GuidText(Library().libraryId) + L"\\" + VersionText(); }

// The module's own entry below the library's version key: locale and platform. The other
// bitness's build enters its platform beside it.
std::wstring PlatformEntry() {
    return std::to_wstring(Library().locale) + (sizeof(void*) == 8 ? L"\\win64" : L"\\win32");
}

// The entries RegisterTypeLib would make, written here so that they go exactly below `root`:
// Wine's type library functions write the interfaces of a 64-bit library into the machine's
// 32-bit view whatever the classes root, which would leak a per-user registration.
LSTATUS RegisterTypeLibrary(HKEY root, const std::wstring& modulePath) {
    const LibraryEntry& library = Library();
    const std::wstring libraryKey = TypeLibKey();
    const std::wstring libraryId = GuidText(library.libraryId);
    const std::wstring folder = modulePath.substr(0, modulePath.rfind(L'\\'));
    std::vector<Value> values{
        {libraryKey, nullptr, library.helpString},
        {libraryKey + L"\\" + PlatformEntry(), nullptr, modulePath},
        {libraryKey + L"\\FLAGS", nullptr, L"0"},
        {libraryKey + L"\\HELPDIR", nullptr, folder},
    };
    for (const ClassEntry& entry : Classes()) {
        const std::wstring interfaceKey = L"Interface\\" + GuidText(entry.interfaceId);
        values.push_back({interfaceKey, nullptr, std::wstring(L"_") + entry.name});
        values.push_back({interfaceKey + L"\\ProxyStubClsid", nullptr, kAutomationMarshaler});
        values.push_back({interfaceKey + L"\\ProxyStubClsid32", nullptr, kAutomationMarshaler});
        values.push_back({interfaceKey + L"\\TypeLib", nullptr, libraryId});
        values.push_back({interfaceKey + L"\\TypeLib", L"Version", VersionText()});
    }
    return SetTexts(root, values);
}

// Whether the library's version key holds a registration besides FLAGS and HELPDIR.
bool TypeLibraryStillRegistered(HKEY root) {
    HKEY raw = nullptr;
    if (RegOpenKeyExW(root, TypeLibKey().c_str(), 0, KEY_READ, &raw) != ERROR_SUCCESS) return false;
    UniqueKey key(raw);
    wchar_t name[256];
    for (DWORD index = 0;; ++index) {
        DWORD length = 256;
        if (RegEnumKeyExW(key.get(), index, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
            return false;
        if (CompareStringOrdinal(name, -1, L"FLAGS", -1, TRUE) != CSTR_EQUAL &&
            CompareStringOrdinal(name, -1, L"HELPDIR", -1, TRUE) != CSTR_EQUAL)
            return true;
    }
}

// On a 64-bit system the CLSID and Interface keys belong to one registry view, while the
// ProgIDs and the type library's key are shared by both: those go with the last bitness whose
// platform entry leaves the type library.
void Unregister(HKEY root) {
    for (const ClassEntry& entry : Classes()) {
        if (entry.create) RegDeleteTreeW(root, (L"CLSID\\" + GuidText(entry.classId)).c_str());
        RegDeleteTreeW(root, (L"Interface\\" + GuidText(entry.interfaceId)).c_str());
    }
    const std::wstring libraryKey = TypeLibKey();
    const std::wstring platform = libraryKey + L"\\" + PlatformEntry();
    RegDeleteKeyW(root, platform.c_str());
    RegDeleteKeyW(root, platform.substr(0, platform.rfind(L'\\')).c_str());  // the locale, when empty
    if (TypeLibraryStillRegistered(root)) return;
    RegDeleteTreeW(root, libraryKey.c_str());
    RegDeleteKeyW(root, libraryKey.substr(0, libraryKey.rfind(L'\\')).c_str());  // the library, when empty
    for (const ClassEntry& entry : Classes())
        if (entry.create) RegDeleteTreeW(root, ProgId(entry).c_str());
}

HRESULT Register(HKEY root) {
    const std::wstring modulePath = ModulePath();
    for (const ClassEntry& entry : Classes()) {
        if (!entry.create) continue;
        const LSTATUS status = RegisterClass(root, entry, modulePath);
        if (status != ERROR_SUCCESS) {
            Unregister(root);
            return HRESULT_FROM_WIN32(status);
        }
    }
    if (RegisterTypeLibrary(root, modulePath) != ERROR_SUCCESS) {
        Unregister(root);
        return SELFREG_E_TYPELIB;
    }
    return S_OK;
}

std::wstring_view Trimmed(std::wstring_view text) {
    const auto first = text.find_first_not_of(L" \t");
    if (first == std::wstring_view::npos) return {};
    return text.substr(first, text.find_last_not_of(L" \t") - first + 1);
}

bool SameText(std::wstring_view text, const wchar_t* word) {
    return CompareStringOrdinal(text.data(), static_cast<int>(text.size()), word, -1, TRUE) == CSTR_EQUAL;
}

}  // namespace

HRESULT RegisterServer(Scope scope) {
    try {
        UniqueKey root;
        const LSTATUS status = OpenClassesRoot(scope, &root);
        if (status != ERROR_SUCCESS) return HRESULT_FROM_WIN32(status);
        return Register(root.get());
    } catch (...) {
        return E_OUTOFMEMORY;  // the only thing that throws here is a string's allocation
    }
}

HRESULT UnregisterServer(Scope scope) {
    try {
        UniqueKey root;
        const LSTATUS status = OpenClassesRoot(scope, &root);
        if (status != ERROR_SUCCESS) return HRESULT_FROM_WIN32(status);
        Unregister(root.get());
        return S_OK;
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

bool ScopeOfCommandLine(const wchar_t* commandLine, Scope* scope) {
    const std::wstring_view text = Trimmed(commandLine ? commandLine : L"");
    if (text.empty() || SameText(text, L"machine")) {
        *scope = Scope::Machine;
        return true;
    }
    if (SameText(text, L"user")) {
        *scope = Scope::User;
        return true;
    }
    return false;
}

}  // namespace orbex::com
