// Text buffers of the private-profile calls: made in the narrow form the platform fills, read
// back through the code page, then cut to the length the platform reported.
#pragma once
#include "frame/Ansi.h"
#include "frame/RaisedError.h"
#include "frame/Types.h"

#include <string>

namespace orbex::ini {

// A buffer of `count` blanks. No text has a negative length: 5.
inline std::string Blanks(Long count) {
    if (count < 0) RaiseRunTime(RunTime::InvalidArgument);
    return std::string(static_cast<std::size_t>(count), ' ');
}

// The first `count` characters of the buffer's text; a negative count is an invalid argument.
inline String BufferText(const std::string& buffer, Long count) {
    if (count < 0) RaiseRunTime(RunTime::InvalidArgument);
    return FromAnsiBuffer(buffer, static_cast<std::size_t>(count));
}

}  // namespace orbex::ini
