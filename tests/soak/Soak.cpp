// The soak: drives the registered Orbex.dll as a client does, a warm-up round and then the
// measured one, and checks that the process's handle count and private memory come back to
// where they stood after the warm-up. One argument scales the counts: the number of objects created of each class (the keys
// opened are a tenth of it). See docs/lifetime.md for the bounds and the figures.
#include <windows.h>
#include <oleauto.h>

#include "ComOwners.h"
#include "Orbex_h.h"
#include "ProcessFigures.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using orbex::client::Ref;
using orbex::client::Variant;

// Private memory may grow by this much over a whole run: the heap keeps some of what it was
// given in its free lists, and Wine's type-library marshaler and OLE caches settle after a
// few thousand calls. A leak of one small block per object or per call exceeds it many times.
constexpr SIZE_T kMemoryBound = 128 * 1024;

void Fail(const std::string& what) { throw std::runtime_error(what); }

void Check(HRESULT hr, const char* what) {
    if (FAILED(hr)) {
        char code[16];
        std::snprintf(code, sizeof code, "0x%08lX", static_cast<unsigned long>(hr));
        Fail(std::string(what) + " failed with " + code);
    }
}

struct Bstr {
    BSTR text = nullptr;
    Bstr() = default;
    explicit Bstr(const std::wstring& value) : text(SysAllocStringLen(value.data(), static_cast<UINT>(value.size()))) {}
    Bstr(const Bstr&) = delete;
    Bstr& operator=(const Bstr&) = delete;
    ~Bstr() { SysFreeString(text); }
    BSTR* put() { SysFreeString(text); text = nullptr; return &text; }
    operator BSTR() const { return text; }
};


struct Array {
    SAFEARRAY* array = nullptr;
    Array() = default;
    Array(const Array&) = delete;
    Array& operator=(const Array&) = delete;
    ~Array() { if (array) SafeArrayDestroy(array); }
    SAFEARRAY** put() { if (array) SafeArrayDestroy(array); array = nullptr; return &array; }
};

VARIANT Missing() {
    VARIANT v;
    V_VT(&v) = VT_ERROR;
    V_ERROR(&v) = DISP_E_PARAMNOTFOUND;
    return v;
}

// A late-bound call by name, as a script makes it; arguments in the caller's order.
HRESULT Call(IDispatch* object, const wchar_t* name, WORD flags, std::vector<VARIANT> arguments, VARIANT* result,
             EXCEPINFO* exception) {
    DISPID id = 0;
    LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
    const HRESULT hr = object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(hr)) return hr;
    std::vector<VARIANT> reversed(arguments.rbegin(), arguments.rend());
    DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    UINT argumentError = 0;
    return object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, result, exception, &argumentError);
}

template <class Interface>
void Create(REFCLSID clsid, REFIID iid, Ref<Interface>& object) {
    Check(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, iid, reinterpret_cast<void**>(object.put())),
          "CoCreateInstance");
}

struct Class {
    const wchar_t* progId;
    const CLSID* clsid;
    const IID* iid;
};

const Class kClasses[] = {
    {L"Orbex.RegLib", &CLSID_RegLib, &IID__RegLib},
    {L"Orbex.INILib", &CLSID_INILib, &IID__INILib},
    {L"Orbex.FileLib", &CLSID_FileLib, &IID__FileLib},
    {L"Orbex.FileInfo", &CLSID_FileInfo, &IID__FileInfo},
    {L"Orbex.DiskInfo", &CLSID_DiskInfo, &IID__DiskInfo},
    {L"Orbex.SystemLib", &CLSID_SystemLib, &IID__SystemLib},
    {L"Orbex.OSInfo", &CLSID_OSInfo, &IID__OSInfo},
    {L"Orbex.PowerInfo", &CLSID_PowerInfo, &IID__PowerInfo},
    {L"Orbex.MemoryInfo", &CLSID_MemoryInfo, &IID__MemoryInfo},
    {L"Orbex.ScreenInfo", &CLSID_ScreenInfo, &IID__ScreenInfo},
};

// Every creatable class `count` times, by CLSID for its own interface and by ProgID for
// IDispatch in turn; and `count` RegistryKey objects from RegLib's roots.
void CreateAndRelease(int count) {
    for (const Class& type : kClasses) {
        CLSID byProgId;
        Check(CLSIDFromProgID(type.progId, &byProgId), "CLSIDFromProgID");
        for (int i = 0; i < count; ++i) {
            Ref<IUnknown> object;
            if (i % 2) Create(byProgId, IID_IDispatch, object);
            else Create(*type.clsid, *type.iid, object);
        }
    }
    Ref<_RegLib> reg;
    Create(CLSID_RegLib, IID__RegLib, reg);
    Bstr local;
    for (int i = 0; i < count; ++i) {
        Ref<_RegistryKey> root;
        switch (i % 4) {
        case 0: Check(reg->get_CurrentUser(local, root.put()), "RegLib.CurrentUser"); break;
        case 1: Check(reg->get_LocalMachine(local, root.put()), "RegLib.LocalMachine"); break;
        case 2: Check(reg->get_ClassesRoot(local, root.put()), "RegLib.ClassesRoot"); break;
        default: Check(reg->get_Users(local, root.put()), "RegLib.Users"); break;
        }
    }
}

// Whether the module may be unloaded: no object and no lock alive.
HRESULT ModuleCanUnload() {
    using CanUnload = HRESULT(STDAPICALLTYPE*)();
    HMODULE module = GetModuleHandleW(L"Orbex.dll");
    auto canUnload = module ? reinterpret_cast<CanUnload>(reinterpret_cast<void*>(GetProcAddress(module, "DllCanUnloadNow")))
                            : nullptr;
    return canUnload ? canUnload() : E_FAIL;
}

// `count` times what a long-running host does between scripts: an object created and called
// late-bound (which loads the type library), released, and unused libraries freed at once.
void FreeAndCreateAgain(int count) {
    for (int i = 0; i < count; ++i) {
        Ref<IDispatch> system;
        Create(CLSID_SystemLib, IID_IDispatch, system);
        Variant name;
        EXCEPINFO exception{};
        Check(Call(system.p, L"ComputerName", DISPATCH_PROPERTYGET, {}, name.put(), &exception), "Invoke ComputerName");
        system.put();
        if (ModuleCanUnload() != S_OK) Fail("an object outlived its last reference");
        CoFreeUnusedLibrariesEx(0, 0);
    }
}

// `count` threads, each an apartment of its own that creates objects, has one raise an error
// and ends: what a thread leaves behind in the module must go with it.
DWORD WINAPI ApartmentThread(void*) {
    CoInitialize(nullptr);
    {
        Ref<_RegLib> reg;
        Ref<_RegistryKey> root, refused;
        if (SUCCEEDED(CoCreateInstance(CLSID_RegLib, nullptr, CLSCTX_INPROC_SERVER, IID__RegLib,
                                       reinterpret_cast<void**>(reg.put()))) &&
            SUCCEEDED(reg->get_CurrentUser(Bstr(), root.put())))
            root->CreateSubKey(Bstr(std::wstring(300, L'x')), refused.put());
    }
    CoUninitialize();
    return 0;
}

void ThreadsComeAndGo(int count) {
    for (int i = 0; i < count; ++i) {
        HANDLE thread = CreateThread(nullptr, 0, ApartmentThread, nullptr, 0, nullptr);
        if (!thread) Fail("CreateThread");
        WaitForSingleObject(thread, INFINITE);
        CloseHandle(thread);
    }
}

// The soak's own places: a registry key under HKCU\Software, a folder with an INI file.
struct Places {
    std::wstring keyPath = L"Software\\OrbexSoak";
    std::wstring folder, iniFile, dllPath, machine;
};

// `count` keys opened and closed: created, opened again read-only and writeable, closed
// explicitly or by the last release.
void OpenAndCloseKeys(_RegistryKey* base, int count) {
    for (int i = 0; i < count; ++i) {
        const Bstr name(L"key" + std::to_wstring(i % 64));
        Ref<_RegistryKey> created, opened;
        Check(base->CreateSubKey(name, created.put()), "RegistryKey.CreateSubKey");
        Check(base->OpenSubKey(name, i % 2 ? VARIANT_TRUE : VARIANT_FALSE, opened.put()), "RegistryKey.OpenSubKey");
        Check(created->CloseKey(), "RegistryKey.CloseKey");
        if (i % 3 == 0) Check(opened->CloseKey(), "RegistryKey.CloseKey");
    }
}

void RegistryWork(const Places& places, _RegistryKey* base) {
    Ref<_RegistryKey> key;
    Check(base->CreateSubKey(Bstr(L"values"), key.put()), "RegistryKey.CreateSubKey");

    Variant text, number, bytes, lines;
    V_VT(&text) = VT_BSTR, V_BSTR(&text) = SysAllocString(L"%SystemRoot%\\soak");
    V_VT(&number) = VT_I4, V_I4(&number) = 123456;
    SAFEARRAYBOUND sixteen{16, 0}, three{3, 0};
    V_VT(&bytes) = VT_ARRAY | VT_UI1, V_ARRAY(&bytes) = SafeArrayCreate(VT_UI1, 1, &sixteen);
    V_VT(&lines) = VT_ARRAY | VT_BSTR, V_ARRAY(&lines) = SafeArrayCreate(VT_BSTR, 1, &three);
    for (LONG i = 0; i < 3; ++i) {
        Bstr line(L"line " + std::to_wstring(i));
        Check(SafeArrayPutElement(V_ARRAY(&lines), &i, line.text), "SafeArrayPutElement");
    }
    const struct {
        const wchar_t* name;
        const VARIANT* value;
        ::vqRegValueType type;
    } values[] = {
        {L"string", &text, vqString},     {L"expanded", &text, vqExpandedString}, {L"binary", &bytes, vqBinary},
        {L"dword", &number, vqDWORD},     {L"lines", &lines, vqMultiString},      {L"qword", &number, vqQWORD},
    };
    for (const auto& value : values) {
        const Bstr name(value.name);
        Check(key->SetValue(name, *value.value, value.type), "RegistryKey.SetValue");
        Variant read;
        Check(key->GetValue(name, Missing(), VARIANT_TRUE, read.put()), "RegistryKey.GetValue");
        LONG type = 0;
        Check(key->GetValueEx(name, &type, Missing(), VARIANT_FALSE, read.put()), "RegistryKey.GetValueEx");
        if (type != value.type) Fail("RegistryKey.GetValueEx gave another type");
    }
    Array names;
    Check(key->GetValueNames(names.put()), "RegistryKey.GetValueNames");
    Check(base->GetSubKeyNames(names.put()), "RegistryKey.GetSubKeyNames");
    LONG count = 0;
    Check(key->get_ValueCount(&count), "RegistryKey.ValueCount");
    Check(base->get_SubKeyCount(&count), "RegistryKey.SubKeyCount");
    Bstr text2;
    Check(key->get_Name(text2.put()), "RegistryKey.Name");
    Check(key->RenameValue(Bstr(L"string"), Bstr(L"renamed")), "RegistryKey.RenameValue");
    Check(key->DeleteValue(Bstr(L"renamed"), VARIANT_TRUE), "RegistryKey.DeleteValue");

    // Copies: a key copied beside itself, the copy renamed, its values copied into another key.
    // A name with a leading backslash counts from the root.
    const std::wstring sibling = L"\\" + places.keyPath + L"\\";
    Ref<_RegistryKey> copy, renamed, other;
    Check(key->CopySubKey(Bstr(sibling + L"copy"), copy.put()), "RegistryKey.CopySubKey");
    Check(copy->RenameSubKey(Bstr(sibling + L"renamed"), renamed.put()), "RegistryKey.RenameSubKey");
    Check(base->CreateSubKey(Bstr(L"other"), other.put()), "RegistryKey.CreateSubKey");
    Check(key->CopyValues(&other.p), "RegistryKey.CopyValues");
    Check(key->CopyValue(Bstr(L"dword"), &other.p), "RegistryKey.CopyValue");
    Ref<_RegistryKey> same;
    Check(key->CopySubKeyEx(&other.p, same.put()), "RegistryKey.CopySubKeyEx");
    Check(base->DeleteSubKeyTree(Bstr(L"renamed"), VARIANT_FALSE), "RegistryKey.DeleteSubKeyTree");
    Check(base->DeleteSubKeyTree(Bstr(L"other"), VARIANT_FALSE), "RegistryKey.DeleteSubKeyTree");

    // Through IDispatch, the way a script reads and writes.
    Variant result;
    EXCEPINFO exception{};
    Bstr valueName(L"dispatch");
    VARIANT name;
    V_VT(&name) = VT_BSTR, V_BSTR(&name) = valueName;
    Check(Call(key.p, L"SetValue", DISPATCH_METHOD, {name, text}, nullptr, &exception), "Invoke SetValue");
    Check(Call(key.p, L"GetValue", DISPATCH_METHOD, {name}, result.put(), &exception), "Invoke GetValue");
    Check(Call(key.p, L"GetSubKeyNames", DISPATCH_METHOD, {}, result.put(), &exception), "Invoke GetSubKeyNames");
    Check(Call(key.p, L"Name", DISPATCH_PROPERTYGET, {}, result.put(), &exception), "Invoke Name");
}

// Failures on purpose: a raised RegistryKey error through IDispatch with its EXCEPINFO, the
// same through the vtable with its error info, a call on a closed key, and refused calls.
// Keys reached through a machine name: a root named with the machine, a sub-key opened from it
// through a connection, a remote base key; and a machine that does not answer.
void RemoteWork(const Places& places, _RegistryKey* base) {
    Ref<_RegLib> reg;
    Create(CLSID_RegLib, IID__RegLib, reg);
    const Bstr machine(places.machine);
    Ref<_RegistryKey> root, key, remote;
    Check(reg->get_CurrentUser(machine, root.put()), "RegLib.CurrentUser on a machine");
    Check(root->OpenSubKey(Bstr(places.keyPath), VARIANT_FALSE, key.put()), "RegistryKey.OpenSubKey on a machine");
    Check(base->OpenRemoteBaseKey(vqCurrentUser, machine, remote.put()), "RegistryKey.OpenRemoteBaseKey");
    if (SUCCEEDED(base->OpenRemoteBaseKey(vqCurrentUser, Bstr(L"no-such-machine"), remote.put())))
        Fail("OpenRemoteBaseKey reached a machine that does not exist");
}

void ErrorWork(_RegistryKey* base) {
    const std::wstring tooLong(300, L'x');
    Bstr longName(tooLong);
    VARIANT name;
    V_VT(&name) = VT_BSTR, V_BSTR(&name) = longName;
    Variant result;
    EXCEPINFO exception{};
    if (Call(base, L"CreateSubKey", DISPATCH_METHOD, {name}, result.put(), &exception) != DISP_E_EXCEPTION)
        Fail("CreateSubKey with a long name did not raise");
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);

    Ref<_RegistryKey> key;
    if (SUCCEEDED(base->CreateSubKey(longName, key.put()))) Fail("CreateSubKey with a long name succeeded");
    Ref<IErrorInfo> info;
    if (GetErrorInfo(0, info.put()) != S_OK) Fail("no error info after a raised error");
    Bstr description;
    Check(info->GetDescription(description.put()), "IErrorInfo.GetDescription");

    Check(base->CreateSubKey(Bstr(L"closed"), key.put()), "RegistryKey.CreateSubKey");
    Check(key->CloseKey(), "RegistryKey.CloseKey");
    Ref<_RegistryKey> renamed;
    if (SUCCEEDED(key->RenameSubKey(Bstr(L"renamed"), renamed.put()))) Fail("a closed key was renamed");
    GetErrorInfo(0, info.put());

    // Refused before the member runs: an unknown dispatch id, a text where a number belongs.
    DISPPARAMS none{};
    exception = EXCEPINFO{};
    if (base->Invoke(0x7fff, IID_NULL, 0, DISPATCH_METHOD, &none, result.put(), &exception, nullptr) !=
        DISP_E_MEMBERNOTFOUND)
        Fail("an unknown dispatch id was not refused");
    Bstr notNumber(L"not a number");
    VARIANT wrong;
    V_VT(&wrong) = VT_BSTR, V_BSTR(&wrong) = notNumber;
    Variant missing;
    const HRESULT hr = Call(base, L"SetValue", DISPATCH_METHOD, {name, missing, wrong}, nullptr, &exception);
    if (hr != DISP_E_TYPEMISMATCH) Fail("a text for ValueType was not refused");
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
}

void IniWork(const Places& places) {
    Ref<_INILib> ini;
    Create(CLSID_INILib, IID__INILib, ini);
    const Bstr file(places.iniFile), section(L"soak"), other(L"other"), key(L"name"), empty;
    Variant value;
    V_VT(&value) = VT_BSTR, V_BSTR(&value) = SysAllocString(L"value");
    Check(ini->WriteValue(section, key, value, file), "INILib.WriteValue");
    Variant number;
    V_VT(&number) = VT_I4, V_I4(&number) = 42;
    Check(ini->WriteValue(section, Bstr(L"number"), number, file), "INILib.WriteValue");
    Bstr defaultText, text;
    Check(ini->GetStringValue(section, key, defaultText.put(), file, text.put()), "INILib.GetStringValue");
    LONG defaultNumber = 0, read = 0;
    Check(ini->GetNumericValue(section, Bstr(L"number"), &defaultNumber, file, &read), "INILib.GetNumericValue");
    if (read != 42) Fail("INILib.GetNumericValue read another number");

    SAFEARRAYBOUND two{2, 0};
    Array pairs;
    pairs.array = SafeArrayCreate(VT_BSTR, 1, &two);
    for (LONG i = 0; i < 2; ++i) {
        Bstr line(L"k" + std::to_wstring(i) + L"=v");
        Check(SafeArrayPutElement(pairs.array, &i, line.text), "SafeArrayPutElement");
    }
    Check(ini->WriteSection(other, &pairs.array, file), "INILib.WriteSection");
    Array names;
    Check(ini->GetSectionNames(file, names.put()), "INILib.GetSectionNames");
    Check(ini->GetSectionKeys(section, file, names.put()), "INILib.GetSectionKeys");
    Check(ini->GetSection(other, file, names.put()), "INILib.GetSection");
    Check(ini->DeleteKey(section, key, file), "INILib.DeleteKey");
    Check(ini->DeleteSection(other, file), "INILib.DeleteSection");
    Check(ini->put_Filename(file), "INILib.Filename");
    LONG bufferSize = 4096;
    Check(ini->put_BufferSize(&bufferSize), "INILib.BufferSize");
    Check(ini->get_Filename(text.put()), "INILib.Filename");
}

void FileWork(const Places& places) {
    Ref<_FileLib> files;
    Create(CLSID_FileLib, IID__FileLib, files);
    const Bstr folder(places.folder), dll(places.dllPath);
    VARIANT_BOOL yes = VARIANT_FALSE;
    Check(files->FolderExists(folder, &yes), "FileLib.FolderExists");
    Check(files->FileExists(Bstr(places.iniFile), &yes), "FileLib.FileExists");
    Bstr text;
    Check(files->ParseFilename(dll, text.put()), "FileLib.ParseFilename");
    Check(files->ParseFilenamePath(dll, text.put()), "FileLib.ParseFilenamePath");
    CY size{};
    Check(files->GetFolderSize(folder, VARIANT_TRUE, &size), "FileLib.GetFolderSize");
    Check(files->FormatSize(size, 2, text.put()), "FileLib.FormatSize");
    Check(files->GetSpecialFolder(vqSFTemp, VARIANT_FALSE, text.put()), "FileLib.GetSpecialFolder");
    Array drives;
    Check(files->get_DriveList(drives.put()), "FileLib.DriveList");

    Ref<_FileInfo> info;
    Check(files->get_FileInfo(dll, info.put()), "FileLib.FileInfo");
    Check(info->get_Size(&size), "FileInfo.Size");
    Check(info->get_Version(text.put()), "FileInfo.Version");
    Check(info->get_CompanyName(text.put()), "FileInfo.CompanyName");
    DATE date = 0;
    Check(info->get_LastWriteDate(&date), "FileInfo.LastWriteDate");
    Check(info->get_AttributeReadOnly(&yes), "FileInfo.AttributeReadOnly");
    Check(info->put_Filename(Bstr(places.iniFile)), "FileInfo.Filename");
    Check(info->get_Size(&size), "FileInfo.Size");

    Ref<_DiskInfo> disk;
    Check(files->get_DiskInfo(Bstr(places.folder.substr(0, 3)), disk.put()), "FileLib.DiskInfo");
    Check(disk->get_FileSystem(text.put()), "DiskInfo.FileSystem");
    Check(disk->get_TotalBytes(&size), "DiskInfo.TotalBytes");
    Check(disk->get_SerialNumberHex(text.put()), "DiskInfo.SerialNumberHex");
    Bstr root(places.folder);
    Check(disk->put_RootName(&root.text), "DiskInfo.RootName");
    Check(disk->get_FileSystem(text.put()), "DiskInfo.FileSystem");
}

void SystemWork() {
    Ref<_SystemLib> system;
    Create(CLSID_SystemLib, IID__SystemLib, system);
    Bstr text;
    Check(system->get_ComputerName(text.put()), "SystemLib.ComputerName");
    Check(system->get_UserName(text.put()), "SystemLib.UserName");
    Check(system->GetGUID(text.put()), "SystemLib.GetGUID");
    VARIANT_BOOL yes = VARIANT_FALSE;
    Check(system->get_IsShutdownAllowed(&yes), "SystemLib.IsShutdownAllowed");
    Ref<_OSInfo> os;
    Check(system->get_OSInfo(os.put()), "SystemLib.OSInfo");
    Check(os->get_VersionName(text.put()), "OSInfo.VersionName");
    Check(os->get_ServicePack(text.put()), "OSInfo.ServicePack");
    Ref<_MemoryInfo> memory;
    Check(system->get_MemoryInfo(memory.put()), "SystemLib.MemoryInfo");
    CY amount{};
    Check(memory->get_TotalPhysical(&amount), "MemoryInfo.TotalPhysical");
    Ref<_PowerInfo> power;
    Check(system->get_PowerInfo(power.put()), "SystemLib.PowerInfo");
    Check(power->get_BatteryStatusName(text.put()), "PowerInfo.BatteryStatusName");
    Ref<_ScreenInfo> screen;
    Check(system->get_ScreenInfo(screen.put()), "SystemLib.ScreenInfo");
    short pixels = 0;
    Check(screen->get_HorizontalResolution(&pixels), "ScreenInfo.HorizontalResolution");
    Variant object, result;
    EXCEPINFO exception{};
    Check(Call(system.p, L"OSInfo", DISPATCH_PROPERTYGET, {}, object.put(), &exception), "Invoke OSInfo");
    Check(Call(V_DISPATCH(&object), L"VersionName", DISPATCH_PROPERTYGET, {}, result.put(), &exception),
          "Invoke VersionName");
}

void Round(const Places& places, int objects) {
    CreateAndRelease(objects);
    FreeAndCreateAgain(objects / 100);
    ThreadsComeAndGo(objects / 100);
    Ref<_RegLib> reg;
    Create(CLSID_RegLib, IID__RegLib, reg);
    Ref<_RegistryKey> user, base;
    Check(reg->get_CurrentUser(Bstr(), user.put()), "RegLib.CurrentUser");
    Check(user->CreateSubKey(Bstr(places.keyPath), base.put()), "RegistryKey.CreateSubKey");
    OpenAndCloseKeys(base.p, objects / 10);
    for (int i = 0; i < objects / 10; ++i) {
        RegistryWork(places, base.p);
        RemoteWork(places, base.p);
        ErrorWork(base.p);
        IniWork(places);
        FileWork(places);
        SystemWork();
    }
}

void RemovePlaces(const Places& places) {
    RegDeleteTreeW(HKEY_CURRENT_USER, places.keyPath.c_str());
    DeleteFileW(places.iniFile.c_str());
    RemoveDirectoryW(places.folder.c_str());
}

}  // namespace

int main(int argc, char** argv) {
    const int objects = argc > 1 ? std::atoi(argv[1]) : 100000;
    if (objects < 100) {
        std::fprintf(stderr, "usage: soak [objects of each class, at least 100; keys opened: a tenth]\n");
        return 2;
    }
    Places places;
    wchar_t temp[MAX_PATH];
    GetTempPathW(MAX_PATH, temp);
    places.folder = std::wstring(temp) + L"OrbexSoak";
    places.iniFile = places.folder + L"\\soak.ini";
    places.dllPath = ORBEX_DLL_PATH;
    for (wchar_t& c : places.dllPath) if (c == L'/') c = L'\\';
    wchar_t computer[MAX_COMPUTERNAME_LENGTH + 1];
    DWORD length = MAX_COMPUTERNAME_LENGTH + 1;
    GetComputerNameW(computer, &length);
    places.machine.assign(computer, length);
    CreateDirectoryW(places.folder.c_str(), nullptr);

    CoInitialize(nullptr);
    int status = 0;
    try {
        // The warm-up loads the DLL, its type library and the platform's caches.
        Round(places, 100);
        const orbex::soak::ProcessFigures before = orbex::soak::MeasureProcess();
        const auto start = std::chrono::steady_clock::now();
        Round(places, objects);
        const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        const orbex::soak::ProcessFigures after = orbex::soak::MeasureProcess();
        const long long grown = static_cast<long long>(after.privateBytes) - static_cast<long long>(before.privateBytes);
        std::printf("soak: %d objects of each class, %d keys: handles %lu -> %lu, private bytes %llu -> %llu "
                    "(%+lld), %.1f s\n",
                    objects, objects / 10, before.handles, after.handles,
                    static_cast<unsigned long long>(before.privateBytes),
                    static_cast<unsigned long long>(after.privateBytes), grown, seconds);
        if (after.handles != before.handles) Fail("the handle count changed");
        if (grown > static_cast<long long>(kMemoryBound)) Fail("private memory grew beyond the bound");
    } catch (const std::exception& error) {
        std::printf("SOAK FAILED: %s\n", error.what());
        status = 1;
    }
    RemovePlaces(places);
    CoUninitialize();
    return status;
}
