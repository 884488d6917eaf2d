// Text across the platform's narrow (...A) functions: UTF-16 to the system's ANSI code page
// for the call and back after it. A character the code page lacks does not survive.
#pragma once
#include "Types.h"

#include <string>

namespace orbex {

std::string ToAnsi(const String& text);
String FromAnsi(const std::string& text);
String FromAnsi(const char* text, std::size_t length);

// The first `count` characters of the text of a whole buffer the platform filled: how every
// narrow buffer is read back, cut to the length the platform reported.
String FromAnsiBuffer(const std::string& buffer, std::size_t count);

// The text as it comes back from a round trip through the code page.
String AnsiRoundTrip(const String& text);

}  // namespace orbex
