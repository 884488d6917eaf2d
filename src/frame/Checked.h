// Arithmetic and narrowing that trap overflow as run-time error 6, and rounding with ties to
// even, as every integer and Currency operation of the library does.
#pragma once
#include "Types.h"

namespace orbex {

Long CheckedAdd(Long a, Long b);
Long CheckedSub(Long a, Long b);
Long CheckedMul(Long a, Long b);
Integer CheckedAdd(Integer a, Integer b);
Currency CheckedAdd(Currency a, Currency b);
Currency CheckedSub(Currency a, Currency b);
Currency CheckedMul(Currency a, Integer factor);  // on the scaled integer, as the 64-bit counts use it
Currency CheckedMul(Currency a, Currency b);      // true Currency product, rounded to 4 decimals

Integer ToInteger(Long value);
Byte ToByte(Long value);
Long ToLong(std::int64_t value);

// Ties to even: 0.5 -> 0, 1.5 -> 2, 2.5 -> 2. NaN and out-of-range values raise 6.
Long RoundToLong(double value);
Integer RoundToInteger(double value);
Byte RoundToByte(double value);
Currency RoundToCurrency(double value);  // the value, rounded at its fourth decimal

double ToDouble(Currency value);  // the value, not the scaled integer

// The two ways a platform count becomes a Currency.
// 64-bit: the word W taken as the scaled integer, then multiplied by 10000 (6 when it can't be).
Currency CurrencyFromCount64(std::int64_t word);
// 32-bit: the signed Long L as the value L.
Currency CurrencyFromCount32(Long count);

}  // namespace orbex
