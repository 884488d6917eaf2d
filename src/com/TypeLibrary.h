// The type library, loaded once from the module itself (so dispatch works before and without
// registration), and for each interface a dispatch table built once from its type info:
// every member's vtable slot, kind, parameter types and defaults. Invoke reads only the table.
#pragma once
#include "ComResources.h"

#include <oaidl.h>

#include <atomic>
#include <string>
#include <vector>

namespace orbex::com {

struct ParameterInfo {
    VARTYPE type = VT_EMPTY;   // the value's type: enumerations are VT_I4, interfaces VT_DISPATCH
    IID interfaceId{};         // the declared interface of a VT_DISPATCH parameter
    bool byReference = false;  // [in, out]: the member receives a pointer to the value
    bool optional = false;
    bool hasDefault = false;
    VARIANT defaultValue{};    // owned by the table
};

struct MemberInfo {
    MEMBERID id = 0;
    INVOKEKIND kind = INVOKE_FUNC;
    SHORT vtableOffset = 0;
    std::vector<ParameterInfo> parameters;  // without the result
    bool hasResult = false;
    ParameterInfo result;
};

class DispatchTable {
public:
    // Built from the vtable side of a dual interface; `dispatchSide` answers GetTypeInfo and names.
    DispatchTable(ITypeInfo* dispatchSide, ITypeInfo* vtableSide);
    ~DispatchTable();
    DispatchTable(const DispatchTable&) = delete;
    DispatchTable& operator=(const DispatchTable&) = delete;

    ITypeInfo* typeInfo() const { return typeInfo_.get(); }
    // The member a call with these flags means, or nullptr.
    const MemberInfo* find(DISPID id, WORD flags) const;
    // The dispatch id of a member name, compared without regard to ASCII case; false when no
    // member has that name (the caller then asks the type info, which also knows other spellings).
    bool idOf(const OLECHAR* name, DISPID* id) const;

private:
    struct Name {
        std::wstring text;
        MEMBERID id;
    };
    ComPtr<ITypeInfo> typeInfo_;
    std::vector<MemberInfo> members_;
    std::vector<Name> names_;  // one per member id: a property's reader and writer share theirs
};

// The library's type library; nullptr only if the module's resource cannot be loaded.
ITypeLib* TypeLibrary();

// The dispatch table of one of the library's interfaces, built on first use into the caller's
// cache and kept until the module unloads; nullptr when the type library is not available.
const DispatchTable* DispatchTableFor(REFIID interfaceId, std::atomic<DispatchTable*>& cache);

// Releases everything cached, when the module may unload.
void ReleaseTypeLibrary();

}  // namespace orbex::com
