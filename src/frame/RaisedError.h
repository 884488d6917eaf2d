// The one way a member fails: a RaisedError travels up as a C++ exception until a catch-all
// procedure takes it or the COM adapter turns it into an HRESULT with IErrorInfo.
#pragma once
#include "Types.h"

namespace orbex {

struct RaisedError {
    Long Number = 0;
    String Source;
    String Description;
};

// The standard run-time numbers that the value conventions raise.
namespace RunTime {
constexpr Long InvalidArgument = 5;
constexpr Long Overflow = 6;
constexpr Long SubscriptOutOfRange = 9;
constexpr Long TypeMismatch = 13;
constexpr Long InvalidUseOfNull = 94;
}  // namespace RunTime

[[noreturn]] void Raise(Long number, String source, String description);

// A run-time error of the value conventions: no Source or Description of the library's own.
[[noreturn]] void RaiseRunTime(Long number);

}  // namespace orbex
