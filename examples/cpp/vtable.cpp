// Orbex from C++ through the interfaces' function tables, with the header generated from the
// type library. Every argument is passed, the optional ones too: the defaults in the type
// library are for callers that go through IDispatch.
#include "OrbexClient.h"

int main() {
    Apartment com;
    if (FAILED(com.hr)) return 1;

    // Create by CLSID and ask for the class's interface.
    ComPtr<_RegLib> reg;
    HRESULT hr = CoCreateInstance(CLSID_RegLib, nullptr, CLSCTX_INPROC_SERVER, IID__RegLib, &reg);
    if (FAILED(hr)) {
        std::printf("Orbex.RegLib is not registered for this bitness: 0x%08lX\n", static_cast<unsigned long>(hr));
        return 1;
    }

    // Properties are get_ and put_ entries; a null BSTR is the empty text ("" for MachineName).
    ComPtr<_RegistryKey> user, settings;
    reg->get_CurrentUser(nullptr, &user);
    if (user) user->CreateSubKey(Bstr(L"Software\\OrbexExamples\\Cpp"), &settings);
    if (!settings) return 1;
    Bstr name;
    settings->get_Name(name.out());
    std::printf("Key: %ls\n", name.str().c_str());

    // Values go in as VARIANTs with a vqRegValueType; a Byte() is a SAFEARRAY of VT_UI1.
    settings->SetValue(Bstr(L"Greeting"), Variant(L"Hello"), vqString);
    settings->SetValue(Bstr(L"Count"), Variant(42L), vqDWORD);
    const unsigned char flags[] = {0x01, 0x02, 0xFF};
    SafeArray bytes;
    *bytes.out() = SafeArrayCreateVector(VT_UI1, 0, sizeof flags);
    void* data = nullptr;
    if (!bytes.get() || FAILED(SafeArrayAccessData(bytes.get(), &data))) return 1;
    std::memcpy(data, flags, sizeof flags);
    SafeArrayUnaccessData(bytes.get());
    Variant binary;
    V_VT(&binary) = VT_ARRAY | VT_UI1;
    V_ARRAY(&binary) = bytes.release();  // the Variant owns the array now
    settings->SetValue(Bstr(L"Flags"), binary, vqBinary);

    // GetValueEx reports the stored type; DefaultValue left out, ExpandVariables True.
    Variant value;
    LONG dataType = 0;
    settings->GetValueEx(Bstr(L"Flags"), &dataType, Missing(), VARIANT_TRUE, value.out());
    std::printf("Flags: type %ld,", dataType);
    if (V_VT(&value) == (VT_ARRAY | VT_UI1))
        for (unsigned char b : Bytes(V_ARRAY(&value))) std::printf(" %02X", b);
    std::printf("\n");
    settings->GetValue(Bstr(L"Count"), Missing(), VARIANT_TRUE, value.out());
    std::printf("Count: %ld\n", V_VT(&value) == VT_I4 ? V_I4(&value) : -1L);

    // String() results are SAFEARRAYs of BSTR that the caller owns.
    SafeArray names;
    settings->GetValueNames(names.out());
    std::printf("Value names:");
    for (const std::wstring& n : Strings(names.get())) std::printf(" %ls", n.c_str());
    std::printf("\n");
    settings->GetSubKeyNames(names.out());
    LONG lower = 0;
    SafeArrayGetLBound(names.get(), 1, &lower);
    std::printf("Sub-key names: %u (lower bound %ld)\n", static_cast<unsigned>(Strings(names.get()).size()), lower);

    // A failure is a failed HRESULT with an error object: Number, Source and Description.
    hr = user->DeleteSubKey(Bstr(L"Software\\OrbexExamples\\NoSuchKey"), VARIANT_TRUE);
    if (FAILED(hr)) PrintError("DeleteSubKey", hr, user.Get(), IID__RegistryKey);

    ComPtr<_INILib> ini;
    ComPtr<_FileLib> files;
    CoCreateInstance(CLSID_INILib, nullptr, CLSCTX_INPROC_SERVER, IID__INILib, &ini);
    CoCreateInstance(CLSID_FileLib, nullptr, CLSCTX_INPROC_SERVER, IID__FileLib, &files);
    if (!ini || !files) return 1;
    wchar_t temp[MAX_PATH];
    GetTempPathW(MAX_PATH, temp);
    const std::wstring path = std::wstring(temp) + L"OrbexExample.cpp.ini";
    ini->put_Filename(Bstr(path.c_str()));
    ini->WriteValue(Bstr(L"Window"), Bstr(L"Left"), Variant(-1L), nullptr);
    LONG fallback = 0, result = 0;  // Default is by reference
    hr = ini->GetNumericValue(Bstr(L"Window"), Bstr(L"Left"), &fallback, nullptr, &result);
    if (FAILED(hr)) PrintError("GetNumericValue", hr, ini.Get(), IID__INILib);
    DeleteFileW(path.c_str());

    hr = files->put_CurrentFolder(Bstr((path + L"\\No\\Such\\Folder").c_str()));
    if (FAILED(hr)) PrintError("CurrentFolder", hr, files.Get(), IID__FileLib);

    // Release the key before deleting it; ComPtr releases the rest at the end of main.
    settings.Reset();
    user->DeleteSubKeyTree(Bstr(L"Software\\OrbexExamples\\Cpp"), VARIANT_FALSE);
    ComPtr<_RegistryKey> examples;
    LONG left = -1;
    user->OpenSubKey(Bstr(L"Software\\OrbexExamples"), VARIANT_FALSE, &examples);
    if (examples) examples->get_SubKeyCount(&left);
    examples.Reset();
    if (left == 0) user->DeleteSubKey(Bstr(L"Software\\OrbexExamples"), VARIANT_FALSE);
    std::printf("Done.\n");
    return 0;
}
