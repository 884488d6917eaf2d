// The failure a call raised, as its three fields, so that table rows can state it whole.
#pragma once
#include "frame/RaisedError.h"

#include <tuple>

namespace orbex::testing {

using Failure = std::tuple<Long, String, String>;  // Number, Source, Description

inline const Failure NoFailure{0, L"(nothing raised)", L""};

template <class Call>
Failure FailureOf(Call&& call) {
    try {
        call();
    } catch (const RaisedError& error) {
        return {error.Number, error.Source, error.Description};
    }
    return NoFailure;
}

}  // namespace orbex::testing
