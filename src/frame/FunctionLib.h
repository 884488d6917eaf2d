// The shared text and number procedures several classes call.
#pragma once
#include "Types.h"

namespace orbex {

// The text before the first occurrence of NulCount NULs; the whole text when there is none.
String CutAtFirstNul(const String& text, Integer nulCount);

// The text before the last occurrence of NulCount NULs; the whole text when there is none.
String CutAtLastNul(const String& text, Integer nulCount);

// Trims blanks, then removes one trailing backslash.
String StripTrailingBackslash(const String& text);

// The low 16 bits as a signed Integer.
Integer LowWordToInteger(Long value);

// Trims blanks (U+0020 only) from both ends: a view into `text`.
StringView TrimBlanks(StringView text);

// Splits at every occurrence of a separator, keeping empty pieces; "" gives no pieces.
StringArray SplitText(const String& text, wchar_t separator);

}  // namespace orbex
