// The Automation conversions between values, text and numbers, as a client's language makes
// them: locale-dependent parts go to the platform's Automation runtime.
#pragma once
#include "Variant.h"

namespace orbex {

// Text form: String unchanged, numbers in decimal digits, Boolean "True"/"False", Date in the
// system's format, Empty "". Null raises 94; arrays, objects and error values raise 13.
String ToText(const Variant& value);

// Whether the value passes the Automation number test: every number subtype, Boolean, Empty,
// and a String that converts to a number.
bool IsNumeric(const Variant& value);

// Conversions to a number. A String is read as a number (13 when it isn't one), fractions
// round with ties to even, a Date is its day count, overflow raises 6, Null raises 94,
// anything else (arrays, objects, error values) raises 13.
Long ToLong(const Variant& value);
Currency ToCurrency(const Variant& value);
double ToDouble(const Variant& value);

// Text to Integer and to Date by the Automation text conversions: 13 when the text is not a
// number (or not a date), 6 when it is out of range.
Integer TextToInteger(const String& text);
Date TextToDate(const String& text);

// Decimal digits of a whole number, as Automation writes them.
String DecimalText(std::int64_t value);

}  // namespace orbex
