// Conversions between the Automation types a client passes and the frame's value types. Every
// allocation failure throws std::bad_alloc, which the adapter's guard turns into E_OUTOFMEMORY.
#pragma once
#include "ComResources.h"
#include "frame/Variant.h"

namespace orbex::com {

// VariantChangeType for a value a client made. A DECIMAL with a scale above 28 or a sign other
// than 0 or negative is no number at all and is refused as a type mismatch: Wine's conversions
// jump to nowhere on one.
HRESULT ChangeType(VARIANT* out, const VARIANT* in, VARTYPE type);
bool IsSoundDecimal(const VARIANT* value);

String ToString(BSTR text);
// The text read in place, for a member that only reads it during the call.
inline StringView ToView(BSTR text) { return text ? StringView(text, SysStringLen(text)) : StringView(); }
BSTR ToBstr(const String& text);

Variant ToValue(const VARIANT& value);
void ToVariant(const Variant& value, VARIANT* out);  // `out` must be empty or initialised

StringArray ToStringArray(SAFEARRAY* array);
SAFEARRAY* ToSafeArray(const StringArray& array);
SAFEARRAY* ToSafeArray(const NulSeparatedList& list);

inline Currency ToCurrency(CY value) { return Currency{value.int64}; }
inline CY ToCy(Currency value) { CY cy; cy.int64 = value.scaled; return cy; }

}  // namespace orbex::com
