// IDispatch::Invoke for every class, driven by the dispatch table instead of the stock
// type-info invoke: a script passes its variables as VT_BYREF|VT_VARIANT and literals by value,
// and both forms are accepted for every parameter, converted as Automation converts, and a
// by-reference result is written back into the caller's variable.
#pragma once
#include "TypeLibrary.h"

namespace orbex::com {

HRESULT InvokeMember(const DispatchTable& table, void* self, DISPID id, WORD flags, DISPPARAMS* parameters,
                     VARIANT* result, EXCEPINFO* exception, UINT* argumentError);

// Whether a VARIANT may hold this type tag (and VariantClear can free it): the first test an
// argument passes before anything reads it.
bool IsVariantType(VARTYPE type);

// Returns a dispatch-level failure, clearing the thread's error info: a client that asks for it
// after such a failure would otherwise read an earlier call's.
HRESULT Refuse(HRESULT failure);

}  // namespace orbex::com
