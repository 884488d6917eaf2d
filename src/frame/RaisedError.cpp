#include "RaisedError.h"

#include <utility>

namespace orbex {

void Raise(Long number, String source, String description) {
    throw RaisedError{number, std::move(source), std::move(description)};
}

void RaiseRunTime(Long number) {
    throw RaisedError{number, String{}, String{}};
}

}  // namespace orbex
