// Orbex used without registration. This program's embedded application manifest depends on the
// Orbex.sxs assembly; it runs from a folder that holds Orbex.dll and Orbex.sxs.manifest, in a
// Wine prefix where Orbex was never registered. The type library, read from the DLL beside the
// program without registering it, names what the assembly must make known, so the checks follow
// the contract rather than a list of their own. Before and after the tests the registry must
// hold no trace of Orbex.
#include <windows.h>
#include <oleauto.h>

#include "ComOwners.h"
#include "Orbex_h.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

using orbex::client::Ref;
using orbex::client::Variant;

struct Bstr {
    BSTR p = nullptr;
    Bstr() = default;
    explicit Bstr(const wchar_t* text) : p(SysAllocString(text)) {}
    Bstr(const Bstr&) = delete;
    Bstr& operator=(const Bstr&) = delete;
    ~Bstr() { SysFreeString(p); }
    std::wstring text() const { return p ? std::wstring(p, SysStringLen(p)) : std::wstring(); }
};

std::wstring GuidText(const GUID& guid) {
    wchar_t text[40];
    StringFromGUID2(guid, text, 40);
    return text;
}

// One class or interface of the type library.
struct Entry {
    std::wstring name;
    GUID guid;
    TYPEKIND kind;
    bool creatable;
    GUID defaultInterface;  // classes only
};

struct TypeLibrary {
    GUID libid{};
    std::vector<Entry> entries;
};

std::wstring ProgramFolder() {
    wchar_t path[MAX_PATH];
    const DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring folder(path, length);
    return folder.substr(0, folder.rfind(L'\\') + 1);
}

GUID DefaultInterfaceOf(ITypeInfo* coclass) {
    HREFTYPE reference = 0;
    Ref<ITypeInfo> implemented;
    TYPEATTR* attributes = nullptr;
    GUID guid = GUID_NULL;
    if (SUCCEEDED(coclass->GetRefTypeOfImplType(0, &reference)) &&
        SUCCEEDED(coclass->GetRefTypeInfo(reference, implemented.put())) &&
        SUCCEEDED(implemented->GetTypeAttr(&attributes))) {
        guid = attributes->guid;
        implemented->ReleaseTypeAttr(attributes);
    }
    return guid;
}

// The classes and interfaces of Orbex.dll's own type library; empty when it cannot be read.
TypeLibrary ReadTypeLibrary() {
    TypeLibrary result;
    Ref<ITypeLib> library;
    if (FAILED(LoadTypeLibEx((ProgramFolder() + L"Orbex.dll").c_str(), REGKIND_NONE, library.put()))) return result;
    TLIBATTR* libraryAttributes = nullptr;
    if (FAILED(library->GetLibAttr(&libraryAttributes))) return result;
    result.libid = libraryAttributes->guid;
    library->ReleaseTLibAttr(libraryAttributes);
    for (UINT index = 0; index < library->GetTypeInfoCount(); ++index) {
        Ref<ITypeInfo> info;
        TYPEATTR* attributes = nullptr;
        Bstr name;
        if (FAILED(library->GetTypeInfo(index, info.put())) || FAILED(info->GetTypeAttr(&attributes))) continue;
        library->GetDocumentation(index, &name.p, nullptr, nullptr, nullptr);
        const TYPEKIND kind = attributes->typekind;
        if (kind == TKIND_COCLASS || kind == TKIND_DISPATCH || kind == TKIND_INTERFACE)
            result.entries.push_back({name.text(), attributes->guid, kind,
                                      (attributes->wTypeFlags & TYPEFLAG_FCANCREATE) != 0,
                                      kind == TKIND_COCLASS ? DefaultInterfaceOf(info.get()) : GUID_NULL});
        info->ReleaseTypeAttr(attributes);
    }
    return result;
}

std::vector<Entry> Classes(const TypeLibrary& library) {
    std::vector<Entry> classes;
    for (const Entry& entry : library.entries)
        if (entry.kind == TKIND_COCLASS) classes.push_back(entry);
    return classes;
}

// The keys under HKEY_CLASSES_ROOT that registering Orbex would make and that exist now.
std::vector<std::wstring> RegistryTraces(const TypeLibrary& library) {
    std::vector<std::wstring> keys{L"TypeLib\\" + GuidText(library.libid)};
    for (const Entry& entry : library.entries) {
        if (entry.kind == TKIND_COCLASS) {
            keys.push_back(L"CLSID\\" + GuidText(entry.guid));
            keys.push_back(L"Orbex." + entry.name);
        } else {
            keys.push_back(L"Interface\\" + GuidText(entry.guid));
        }
    }
    std::vector<std::wstring> traces;
    for (const std::wstring& key : keys) {
        HKEY handle = nullptr;
        if (RegOpenKeyExW(HKEY_CLASSES_ROOT, key.c_str(), 0, KEY_READ, &handle) == ERROR_SUCCESS) {
            RegCloseKey(handle);
            traces.push_back(key);
        }
    }
    return traces;
}

const TypeLibrary& Contract() {
    static const TypeLibrary library = ReadTypeLibrary();
    return library;
}

// A ProgID gives the class identifier that the activation context keeps for it, which need not be
// the CLSID itself (Wine gives an alias of its own); what counts is that it creates the class,
// told apart from the others by its default interface.
TEST(RegistrationFree, EachClassIsCreatedByProgIdAndClsidExactlyWhenTheTypeLibrarySaysSo) {
    const std::vector<Entry> classes = Classes(Contract());
    ASSERT_FALSE(classes.empty()) << "Orbex.dll's type library was not read";
    for (const Entry& entry : classes) {
        SCOPED_TRACE(entry.name);
        CLSID named = GUID_NULL;
        const HRESULT found = CLSIDFromProgID((L"Orbex." + entry.name).c_str(), &named);
        Ref<IUnknown> byClsid;
        Ref<IUnknown> byProgId;
        const HRESULT created = CoCreateInstance(entry.guid, nullptr, CLSCTX_INPROC_SERVER, entry.defaultInterface,
                                                 byClsid.putVoid());
        if (entry.creatable) {
            EXPECT_EQ(created, S_OK);
            EXPECT_NE(byClsid.get(), nullptr);
            ASSERT_EQ(found, S_OK);
            EXPECT_EQ(CoCreateInstance(named, nullptr, CLSCTX_INPROC_SERVER, entry.defaultInterface,
                                       byProgId.putVoid()), S_OK);
            EXPECT_NE(byProgId.get(), nullptr);
        } else {
            EXPECT_EQ(found, CO_E_CLASSSTRING);
            EXPECT_EQ(created, REGDB_E_CLASSNOTREG);
        }
    }
}

TEST(RegistrationFree, TheVtableReachesTheMembers) {
    Ref<_RegLib> registry;
    ASSERT_EQ(CoCreateInstance(CLSID_RegLib, nullptr, CLSCTX_INPROC_SERVER, IID__RegLib, registry.putVoid()), S_OK);
    Bstr local(L"");
    Ref<_RegistryKey> key;
    ASSERT_EQ(registry->get_CurrentUser(local.p, key.put()), S_OK);
    Bstr name;
    EXPECT_EQ(key->get_Name(&name.p), S_OK);
    EXPECT_EQ(name.text().rfind(L"HKEY_CURRENT_USER", 0), 0u) << name.text();

    Ref<_FileLib> files;
    ASSERT_EQ(CoCreateInstance(CLSID_FileLib, nullptr, CLSCTX_INPROC_SERVER, IID__FileLib, files.putVoid()), S_OK);
    Bstr path(L"C:\\Dir\\File.txt");
    Bstr extension;
    EXPECT_EQ(files->ParseFilenameExt(path.p, &extension.p), S_OK);
    EXPECT_EQ(extension.text(), L"txt");
}

// Late binding as a script does it: the ProgID, then the member by name, with an omitted optional
// argument that Invoke fills from the type library's default.
TEST(RegistrationFree, IDispatchReachesTheMembersByName) {
    struct Row {
        const wchar_t* progId;
        const wchar_t* member;
        const wchar_t* argument;  // nullptr: none, the optional one omitted
        VARTYPE resultType;
        const wchar_t* text;      // the result's text, or the Name of the key it gives
    };
    for (const Row& row : {Row{L"Orbex.FileLib", L"ParseFilenamePath", L"C:\\Dir\\File.txt", VT_BSTR, L"C:\\Dir\\"},
                           Row{L"Orbex.FileLib", L"ParseFilename", L"C:\\Dir\\File.txt", VT_BSTR, L"File.txt"},
                           Row{L"Orbex.RegLib", L"LocalMachine", nullptr, VT_DISPATCH, L"HKEY_LOCAL_MACHINE"}}) {
        SCOPED_TRACE(std::wstring(row.progId) + L"." + row.member);
        CLSID clsid;
        Ref<IDispatch> object;
        ASSERT_EQ(CLSIDFromProgID(row.progId, &clsid), S_OK);
        ASSERT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, object.putVoid()), S_OK);
        DISPID id = DISPID_UNKNOWN;
        LPOLESTR names[] = {const_cast<LPOLESTR>(row.member)};
        ASSERT_EQ(object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id), S_OK);
        Variant argument;
        if (row.argument) {
            V_VT(&argument) = VT_BSTR;
            V_BSTR(&argument) = SysAllocString(row.argument);
        }
        DISPPARAMS parameters{row.argument ? &argument : nullptr, nullptr, row.argument ? 1u : 0u, 0};
        Variant result;
        ASSERT_EQ(object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                                 &parameters, &result, nullptr, nullptr), S_OK);
        ASSERT_EQ(V_VT(&result), row.resultType);
        if (row.resultType == VT_BSTR) {
            EXPECT_EQ(std::wstring(V_BSTR(&result)), row.text);
        } else {
            Ref<_RegistryKey> key;
            ASSERT_EQ(V_DISPATCH(&result)->QueryInterface(IID__RegistryKey, key.putVoid()), S_OK);
            Bstr name;
            EXPECT_EQ(key->get_Name(&name.p), S_OK);
            EXPECT_EQ(name.text().rfind(row.text, 0), 0u) << name.text();
        }
    }
}

// What VBA, VB6 and the Automation marshaler do: find the type library by its identifier.
TEST(RegistrationFree, TheTypeLibraryIsFoundByItsIdentifier) {
    Ref<ITypeLib> library;
    ASSERT_EQ(LoadRegTypeLib(LIBID_Orbex, 7, 0, LOCALE_NEUTRAL, library.put()), S_OK);
    Bstr name;
    EXPECT_EQ(library->GetDocumentation(-1, &name.p, nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(name.text(), L"Orbex");
    Bstr path;
    ASSERT_EQ(QueryPathOfRegTypeLib(LIBID_Orbex, 7, 0, LOCALE_NEUTRAL, &path.p), S_OK);
    EXPECT_EQ(path.text(), ProgramFolder() + L"Orbex.dll");
}

// An apartment-threaded object called from a thread of the multithreaded apartment: the call
// goes through a proxy that the Automation marshaler builds from the type library.
struct CrossApartmentCall {
    IStream* stream = nullptr;
    HRESULT unmarshaled = E_FAIL;
    HRESULT called = E_FAIL;
    std::wstring name;

    static DWORD WINAPI Run(void* context) {
        auto& call = *static_cast<CrossApartmentCall*>(context);
        CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        {
            Ref<_RegLib> proxy;
            call.unmarshaled = CoGetInterfaceAndReleaseStream(call.stream, IID__RegLib, proxy.putVoid());
            if (SUCCEEDED(call.unmarshaled)) {
                Bstr local(L"");
                Ref<_RegistryKey> key;
                Bstr name;
                call.called = proxy->get_Users(local.p, key.put());
                if (SUCCEEDED(call.called)) call.called = key->get_Name(&name.p);
                call.name = name.text();
            }
        }
        CoUninitialize();
        return 0;
    }
};

TEST(RegistrationFree, AnObjectIsCalledFromAnotherApartment) {
    Ref<_RegLib> registry;
    ASSERT_EQ(CoCreateInstance(CLSID_RegLib, nullptr, CLSCTX_INPROC_SERVER, IID__RegLib, registry.putVoid()), S_OK);
    static CrossApartmentCall call;  // outlives a thread that never ends
    ASSERT_EQ(CoMarshalInterThreadInterfaceInStream(IID__RegLib, registry.get(), &call.stream), S_OK);
    HANDLE thread = CreateThread(nullptr, 0, &CrossApartmentCall::Run, &call, 0, nullptr);
    ASSERT_NE(thread, nullptr);
    // The object's apartment answers the proxy's calls through its message queue.
    while (MsgWaitForMultipleObjects(1, &thread, FALSE, 10000, QS_ALLINPUT) == WAIT_OBJECT_0 + 1) {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
    }
    EXPECT_EQ(WaitForSingleObject(thread, 0), WAIT_OBJECT_0) << "the other apartment's call did not end";
    CloseHandle(thread);
    EXPECT_EQ(call.unmarshaled, S_OK);
    EXPECT_EQ(call.called, S_OK);
    EXPECT_EQ(call.name.rfind(L"HKEY_USERS", 0), 0u) << call.name;

    // Wine 8.0's Automation marshaler loads the type library by the bare file name that the
    // activation context names, and a type library loaded by a name without a path is registered:
    // its TypeLib and Interface keys appear, never a class's. They are removed again here, so that
    // the registry ends as it began.
    const std::vector<std::wstring> traces = RegistryTraces(Contract());
    for (const std::wstring& key : traces)
        EXPECT_TRUE(key.rfind(L"TypeLib\\", 0) == 0 || key.rfind(L"Interface\\", 0) == 0) << key;
    if (!traces.empty()) {
        std::printf("note: marshaling registered the type library (%u keys); unregistering it\n",
                    static_cast<unsigned>(traces.size()));
        EXPECT_EQ(UnRegisterTypeLib(LIBID_Orbex, 7, 0, 0x409, sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32), S_OK);
    }
}

int ReportTraces(const char* when, const std::vector<std::wstring>& traces) {
    for (const std::wstring& key : traces) std::printf("FAILED: %s the tests HKEY_CLASSES_ROOT\\%ls exists\n", when, key.c_str());
    return traces.empty() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    CoInitialize(nullptr);
    int result = ReportTraces("before", RegistryTraces(Contract()));
    if (result == 0) result = RUN_ALL_TESTS();
    result |= ReportTraces("after", RegistryTraces(Contract()));
    CoUninitialize();
    return result;
}
