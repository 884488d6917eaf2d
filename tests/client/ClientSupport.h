// Helpers for the client tests: COM set up once per process, late-bound calls by name, and
// the checks every test makes on an HRESULT and its error info.
#pragma once
#include <windows.h>
#include <oleauto.h>

#include "ComOwners.h"
#include "Orbex_h.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

namespace orbex::client {

inline std::wstring Text(BSTR text) { return text ? std::wstring(text, SysStringLen(text)) : std::wstring(); }

// Creates a class by its ProgID, as a script does.
Ref<IDispatch> CreateByProgId(const wchar_t* progId);

// A late-bound call: the arguments in the caller's order (they are reversed for Invoke).
HRESULT Call(IDispatch* object, const wchar_t* name, WORD flags, std::initializer_list<VARIANT> arguments,
             VARIANT* result, EXCEPINFO* exception = nullptr);

VARIANT Bstr(const wchar_t* text);  // the caller frees it (Variant does)
VARIANT Long(LONG value);
VARIANT Bool(bool value);
VARIANT ByRef(VARIANT* variable);   // VT_BYREF|VT_VARIANT, as scripts pass variables

}  // namespace orbex::client
