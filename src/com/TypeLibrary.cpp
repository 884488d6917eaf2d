#include "TypeLibrary.h"

#include "Module.h"

#include <algorithm>
#include <array>
#include <new>

namespace orbex::com {
namespace {

std::atomic<ITypeLib*> gTypeLibrary{nullptr};
std::array<std::atomic<std::atomic<DispatchTable*>*>, 16> gCaches{};

// Publishes `fresh` into `slot` unless another thread got there first; returns the winner.
template <class T, class Drop>
T* publish(std::atomic<T*>& slot, T* fresh, Drop drop) {
    T* expected = nullptr;
    if (slot.compare_exchange_strong(expected, fresh)) return fresh;
    drop(fresh);
    return expected;
}

struct TypeAttr {
    ITypeInfo* info;
    TYPEATTR* attr = nullptr;
    explicit TypeAttr(ITypeInfo* i) : info(i) { info->GetTypeAttr(&attr); }
    ~TypeAttr() { if (attr) info->ReleaseTypeAttr(attr); }
};

struct FuncDesc {
    ITypeInfo* info;
    FUNCDESC* desc = nullptr;
    FuncDesc(ITypeInfo* i, UINT index) : info(i) { info->GetFuncDesc(index, &desc); }
    ~FuncDesc() { if (desc) info->ReleaseFuncDesc(desc); }
};

// The value type behind a type description, with the pointer levels that are not part of it.
struct Resolved {
    VARTYPE type = VT_EMPTY;
    IID interfaceId{};
    int indirections = 0;
};

Resolved resolve(ITypeInfo* owner, const TYPEDESC& desc) {
    switch (desc.vt) {
    case VT_PTR: {
        Resolved inner = resolve(owner, *desc.lptdesc);
        ++inner.indirections;
        return inner;
    }
    case VT_SAFEARRAY: {
        Resolved element = resolve(owner, *desc.lptdesc);
        return {static_cast<VARTYPE>(VT_ARRAY | element.type), {}, 0};
    }
    case VT_USERDEFINED: {
        ComPtr<ITypeInfo> referenced;
        if (FAILED(owner->GetRefTypeInfo(desc.hreftype, referenced.put()))) return {VT_EMPTY, {}, 0};
        TypeAttr attr(referenced.get());
        if (!attr.attr) return {VT_EMPTY, {}, 0};
        switch (attr.attr->typekind) {
        case TKIND_ENUM:
            return {VT_I4, {}, 0};
        case TKIND_ALIAS:
            return resolve(referenced.get(), attr.attr->tdescAlias);
        case TKIND_INTERFACE:
        case TKIND_DISPATCH:
            // The interface pointer itself is the value: one pointer level belongs to it.
            return {VT_DISPATCH, attr.attr->guid, -1};
        default:
            return {VT_EMPTY, {}, 0};
        }
    }
    case VT_HRESULT:
        return {VT_ERROR, {}, 0};
    case VT_INT:
        return {VT_I4, {}, 0};
    case VT_UINT:
        return {VT_UI4, {}, 0};
    default:
        return {desc.vt, {}, 0};
    }
}

ParameterInfo describeParameter(ITypeInfo* owner, const ELEMDESC& element) {
    const Resolved resolved = resolve(owner, element.tdesc);
    ParameterInfo info;
    info.type = resolved.type;
    info.interfaceId = resolved.interfaceId;
    info.byReference = resolved.indirections > 0;
    const USHORT flags = element.paramdesc.wParamFlags;
    info.optional = (flags & PARAMFLAG_FOPT) != 0;
    if ((flags & PARAMFLAG_FHASDEFAULT) && element.paramdesc.pparamdescex) {
        info.hasDefault = true;
        VariantInit(&info.defaultValue);
        VariantCopy(&info.defaultValue, &element.paramdesc.pparamdescex->varDefaultValue);
    }
    return info;
}

}  // namespace

DispatchTable::DispatchTable(ITypeInfo* dispatchSide, ITypeInfo* typeInfo)
    : typeInfo_(ComPtr<ITypeInfo>::share(dispatchSide)) {
    TypeAttr attr(typeInfo);
    if (!attr.attr) return;
    members_.reserve(attr.attr->cFuncs);
    for (UINT index = 0; index < attr.attr->cFuncs; ++index) {
        FuncDesc func(typeInfo, index);
        if (!func.desc) continue;
        MemberInfo member;
        member.id = func.desc->memid;
        member.kind = func.desc->invkind;
        member.vtableOffset = func.desc->oVft;
        for (SHORT p = 0; p < func.desc->cParams; ++p) {
            const ELEMDESC& element = func.desc->lprgelemdescParam[p];
            ParameterInfo parameter = describeParameter(typeInfo, element);
            if (element.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) {
                parameter.byReference = false;
                member.hasResult = true;
                member.result = parameter;
            } else {
                member.parameters.push_back(parameter);
            }
        }
        const bool named = std::any_of(names_.begin(), names_.end(),
                                       [&](const Name& n) { return n.id == member.id; });
        BSTR name = nullptr;
        UINT count = 0;
        if (!named && SUCCEEDED(typeInfo->GetNames(member.id, &name, 1, &count)) && count == 1) {
            names_.push_back({std::wstring(name, SysStringLen(name)), member.id});
        }
        SysFreeString(name);
        members_.push_back(std::move(member));
    }
}

bool DispatchTable::idOf(const OLECHAR* name, DISPID* id) const {
    const auto fold = [](wchar_t c) { return c >= L'a' && c <= L'z' ? static_cast<wchar_t>(c - 32) : c; };
    for (const Name& candidate : names_) {
        size_t i = 0;
        while (i < candidate.text.size() && name[i] && fold(name[i]) == fold(candidate.text[i])) ++i;
        if (i == candidate.text.size() && !name[i]) {
            *id = candidate.id;
            return true;
        }
    }
    return false;
}

DispatchTable::~DispatchTable() {
    for (MemberInfo& member : members_)
        for (ParameterInfo& parameter : member.parameters)
            if (parameter.hasDefault) VariantClear(&parameter.defaultValue);
}

const MemberInfo* DispatchTable::find(DISPID id, WORD flags) const {
    const MemberInfo* getter = nullptr;
    const MemberInfo* method = nullptr;
    const MemberInfo* put = nullptr;
    const MemberInfo* putRef = nullptr;
    for (const MemberInfo& member : members_) {
        if (member.id != id) continue;
        switch (member.kind) {
        case INVOKE_FUNC: method = &member; break;
        case INVOKE_PROPERTYGET: getter = &member; break;
        case INVOKE_PROPERTYPUT: put = &member; break;
        case INVOKE_PROPERTYPUTREF: putRef = &member; break;
        }
    }
    if (flags & DISPATCH_PROPERTYPUTREF) return putRef ? putRef : put;
    if (flags & DISPATCH_PROPERTYPUT) return put ? put : putRef;
    if ((flags & DISPATCH_METHOD) && method) return method;
    if (flags & (DISPATCH_PROPERTYGET | DISPATCH_METHOD)) return getter;
    return nullptr;
}

ITypeLib* TypeLibrary() {
    if (ITypeLib* loaded = gTypeLibrary.load(std::memory_order_acquire)) return loaded;
    ITypeLib* fresh = nullptr;
    if (FAILED(LoadTypeLibEx(ModulePath().c_str(), REGKIND_NONE, &fresh))) return nullptr;
    return publish(gTypeLibrary, fresh, [](ITypeLib* lost) { lost->Release(); });
}

const DispatchTable* DispatchTableFor(REFIID interfaceId, std::atomic<DispatchTable*>& cache) {
    if (DispatchTable* built = cache.load(std::memory_order_acquire)) return built;
    ITypeLib* library = TypeLibrary();
    if (!library) return nullptr;
    // The dispatch side answers names and type questions; the vtable side knows the slots.
    ComPtr<ITypeInfo> dispatchSide, vtableSide;
    if (FAILED(library->GetTypeInfoOfGuid(interfaceId, dispatchSide.put()))) return nullptr;
    HREFTYPE reference = 0;
    if (FAILED(dispatchSide->GetRefTypeOfImplType(-1, &reference)) ||
        FAILED(dispatchSide->GetRefTypeInfo(reference, vtableSide.put())))
        return nullptr;
    DispatchTable* winner = publish(cache, new DispatchTable(dispatchSide.get(), vtableSide.get()),
                                    [](DispatchTable* lost) { delete lost; });
    if (winner) {
        for (auto& slot : gCaches) {
            std::atomic<DispatchTable*>* expected = nullptr;
            if (slot.load() == &cache || slot.compare_exchange_strong(expected, &cache)) break;
        }
    }
    return winner;
}

void ReleaseTypeLibrary() {
    for (auto& slot : gCaches) {
        if (std::atomic<DispatchTable*>* cache = slot.exchange(nullptr)) delete cache->exchange(nullptr);
    }
    if (ITypeLib* library = gTypeLibrary.exchange(nullptr)) library->Release();
}

}  // namespace orbex::com
