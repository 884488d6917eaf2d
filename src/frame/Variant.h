// A tagged value with the subtypes the classes meet: what registry and INI values are read
// into and written from. Arrays keep their own bounds; an array of any other element type is
// kept only as its element type, which is all a member tests.
#pragma once
#include "Types.h"

#include <variant>

namespace orbex {

struct Empty { friend bool operator==(Empty, Empty) = default; };
struct Null { friend bool operator==(Null, Null) = default; };
struct ErrorValue { Long scode = 0; friend bool operator==(ErrorValue, ErrorValue) = default; };

// An object reference, or an array whose elements are not String or Byte. Neither has a text
// or a number form; the kind tells a member what the client passed.
struct Opaque {
    enum class Kind { Object, OtherArray } kind = Kind::Object;
    friend bool operator==(Opaque, Opaque) = default;
};

// The Boolean subtype, kept apart from Integer though both are 16 bits.
struct BooleanValue { Boolean bits = False; friend bool operator==(BooleanValue, BooleanValue) = default; };

using Variant = std::variant<Empty, Null, Integer, Long, float, double, Currency, Date, String,
                             BooleanValue, Byte, ErrorValue, StringArray, ByteArray, Opaque>;

}  // namespace orbex
