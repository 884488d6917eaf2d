// Table rows for calls that give a whole number or raise, and the check that runs them.
#pragma once
#include "frame/RaisedError.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>

namespace orbex::testing {

inline constexpr Long NothingRaised = 0x7FFFFFFF;

template <class Call>
Long RaisedNumber(Call&& call) {
    try {
        call();
    } catch (const RaisedError& error) {
        return error.Number;
    }
    return NothingRaised;
}

struct Row {
    const char* call;
    std::function<std::int64_t()> run;
    std::int64_t value;
    Long raised;
};

inline void CheckRows(std::initializer_list<Row> rows) {
    for (const Row& row : rows) {
        std::int64_t value = 0;
        EXPECT_EQ(RaisedNumber([&] { value = row.run(); }), row.raised) << row.call;
        if (row.raised == NothingRaised) {
            EXPECT_EQ(value, row.value) << row.call;
        }
    }
}

}  // namespace orbex::testing

#define GIVES(call, value) {#call, [] { return static_cast<std::int64_t>(call); }, value, orbex::testing::NothingRaised}
#define RAISES(call, number) {#call, [] { return static_cast<std::int64_t>(call); }, 0, number}
