// How long objects and the module live: objects created on one single-threaded apartment and
// used from another through the type-library marshaler, created from a multithreaded apartment,
// and the module asked to unload between uses. The outcome of each call made on another thread
// is gathered there and checked on the test's own thread.
#include "ClientSupport.h"
#include "ProcessFigures.h"

#include <functional>
#include <string>

namespace orbex::client {
namespace {

constexpr HRESULT kInvalidArgument = static_cast<HRESULT>(0x80040067);
constexpr const wchar_t* kPath = L"Software\\OrbexApartmentTest";

struct Name {
    BSTR text;
    explicit Name(const std::wstring& value) : text(SysAllocStringLen(value.data(), static_cast<UINT>(value.size()))) {}
    ~Name() { SysFreeString(text); }
    operator BSTR() const { return text; }
};

VARIANT Missing() {
    VARIANT v;
    V_VT(&v) = VT_ERROR;
    V_ERROR(&v) = DISP_E_PARAMNOTFOUND;
    return v;
}

struct ThreadJob {
    DWORD apartment;
    std::function<void()> body;
};

DWORD WINAPI RunJob(void* parameter) {
    ThreadJob& job = *static_cast<ThreadJob*>(parameter);
    CoInitializeEx(nullptr, job.apartment);
    job.body();
    CoUninitialize();
    return 0;
}

// Runs `body` on a new thread in the given apartment; the calling thread pumps its messages
// meanwhile, as a single-threaded apartment that serves calls must.
void RunOnThread(DWORD apartment, std::function<void()> body) {
    ThreadJob job{apartment, std::move(body)};
    HANDLE thread = CreateThread(nullptr, 0, RunJob, &job, 0, nullptr);
    ASSERT_NE(thread, nullptr);
    while (MsgWaitForMultipleObjects(1, &thread, FALSE, INFINITE, QS_ALLINPUT) == WAIT_OBJECT_0 + 1) {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
    }
    CloseHandle(thread);
}

// What the using thread saw.
struct Seen {
    HRESULT unmarshal = E_FAIL, root = E_FAIL, create = E_FAIL, write = E_FAIL, copy = E_FAIL;
    std::wstring rootName;
    LONG lower = 0, upper = -1;
    VARTYPE readType = VT_EMPTY;
    LONG readValue = 0;
    HRESULT dispatchNames = E_FAIL;
    VARTYPE dispatchNamesType = VT_EMPTY;
    HRESULT raisedThroughVtable = S_OK, raisedThroughDispatch = S_OK;
    std::wstring exceptionSource, exceptionDescription;
    SCODE exceptionCode = S_OK;
};

// The members every apartment test drives on a RegLib it was handed.
void Drive(_RegLib* reg, Seen& seen) {
    Ref<_RegistryKey> root, key, other;
    seen.root = reg->get_CurrentUser(Name(L""), root.put());
    if (FAILED(seen.root)) return;
    BSTR name = nullptr;
    root->get_Name(&name);
    seen.rootName = Text(name);
    SysFreeString(name);

    seen.create = root->CreateSubKey(Name(kPath), key.put());
    if (FAILED(seen.create)) return;
    VARIANT number = Long(7);
    seen.write = key->SetValue(Name(L"seven"), number, vqDWORD);
    SAFEARRAY* names = nullptr;
    if (SUCCEEDED(key->GetValueNames(&names))) {
        SafeArrayGetLBound(names, 1, &seen.lower);
        SafeArrayGetUBound(names, 1, &seen.upper);
        SafeArrayDestroy(names);
    }
    Variant read;
    if (SUCCEEDED(key->GetValue(Name(L"seven"), Missing(), VARIANT_TRUE, &read))) {
        seen.readType = V_VT(&read);
        seen.readValue = V_VT(&read) == VT_I4 ? V_I4(&read) : 0;
    }
    // A key passed back in is recognised as one of ours in the object's own apartment.
    if (SUCCEEDED(key->CreateSubKey(Name(L"other"), other.put()))) seen.copy = key->CopyValues(&other.p);

    const std::wstring tooLong(300, L'x');
    Ref<_RegistryKey> refused;
    // Wine 8.0's channel does not carry the error object back to another apartment, so the
    // vtable caller gets the number only; a late-bound caller gets all three in EXCEPINFO.
    seen.raisedThroughVtable = key->CreateSubKey(Name(tooLong), refused.put());

    Ref<IDispatch> late;
    if (FAILED(key->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(late.put())))) return;
    Variant list;
    seen.dispatchNames = Call(late.get(), L"GetValueNames", DISPATCH_METHOD, {}, &list);
    seen.dispatchNamesType = V_VT(&list);
    Variant ignored, longName;
    V_VT(&longName) = VT_BSTR, V_BSTR(&longName) = SysAllocString(tooLong.c_str());
    EXCEPINFO exception{};
    seen.raisedThroughDispatch = Call(late.get(), L"CreateSubKey", DISPATCH_METHOD, {longName}, &ignored, &exception);
    seen.exceptionCode = exception.scode;
    seen.exceptionSource = Text(exception.bstrSource);
    seen.exceptionDescription = Text(exception.bstrDescription);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);

    root->DeleteSubKeyTree(Name(kPath), VARIANT_FALSE);
}

void ExpectDriven(const Seen& seen) {
    EXPECT_EQ(seen.unmarshal, S_OK);
    EXPECT_EQ(seen.root, S_OK);
    EXPECT_EQ(seen.rootName, L"HKEY_CURRENT_USER\\");
    EXPECT_EQ(seen.create, S_OK);
    EXPECT_EQ(seen.write, S_OK);
    EXPECT_EQ(seen.lower, 0);
    EXPECT_EQ(seen.upper, 0);
    EXPECT_EQ(seen.readType, VT_I4);
    EXPECT_EQ(seen.readValue, 7);
    EXPECT_EQ(seen.copy, S_OK);
    EXPECT_EQ(seen.dispatchNames, S_OK);
    EXPECT_EQ(seen.dispatchNamesType, VT_ARRAY | VT_BSTR);
    EXPECT_EQ(seen.raisedThroughVtable, kInvalidArgument);
    EXPECT_EQ(seen.raisedThroughDispatch, DISP_E_EXCEPTION);
    EXPECT_EQ(seen.exceptionCode, kInvalidArgument);
    EXPECT_EQ(seen.exceptionSource, L"CreateSubKey");
    EXPECT_EQ(seen.exceptionDescription, L"The length of the specified subkey is greater than 255 characters.");
}

using CanUnload = HRESULT(STDAPICALLTYPE*)();

HRESULT ModuleCanUnload() {
    HMODULE module = GetModuleHandleW(L"Orbex.dll");
    if (!module) return E_FAIL;
    auto canUnload = reinterpret_cast<CanUnload>(reinterpret_cast<void*>(GetProcAddress(module, "DllCanUnloadNow")));
    return canUnload ? canUnload() : E_FAIL;
}

DWORD HandleCount() { return soak::MeasureProcess().handles; }

// One round: a RegLib made here, marshaled through a stream or the global interface table and
// used from another single-threaded apartment.
Seen CrossApartmentRound(bool throughGlobalTable) {
    Seen seen;
    Ref<_RegLib> reg;
    EXPECT_EQ(CoCreateInstance(CLSID_RegLib, nullptr, CLSCTX_INPROC_SERVER, IID__RegLib,
                               reinterpret_cast<void**>(reg.put())), S_OK);
    if (!reg.get()) return seen;
    Ref<IGlobalInterfaceTable> table;
    DWORD cookie = 0;
    IStream* stream = nullptr;
    if (throughGlobalTable) {
        CoCreateInstance(CLSID_StdGlobalInterfaceTable, nullptr, CLSCTX_INPROC_SERVER, IID_IGlobalInterfaceTable,
                         reinterpret_cast<void**>(table.put()));
        EXPECT_EQ(table->RegisterInterfaceInGlobal(reg.get(), IID__RegLib, &cookie), S_OK);
    } else {
        EXPECT_EQ(CoMarshalInterThreadInterfaceInStream(IID__RegLib, reg.get(), &stream), S_OK);
    }
    RunOnThread(COINIT_APARTMENTTHREADED, [&] {
        Ref<_RegLib> proxy;
        seen.unmarshal = throughGlobalTable
            ? table->GetInterfaceFromGlobal(cookie, IID__RegLib, reinterpret_cast<void**>(proxy.put()))
            : CoGetInterfaceAndReleaseStream(stream, IID__RegLib, reinterpret_cast<void**>(proxy.put()));
        if (SUCCEEDED(seen.unmarshal)) Drive(proxy.get(), seen);
    });
    if (throughGlobalTable) table->RevokeInterfaceFromGlobal(cookie);
    return seen;
}

// A host that frees unused libraries between uses: the module stays loaded, and a round of
// release, free and create again leaves no handle behind.
TEST(ModuleLifetime, FreeingUnusedLibrariesLeavesNothingBehind) {
    const auto round = [] {
        Ref<IDispatch> system = CreateByProgId(L"Orbex.SystemLib");
        ASSERT_NE(system.get(), nullptr);
        Variant name;
        ASSERT_EQ(Call(system.get(), L"ComputerName", DISPATCH_PROPERTYGET, {}, &name), S_OK);
        system.put();
        ASSERT_EQ(ModuleCanUnload(), S_OK);
        CoFreeUnusedLibrariesEx(0, 0);
    };
    round();
    const DWORD handles = HandleCount();
    for (int i = 0; i < 4; ++i) round();
    EXPECT_EQ(HandleCount(), handles);
    EXPECT_NE(GetModuleHandleW(L"Orbex.dll"), nullptr);
}

TEST(Apartments, AnObjectServesAnotherApartmentAndGoesWhenReleased) {
    for (bool throughGlobalTable : {false, true}) {
        SCOPED_TRACE(throughGlobalTable ? "global interface table" : "stream");
        CrossApartmentRound(throughGlobalTable);  // the first round sets up the marshaling machinery
        const DWORD handles = HandleCount();
        ExpectDriven(CrossApartmentRound(throughGlobalTable));
        EXPECT_EQ(ModuleCanUnload(), S_OK) << "an object or a lock outlived its last reference";
        EXPECT_EQ(HandleCount(), handles);
    }
}

// Runs in a process of its own (see CMakeLists.txt): Wine 8.0's host apartment keeps its
// reference to the class factory it hands to the multithreaded apartment, so afterwards the
// module never may unload in that process.
TEST(MultithreadedApartment, ClientGetsTheObjectThroughTheHostApartment) {
    Seen seen;
    RunOnThread(COINIT_MULTITHREADED, [&] {
        Ref<_RegLib> reg;
        seen.unmarshal = CoCreateInstance(CLSID_RegLib, nullptr, CLSCTX_INPROC_SERVER, IID__RegLib,
                                          reinterpret_cast<void**>(reg.put()));
        if (SUCCEEDED(seen.unmarshal)) Drive(reg.get(), seen);
    });
    ExpectDriven(seen);
}

}  // namespace
}  // namespace orbex::client
