// Listing a key's names: 10,000 sub-keys and 10,000 values, read by the platform calls Orbex
// makes, by Orbex through its vtable and through IDispatch, by WMI's StdRegProv and by reg.exe.
#include "Bench.h"

#include <wbemcli.h>

#include "Orbex_h.h"

#include <cstdio>
#include <memory>

namespace bench {
namespace {

constexpr long Count = 10000;
constexpr char Base[] = "Software\\OrbexBench\\Listing";

// One listed key: its path in both widths, and its readers, each opened once.
struct Listed {
    std::string path;
    std::wstring widePath;
    HKEY floorKey = nullptr;
    Ref<_RegistryKey> orbexKey;
    Ref<IWbemServices> wmi;
    Ref<IWbemClassObject> wmiIn;
    ~Listed() { if (floorKey) RegCloseKey(floorKey); }
};

std::wstring Wide(const std::string& s) { return std::wstring(s.begin(), s.end()); }

void CheckCount(long count, const char* who) {
    if (count != Count) Fail(std::string(who) + ": listed " + std::to_string(count) + " names");
}

// The key with its 10,000 entries (values or empty sub-keys), made through the platform.
void Populate(const std::string& path, bool values) {
    HKEY key = nullptr;
    Check(RegCreateKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                          nullptr) == ERROR_SUCCESS, "creating " + path);
    char name[32];
    for (long i = 0; i < Count && key; ++i) {
        LONG result;
        if (values) {
            std::snprintf(name, sizeof name, "value%05ld", i);
            const std::string data = "data " + std::to_string(i);
            result = RegSetValueExA(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(data.c_str()),
                                    static_cast<DWORD>(data.size() + 1));
        } else {
            std::snprintf(name, sizeof name, "key%05ld", i);
            HKEY sub = nullptr;
            result = RegCreateKeyExA(key, name, 0, nullptr, 0, KEY_WRITE, nullptr, &sub, nullptr);
            if (sub) RegCloseKey(sub);
        }
        if (result != ERROR_SUCCESS) { RegCloseKey(key); Fail("populating " + path); }
    }
    RegCloseKey(key);
}

// The platform calls of GetSubKeyNames and GetValueNames, with the names collected as text.
std::vector<std::string> FloorNames(HKEY key, bool values) {
    DWORD subKeys = 0, longestKey = 0, count = 0, longestName = 0, longestData = 0;
    Check(RegQueryInfoKeyA(key, nullptr, nullptr, nullptr, &subKeys, &longestKey, nullptr, &count, &longestName,
                           &longestData, nullptr, nullptr) == ERROR_SUCCESS, "RegQueryInfoKeyA");
    if (!values) count = subKeys, longestName = longestKey;
    std::vector<std::string> names;
    names.reserve(count);
    std::string name(longestName + 1, '\0');
    std::vector<BYTE> data(longestData + 1);
    for (DWORD index = 0; index < count; ++index) {
        DWORD length = longestName + 1, type = 0, dataSize = longestData;
        FILETIME written;
        const LONG result = values
            ? RegEnumValueA(key, index, name.data(), &length, nullptr, &type, data.data(), &dataSize)
            : RegEnumKeyExA(key, index, name.data(), &length, nullptr, nullptr, nullptr, &written);
        if (result != ERROR_SUCCESS) Fail(values ? "RegEnumValueA" : "RegEnumKeyExA");
        names.emplace_back(name.data(), length);
    }
    return names;
}

Ref<_RegistryKey> OrbexKey(const std::wstring& path) {
    Ref<IDispatch> object(CreateByProgId(L"Orbex.RegLib"));
    Ref<_RegLib> lib;
    CheckHr(object->QueryInterface(IID__RegLib, reinterpret_cast<void**>(lib.put())), "QueryInterface _RegLib");
    Bstr none(L""), name(path.c_str());
    Ref<_RegistryKey> user, key;
    CheckHr(lib->get_CurrentUser(none.b, user.put()), "CurrentUser");
    CheckHr(user->OpenSubKey(name.b, VARIANT_FALSE, key.put()), "OpenSubKey");
    Check(key.get() != nullptr, "Orbex opens the listed key");
    return key;
}

// StdRegProv's in-parameters for `method` on the key, made once; only ExecMethod is timed.
void PrepareWmi(Listed& listed, const wchar_t* method) {
    Ref<IWbemLocator> locator;
    CheckHr(CoCreateInstance(CLSID_WbemLocator, nullptr, CLSCTX_INPROC_SERVER, IID_IWbemLocator,
                             reinterpret_cast<void**>(locator.put())), "WbemLocator");
    Bstr space(L"root\\default"), provider(L"StdRegProv");
    CheckHr(locator->ConnectServer(space.b, nullptr, nullptr, nullptr, 0, nullptr, nullptr, listed.wmi.put()),
            "ConnectServer");
    Ref<IWbemClassObject> type, signature;
    CheckHr(listed.wmi->GetObject(provider.b, 0, nullptr, type.put(), nullptr), "GetObject StdRegProv");
    CheckHr(type->GetMethod(method, 0, signature.put(), nullptr), "GetMethod");
    CheckHr(signature->SpawnInstance(0, listed.wmiIn.put()), "SpawnInstance");
    Variant root, subKey;
    V_VT(&root) = VT_I4;
    V_I4(&root) = static_cast<LONG>(0x80000001u);  // HKEY_CURRENT_USER
    V_VT(&subKey) = VT_BSTR;
    V_BSTR(&subKey) = SysAllocString(listed.widePath.c_str());
    CheckHr(listed.wmiIn->Put(L"hDefKey", 0, &root, 0), "Put hDefKey");
    CheckHr(listed.wmiIn->Put(L"sSubKeyName", 0, &subKey, 0), "Put sSubKeyName");
}

Case ListingCase(const std::string& caseName, const std::string& leaf, bool values) {
    auto listed = std::make_shared<Listed>();
    listed->path = std::string(Base) + "\\" + leaf;
    listed->widePath = Wide(listed->path);
    Populate(listed->path, values);
    Check(RegOpenKeyExA(HKEY_CURRENT_USER, listed->path.c_str(), 0, KEY_READ, &listed->floorKey) == ERROR_SUCCESS,
          "opening " + listed->path);
    listed->orbexKey = OrbexKey(listed->widePath);
    const wchar_t* member = values ? L"GetValueNames" : L"GetSubKeyNames";
    const DISPID id = DispatchId(listed->orbexKey.get(), member);
    const wchar_t* wmiMethod = values ? L"EnumValues" : L"EnumKey";
    PrepareWmi(*listed, wmiMethod);

    Case c{caseName, {}};
    c.contenders.push_back({values ? "floor: RegEnumValueA" : "floor: RegEnumKeyExA", [listed, values] {
        CheckCount(static_cast<long>(FloorNames(listed->floorKey, values).size()), "floor");
    }});
    c.contenders.push_back({"Orbex vtable", [listed, values] {
        SAFEARRAY* names = nullptr;
        CheckHr(values ? listed->orbexKey->GetValueNames(&names) : listed->orbexKey->GetSubKeyNames(&names),
                "Orbex vtable");
        const long count = ArrayCount(names);
        SafeArrayDestroy(names);
        CheckCount(count, "Orbex vtable");
    }});
    c.contenders.push_back({"Orbex IDispatch", [listed, id] {
        DISPPARAMS none{nullptr, nullptr, 0, 0};
        Variant result;
        CheckHr(listed->orbexKey->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &none, &result,
                                         nullptr, nullptr), "Orbex IDispatch");
        Check(V_VT(&result) == (VT_ARRAY | VT_BSTR), "Orbex IDispatch: a string array");
        CheckCount(ArrayCount(V_ARRAY(&result)), "Orbex IDispatch");
    }});
    c.contenders.push_back({"WMI StdRegProv", [listed, wmiMethod] {
        Bstr provider(L"StdRegProv"), method(wmiMethod);
        Ref<IWbemClassObject> out;
        CheckHr(listed->wmi->ExecMethod(provider.b, method.b, 0, nullptr, listed->wmiIn.get(), out.put(), nullptr),
                "ExecMethod");
        Variant names;
        CheckHr(out->Get(L"sNames", 0, &names, nullptr, nullptr), "Get sNames");
        Check(V_VT(&names) == (VT_ARRAY | VT_BSTR), "WMI: a string array");
        CheckCount(ArrayCount(V_ARRAY(&names)), "WMI StdRegProv");
    }});
    const std::string query = "reg.exe query HKCU\\" + listed->path;
    c.contenders.push_back({"reg query", [query] { Check(RunProcess(query) == 0, query); }});
    return c;
}

}  // namespace

void AddRegistryListingCases(Suite& suite) {
    ClaimRegistryBranch(suite, Base);
    suite.cases.push_back(ListingCase("GetSubKeyNames, 10,000 sub-keys", "SubKeys", false));
    suite.cases.push_back(ListingCase("GetValueNames, 10,000 values", "Values", true));
}

}  // namespace bench
