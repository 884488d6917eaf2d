#include "Catalogue.h"

#include "com/Catalogue.h"

#include <algorithm>
#include <array>

namespace orbex::fuzz {
namespace {

struct Rule {
    const wchar_t* className;
    const wchar_t* member;  // nullptr: every member of the class
    const wchar_t* parameter;
    Confined confined;
};

// Parameters naming what a member writes, deletes or makes current; everything else is free.
constexpr std::array kConfined{
    Rule{L"FileLib", L"CurrentFolder", L"Folder", Confined::FilePath},
    Rule{L"FileLib", L"CreateFolder", nullptr, Confined::FilePath},
    Rule{L"FileLib", L"DeleteFolder", nullptr, Confined::FilePath},
    Rule{L"FileLib", L"FileInfo", nullptr, Confined::FilePath},
    Rule{L"FileLib", L"GetFolderSize", L"Folder", Confined::FilePath},
    Rule{L"FileInfo", L"Filename", nullptr, Confined::FilePath},
    Rule{L"INILib", nullptr, L"INIFile", Confined::IniPath},
    Rule{L"INILib", L"Filename", nullptr, Confined::IniPath},
    Rule{L"RegistryKey", L"CreateSubKey", nullptr, Confined::SubKey},
    Rule{L"RegistryKey", L"DeleteSubKey", L"Name", Confined::SubKey},
    Rule{L"RegistryKey", L"DeleteSubKeyTree", L"Name", Confined::SubKey},
    Rule{L"RegistryKey", L"RenameSubKey", nullptr, Confined::SubKey},
    Rule{L"RegistryKey", L"CopySubKey", nullptr, Confined::SubKey},
    Rule{L"RegistryKey", nullptr, L"Destination", Confined::Destination},
};

struct ReceiverRule {
    const wchar_t* className;
    const wchar_t* member;
    INVOKEKIND kind;
    Receiver receiver;
};

constexpr auto kAnyKind = static_cast<INVOKEKIND>(0);

// Members that change the receiver's key, file or INI file run only on the fuzzer's own.
constexpr std::array kReceivers{
    ReceiverRule{L"RegistryKey", L"CreateSubKey", kAnyKind, Receiver::OwnKey},
    ReceiverRule{L"RegistryKey", L"DeleteSubKey", kAnyKind, Receiver::OwnKey},
    ReceiverRule{L"RegistryKey", L"DeleteSubKeyTree", kAnyKind, Receiver::OwnKey},
    ReceiverRule{L"RegistryKey", L"DeleteValue", kAnyKind, Receiver::OwnKey},
    ReceiverRule{L"RegistryKey", L"SetValue", kAnyKind, Receiver::OwnKey},
    ReceiverRule{L"RegistryKey", L"CopySubKeyEx", kAnyKind, Receiver::OwnKey},
    ReceiverRule{L"RegistryKey", L"CopyValues", kAnyKind, Receiver::OwnKey},
    ReceiverRule{L"RegistryKey", L"CopyValue", kAnyKind, Receiver::OwnKey},
    ReceiverRule{L"RegistryKey", L"RenameValue", kAnyKind, Receiver::OwnKey},
    // A plain name makes a sibling, which for the fuzzer's key itself lies outside.
    ReceiverRule{L"RegistryKey", L"RenameSubKey", kAnyKind, Receiver::OwnKeyBelow},
    ReceiverRule{L"RegistryKey", L"CopySubKey", kAnyKind, Receiver::OwnKeyBelow},
    ReceiverRule{L"FileInfo", nullptr, INVOKE_PROPERTYPUT, Receiver::OwnFile},
    ReceiverRule{L"INILib", L"WriteValue", kAnyKind, Receiver::OwnIniFile},
    ReceiverRule{L"INILib", L"DeleteKey", kAnyKind, Receiver::OwnIniFile},
    ReceiverRule{L"INILib", L"WriteSection", kAnyKind, Receiver::OwnIniFile},
    ReceiverRule{L"INILib", L"DeleteSection", kAnyKind, Receiver::OwnIniFile},
};

bool Matches(const wchar_t* wanted, const std::wstring& actual) { return !wanted || actual == wanted; }

// The declared value type behind a type description (enumerations are Long, interfaces Object).
VARTYPE Resolve(ITypeInfo* owner, const TYPEDESC& desc, bool* byReference) {
    switch (desc.vt) {
    case VT_PTR:
        if (desc.lptdesc->vt == VT_USERDEFINED) {
            const VARTYPE inner = Resolve(owner, *desc.lptdesc, byReference);
            if (inner == VT_DISPATCH) return VT_DISPATCH;  // the pointer is the interface itself
            *byReference = true;
            return inner;
        }
        *byReference = true;
        return Resolve(owner, *desc.lptdesc, byReference);
    case VT_SAFEARRAY: {
        bool ignored = false;
        return static_cast<VARTYPE>(VT_ARRAY | Resolve(owner, *desc.lptdesc, &ignored));
    }
    case VT_USERDEFINED: {
        ITypeInfo* referenced = nullptr;
        VARTYPE type = VT_I4;
        if (SUCCEEDED(owner->GetRefTypeInfo(desc.hreftype, &referenced))) {
            TYPEATTR* attr = nullptr;
            if (SUCCEEDED(referenced->GetTypeAttr(&attr))) {
                if (attr->typekind == TKIND_INTERFACE || attr->typekind == TKIND_DISPATCH) type = VT_DISPATCH;
                referenced->ReleaseTypeAttr(attr);
            }
            referenced->Release();
        }
        return type;
    }
    default:
        return desc.vt;
    }
}

}  // namespace

std::vector<Member> MembersOf(IDispatch* object, const std::wstring& className) {
    std::vector<Member> members;
    ITypeInfo* dispatchSide = nullptr;
    ITypeInfo* info = nullptr;
    HREFTYPE reference = 0;
    if (FAILED(object->GetTypeInfo(0, 0, &dispatchSide))) return members;
    if (FAILED(dispatchSide->GetRefTypeOfImplType(-1, &reference)) ||
        FAILED(dispatchSide->GetRefTypeInfo(reference, &info))) {
        dispatchSide->Release();
        return members;
    }
    dispatchSide->Release();
    TYPEATTR* attr = nullptr;
    info->GetTypeAttr(&attr);
    for (UINT index = 0; index < attr->cFuncs; ++index) {
        FUNCDESC* func = nullptr;
        if (FAILED(info->GetFuncDesc(index, &func))) continue;
        Member member{className, L"", func->memid, func->invkind, {}, Receiver::Any};
        BSTR names[16] = {};
        UINT count = 0;
        info->GetNames(func->memid, names, 16, &count);
        member.name = names[0] ? names[0] : L"";
        for (SHORT p = 0; p < func->cParams; ++p) {
            const ELEMDESC& element = func->lprgelemdescParam[p];
            if (element.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) continue;
            Parameter parameter;
            parameter.type = Resolve(info, element.tdesc, &parameter.byReference);
            parameter.optional = (element.paramdesc.wParamFlags & PARAMFLAG_FOPT) != 0;
            // A put's value has no name of its own in the type info.
            if (static_cast<UINT>(p + 1) < count && names[p + 1]) parameter.name = names[p + 1];
            else parameter.name = member.name;
            for (const Rule& rule : kConfined)
                if (className == rule.className && Matches(rule.member, member.name) &&
                    Matches(rule.parameter, parameter.name))
                    parameter.confined = rule.confined;
            member.parameters.push_back(parameter);
        }
        for (UINT i = 0; i < count; ++i) SysFreeString(names[i]);
        for (const ReceiverRule& rule : kReceivers)
            if (className == rule.className && Matches(rule.member, member.name) &&
                (rule.kind == kAnyKind || rule.kind == member.kind))
                member.receiver = rule.receiver;
        members.push_back(std::move(member));
        info->ReleaseFuncDesc(func);
    }
    info->ReleaseTypeAttr(attr);
    info->Release();
    return members;
}

std::wstring ClassOf(IDispatch* object) {
    ITypeInfo* info = nullptr;
    if (!object || FAILED(object->GetTypeInfo(0, 0, &info))) return {};
    TYPEATTR* attr = nullptr;
    std::wstring name;
    if (SUCCEEDED(info->GetTypeAttr(&attr))) {
        for (const com::ClassEntry& entry : com::Classes())
            if (IsEqualIID(attr->guid, entry.interfaceId)) name = entry.name;
        info->ReleaseTypeAttr(attr);
    }
    info->Release();
    return name;
}

HRESULT CallByName(IDispatch* object, const wchar_t* name, WORD flags, std::vector<VARIANT> arguments,
                   VARIANT* result) {
    DISPID id = 0;
    LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
    HRESULT hr = object->GetIDsOfNames(IID_NULL, names, 1, 0, &id);
    if (FAILED(hr)) return hr;
    std::reverse(arguments.begin(), arguments.end());
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{arguments.data(), flags == DISPATCH_PROPERTYPUT ? &put : nullptr,
                          static_cast<UINT>(arguments.size()), flags == DISPATCH_PROPERTYPUT ? 1u : 0u};
    EXCEPINFO exception{};
    hr = object->Invoke(id, IID_NULL, 0, flags, &parameters, result, &exception, nullptr);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
    return hr;
}

std::wstring ReadText(IDispatch* object, const wchar_t* property) {
    VARIANT result;
    VariantInit(&result);
    std::wstring text;
    if (SUCCEEDED(CallByName(object, property, DISPATCH_PROPERTYGET, {}, &result)) && V_VT(&result) == VT_BSTR &&
        V_BSTR(&result))
        text.assign(V_BSTR(&result), SysStringLen(V_BSTR(&result)));
    VariantClear(&result);
    return text;
}

}  // namespace orbex::fuzz
