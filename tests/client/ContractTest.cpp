// The binary contract as a client meets it in the registered DLL and type library.
#include "ClientSupport.h"

#include <vector>

namespace orbex::client {
namespace {

struct ClassRow {
    const wchar_t* name;
    const wchar_t* classId;
    const wchar_t* interfaceId;
    const CLSID& generatedClassId;
    const IID& generatedInterfaceId;
    UINT members;
    bool creatable;
};

const ClassRow kClasses[] = {
    {L"DiskInfo", L"{57AE36C2-A5B6-4D55-B408-3C983B4D45D6}", L"{9FAFC5DA-F681-45D6-A0F7-FEC808DE20D3}", CLSID_DiskInfo, IID__DiskInfo, 20, true},
    {L"FileInfo", L"{ED3F8683-9DE7-47D4-9979-756CAE8BA182}", L"{2AE4DB0F-D6CF-4F84-8041-422F26CE318D}", CLSID_FileInfo, IID__FileInfo, 40, true},
    {L"FileLib", L"{02728153-EA8F-491C-BD35-578D1E21ACC2}", L"{E50CBCD2-B080-4285-9FBF-10FDE5320DA3}", CLSID_FileLib, IID__FileLib, 22, true},
    {L"INILib", L"{D02DE358-4E7C-4B1F-8629-FB226E47FF5E}", L"{6BC72012-1863-424A-9B56-58460946BB63}", CLSID_INILib, IID__INILib, 13, true},
    {L"MemoryInfo", L"{DE412D5B-A111-45AA-85BE-B8FF3FE9E778}", L"{096BC9F4-FD02-4A6E-82A3-2862B6E6E736}", CLSID_MemoryInfo, IID__MemoryInfo, 8, true},
    {L"OSInfo", L"{B29D3875-5AB9-4882-9EC5-CCFA44F1A33C}", L"{A93EC0AB-F1CC-4ABE-879E-653512856788}", CLSID_OSInfo, IID__OSInfo, 38, true},
    {L"PowerInfo", L"{69D798C5-C91F-4058-B110-6AB50AA21586}", L"{A102FF59-333F-41E3-B637-5F837312D9D1}", CLSID_PowerInfo, IID__PowerInfo, 7, true},
    {L"RegistryKey", L"{94276432-7099-4501-BE70-6767822FF4E0}", L"{AAF958D2-006A-4CB7-85AA-67C7B02908B3}", CLSID_RegistryKey, IID__RegistryKey, 27, false},
    {L"RegLib", L"{2ADD3132-F301-45C7-BF07-284A8283468E}", L"{337F16F0-8074-4BA4-93D2-202067AA0F37}", CLSID_RegLib, IID__RegLib, 7, true},
    {L"ScreenInfo", L"{9BC0F66E-13F3-45F6-8280-85585E293FD1}", L"{2BC9EB9D-9425-4CC4-B509-0083A04730C0}", CLSID_ScreenInfo, IID__ScreenInfo, 8, true},
    {L"SystemLib", L"{5741BE5A-CBE1-4DEB-8EC5-C291DD6B803A}", L"{7D34E56D-4DB0-401A-95F2-5DBD3745F974}", CLSID_SystemLib, IID__SystemLib, 18, true},
};

GUID Guid(const wchar_t* text) {
    GUID guid{};
    CLSIDFromString(const_cast<LPOLESTR>(text), &guid);
    return guid;
}

Ref<ITypeLib> RegisteredLibrary() {
    Ref<ITypeLib> library;
    LoadRegTypeLib(Guid(L"{F26542D0-6021-447E-9A82-DA859119052F}"), 7, 0, 0, library.put());
    return library;
}

// The vtable side of a dual interface: its own members only, in slot order.
Ref<ITypeInfo> InterfaceSide(ITypeLib* library, const IID& iid) {
    Ref<ITypeInfo> dispatchSide, interfaceSide;
    if (FAILED(library->GetTypeInfoOfGuid(iid, dispatchSide.put()))) return interfaceSide;
    HREFTYPE reference = 0;
    if (SUCCEEDED(dispatchSide->GetRefTypeOfImplType(-1, &reference)))
        dispatchSide->GetRefTypeInfo(reference, interfaceSide.put());
    return interfaceSide;
}

TEST(Contract, IdentifiersAreTheSpecifiedOnes) {
    for (const ClassRow& row : kClasses) {
        SCOPED_TRACE(testing::Message() << "class " << std::string(row.name, row.name + wcslen(row.name)));
        EXPECT_TRUE(IsEqualGUID(row.generatedClassId, Guid(row.classId)));
        EXPECT_TRUE(IsEqualGUID(row.generatedInterfaceId, Guid(row.interfaceId)));
    }
}

TEST(Contract, RegisteredTypeLibraryDescribesEveryClass) {
    Ref<ITypeLib> library = RegisteredLibrary();
    ASSERT_NE(library.get(), nullptr);
    TLIBATTR* attributes = nullptr;
    ASSERT_EQ(library->GetLibAttr(&attributes), S_OK);
    EXPECT_EQ(attributes->wMajorVerNum, 7);
    EXPECT_EQ(attributes->wMinorVerNum, 0);
    EXPECT_EQ(attributes->lcid, 0x409u);
    library->ReleaseTLibAttr(attributes);
    for (const ClassRow& row : kClasses) {
        SCOPED_TRACE(testing::Message() << "class " << std::string(row.name, row.name + wcslen(row.name)));
        Ref<ITypeInfo> coclass;
        ASSERT_EQ(library->GetTypeInfoOfGuid(row.generatedClassId, coclass.put()), S_OK);
        TYPEATTR* classAttr = nullptr;
        ASSERT_EQ(coclass->GetTypeAttr(&classAttr), S_OK);
        EXPECT_EQ(classAttr->cImplTypes, 1);
        EXPECT_EQ((classAttr->wTypeFlags & TYPEFLAG_FCANCREATE) != 0, row.creatable);
        coclass->ReleaseTypeAttr(classAttr);

        Ref<ITypeInfo> side = InterfaceSide(library.get(), row.generatedInterfaceId);
        ASSERT_NE(side.get(), nullptr);
        TYPEATTR* attr = nullptr;
        ASSERT_EQ(side->GetTypeAttr(&attr), S_OK);
        EXPECT_EQ(attr->cFuncs, row.members);
        const WORD flags = TYPEFLAG_FDUAL | TYPEFLAG_FHIDDEN | TYPEFLAG_FNONEXTENSIBLE | TYPEFLAG_FOLEAUTOMATION;
        EXPECT_EQ(attr->wTypeFlags & flags, flags);
        const UINT count = attr->cFuncs;
        side->ReleaseTypeAttr(attr);

        // Properties fall from 0x68030000 up, methods rise from 0x60030000; a property's read
        // and write share an id; no member is 0; slots follow on from IDispatch's seven.
        MEMBERID lastProperty = 0x6803FFFF, lastMethod = 0x60030000 - 1, previous = 0;
        for (UINT index = 0; index < count; ++index) {
            FUNCDESC* func = nullptr;
            ASSERT_EQ(side->GetFuncDesc(index, &func), S_OK);
            EXPECT_EQ(func->oVft, static_cast<SHORT>((7 + index) * sizeof(void*)));
            EXPECT_NE(func->memid, 0);
            if (func->invkind == INVOKE_FUNC) {
                EXPECT_GT(func->memid, lastMethod);
                EXPECT_LT(func->memid, 0x68030000);
                lastMethod = func->memid;
            } else if (func->memid != previous) {
                EXPECT_LT(func->memid, lastProperty);
                EXPECT_GE(func->memid, 0x68030000);
                lastProperty = func->memid;
            }
            previous = func->memid;
            side->ReleaseFuncDesc(func);
        }
    }
}

TEST(Contract, RegistryKeyMembersStandInInterfaceOrder) {
    const wchar_t* expected[] = {L"MachineName", L"ValueCount", L"SubKeyCount", L"Name", L"AutoFlush", L"AutoFlush",
                                 L"CloseKey", L"OpenSubKey", L"CreateSubKey", L"GetSubKeyNames", L"GetValueNames",
                                 L"Flush", L"SubKeyExists", L"DeleteSubKey", L"DeleteSubKeyTree", L"DeleteValue",
                                 L"HasDefaultValue", L"GetValue", L"GetValueEx", L"SetValue", L"OpenRemoteBaseKey",
                                 L"RenameSubKey", L"CopySubKey", L"CopySubKeyEx", L"CopyValues", L"CopyValue",
                                 L"RenameValue"};
    Ref<ITypeLib> library = RegisteredLibrary();
    ASSERT_NE(library.get(), nullptr);
    Ref<ITypeInfo> side = InterfaceSide(library.get(), IID__RegistryKey);
    ASSERT_NE(side.get(), nullptr);
    for (UINT index = 0; index < std::size(expected); ++index) {
        FUNCDESC* func = nullptr;
        ASSERT_EQ(side->GetFuncDesc(index, &func), S_OK);
        BSTR name = nullptr;
        side->GetDocumentation(func->memid, &name, nullptr, nullptr, nullptr);
        EXPECT_EQ(Text(name), expected[index]) << "slot " << index;
        if (index == 4) {
            EXPECT_EQ(func->invkind, INVOKE_PROPERTYPUT) << "AutoFlush's write comes first";
        }
        SysFreeString(name);
        side->ReleaseFuncDesc(func);
    }
}

TEST(Contract, TenClassesAreCreatableAndRegistryKeyIsNot) {
    for (const ClassRow& row : kClasses) {
        SCOPED_TRACE(testing::Message() << "class " << std::string(row.name, row.name + wcslen(row.name)));
        Ref<IUnknown> object;
        const HRESULT hr = CoCreateInstance(row.generatedClassId, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                                            reinterpret_cast<void**>(object.put()));
        EXPECT_EQ(SUCCEEDED(hr), row.creatable) << std::hex << hr;
        if (!row.creatable) continue;
        std::wstring progId = std::wstring(L"Orbex.") + row.name;
        Ref<IDispatch> byName = CreateByProgId(progId.c_str());
        EXPECT_NE(byName.get(), nullptr);
        Ref<IUnknown> typed;
        EXPECT_EQ(object->QueryInterface(row.generatedInterfaceId, reinterpret_cast<void**>(typed.put())), S_OK);
    }
}

// A script host asks for a member's id by name before every call, in whatever case the script
// spells it; argument names go with their member.
TEST(Contract, EveryMemberNameGivesItsIdInAnyCase) {
    for (const ClassRow& row : kClasses) {
        if (!row.creatable) continue;
        SCOPED_TRACE(testing::Message() << "class " << std::string(row.name, row.name + wcslen(row.name)));
        Ref<IDispatch> object = CreateByProgId((std::wstring(L"Orbex.") + row.name).c_str());
        ASSERT_NE(object.get(), nullptr);
        Ref<ITypeInfo> info;
        ASSERT_EQ(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.put()), S_OK);
        TYPEATTR* attr = nullptr;
        ASSERT_EQ(info->GetTypeAttr(&attr), S_OK);
        const UINT count = attr->cFuncs;
        info->ReleaseTypeAttr(attr);
        for (UINT index = 0; index < count; ++index) {
            FUNCDESC* func = nullptr;
            ASSERT_EQ(info->GetFuncDesc(index, &func), S_OK);
            BSTR names[2] = {};
            UINT found = 0;
            info->GetNames(func->memid, names, 2, &found);
            std::wstring lower(Text(names[0])), upper(lower);
            for (wchar_t& c : lower) c = towlower(c);
            for (wchar_t& c : upper) c = towupper(c);
            for (const std::wstring& spelling : {Text(names[0]), lower, upper}) {
                LPOLESTR name = const_cast<LPOLESTR>(spelling.c_str());
                DISPID id = 0;
                EXPECT_EQ(object->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id), S_OK);
                EXPECT_EQ(id, func->memid) << std::string(spelling.begin(), spelling.end());
            }
            std::wstring longer = Text(names[0]) + L"X";
            LPOLESTR longerName = longer.data();
            DISPID none = 0;
            EXPECT_EQ(object->GetIDsOfNames(IID_NULL, &longerName, 1, LOCALE_USER_DEFAULT, &none), DISP_E_UNKNOWNNAME);
            if (found == 2) {
                DISPID ids[2] = {}, expected[2] = {};
                EXPECT_EQ(object->GetIDsOfNames(IID_NULL, names, 2, LOCALE_USER_DEFAULT, ids),
                          DispGetIDsOfNames(info.get(), names, 2, expected));
                EXPECT_EQ(ids[0], expected[0]);
                EXPECT_EQ(ids[1], expected[1]);
            }
            for (BSTR name : names) SysFreeString(name);
            info->ReleaseFuncDesc(func);
        }
        LPOLESTR unknown[] = {const_cast<LPOLESTR>(L"NoSuchMember")};
        DISPID id = 0;
        EXPECT_EQ(object->GetIDsOfNames(IID_NULL, unknown, 1, LOCALE_USER_DEFAULT, &id), DISP_E_UNKNOWNNAME);
    }
}

TEST(Contract, ModuleMayUnloadOnceTheLastObjectIsReleased) {
    HMODULE module = LoadLibraryW(L"" ORBEX_DLL_PATH);
    ASSERT_NE(module, nullptr);
    auto canUnload = reinterpret_cast<HRESULT(WINAPI*)()>(
        reinterpret_cast<void*>(GetProcAddress(module, "DllCanUnloadNow")));
    auto getClassObject = reinterpret_cast<HRESULT(WINAPI*)(REFCLSID, REFIID, void**)>(
        reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject")));
    ASSERT_TRUE(canUnload && getClassObject);
    EXPECT_EQ(canUnload(), S_OK);
    {
        Ref<IClassFactory> factory;
        ASSERT_EQ(getClassObject(CLSID_RegLib, IID_IClassFactory, reinterpret_cast<void**>(factory.put())), S_OK);
        Ref<IDispatch> regLib;
        ASSERT_EQ(factory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(regLib.put())), S_OK);
        Ref<IDispatch> key;
        Variant result;
        ASSERT_EQ(Call(regLib.get(), L"CurrentUser", DISPATCH_PROPERTYGET, {}, &result), S_OK);
        EXPECT_EQ(canUnload(), S_FALSE);
        factory->LockServer(TRUE);
        EXPECT_EQ(canUnload(), S_FALSE);
        factory->LockServer(FALSE);
    }
    EXPECT_EQ(canUnload(), S_OK);
    Ref<IClassFactory> none;
    EXPECT_EQ(getClassObject(CLSID_RegistryKey, IID_IClassFactory, reinterpret_cast<void**>(none.put())),
              CLASS_E_CLASSNOTAVAILABLE);
    FreeLibrary(module);
}

}  // namespace
}  // namespace orbex::client
