// The value types every class works in. They mirror the Automation types a client sees.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orbex {

using Integer = std::int16_t;
using Long = std::int32_t;
using Byte = std::uint8_t;

// 16 bits as stored; any set bit counts as True when it comes in.
using Boolean = std::int16_t;
constexpr Boolean True = -1;
constexpr Boolean False = 0;
constexpr bool isTrue(Boolean value) { return value != 0; }
constexpr Boolean toBoolean(bool value) { return value ? True : False; }

// Counted UTF-16 text; may hold NULs. "" and a missing string are the same text.
using String = std::wstring;
// Text read in place, for a member that only reads its argument.
using StringView = std::wstring_view;

// The value times 10000, as a 64-bit integer.
struct Currency {
    std::int64_t scaled = 0;
    friend bool operator==(Currency, Currency) = default;
};

// Days since 1899-12-30; the fraction is the time of day.
struct Date {
    double days = 0;
    friend bool operator==(Date, Date) = default;
};

// An array with its own lower bound; the upper bound is lower + size - 1.
template <class Element>
struct BoundedArray {
    Long lower = 0;
    std::vector<Element> items;

    Long upper() const { return lower + static_cast<Long>(items.size()) - 1; }
    friend bool operator==(const BoundedArray&, const BoundedArray&) = default;
};

using StringArray = BoundedArray<String>;
using ByteArray = BoundedArray<Byte>;

// Texts with lower bound 0, end to end in one text and each but the last followed by a NUL; ""
// holds none. The form the platform's lists arrive in: the client's array is made straight from
// it, without a text of its own per item on the way.
struct NulSeparatedList {
    String text;
};

}  // namespace orbex
