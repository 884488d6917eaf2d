// What the fuzzer calls: every member of every class as the type library describes it, which
// of its parameters must stay inside the sandbox, and the live objects it calls them on.
#pragma once
#include "Random.h"

#include <windows.h>
#include <oaidl.h>

#include <string>
#include <vector>

namespace orbex::fuzz {

// How an argument is drawn: freely, or from texts that stay inside the sandbox.
enum class Confined { No, FilePath, IniPath, SubKey, Destination };

struct Parameter {
    std::wstring name;
    VARTYPE type = VT_VARIANT;  // the declared type, VT_DISPATCH for an interface
    bool byReference = false;
    bool optional = false;
    Confined confined = Confined::No;
};

// What a member may do to the receiver's world, and what the receiver must be for it.
enum class Receiver { Any, OwnKey, OwnKeyBelow, OwnFile, OwnIniFile };

struct Member {
    std::wstring className;
    std::wstring name;
    DISPID id = 0;
    INVOKEKIND kind = INVOKE_FUNC;
    std::vector<Parameter> parameters;
    Receiver receiver = Receiver::Any;
};

struct Object {
    IDispatch* dispatch;  // owned reference
    std::wstring className;
};

// Members of one class, read from the object's type info.
std::vector<Member> MembersOf(IDispatch* object, const std::wstring& className);

// The class of an Orbex object, from its type info; empty for anything else.
std::wstring ClassOf(IDispatch* object);

// Reads a text property through Invoke (the fuzzer's own look, not a fuzzed call).
std::wstring ReadText(IDispatch* object, const wchar_t* property);
// Calls a member by name with positional arguments given first to last; returns the HRESULT.
HRESULT CallByName(IDispatch* object, const wchar_t* name, WORD flags, std::vector<VARIANT> arguments,
                   VARIANT* result);

}  // namespace orbex::fuzz
