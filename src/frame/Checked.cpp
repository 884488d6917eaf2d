#include "Checked.h"

#include "RaisedError.h"

#include <cmath>
#include <limits>

namespace orbex {
namespace {

[[noreturn]] void Overflow() { RaiseRunTime(RunTime::Overflow); }

template <class T>
T Add(T a, T b) {
    T result;
    if (__builtin_add_overflow(a, b, &result)) Overflow();
    return result;
}

template <class T>
T Sub(T a, T b) {
    T result;
    if (__builtin_sub_overflow(a, b, &result)) Overflow();
    return result;
}

template <class T, class U>
T Mul(T a, U b) {
    T result;
    if (__builtin_mul_overflow(a, b, &result)) Overflow();
    return result;
}

template <class T, class From>
T Narrow(From value) {
    if (value < std::numeric_limits<T>::min() || value > std::numeric_limits<T>::max()) Overflow();
    return static_cast<T>(value);
}

// Nearest whole number, a tie going to the even neighbour. x - floor(x) is exact for every
// finite double, so the tie test is exact too.
double RoundHalfEven(double value) {
    if (!std::isfinite(value)) Overflow();
    const double below = std::floor(value);
    const double fraction = value - below;
    if (fraction < 0.5) return below;
    if (fraction > 0.5) return below + 1;
    return std::fmod(below, 2.0) == 0 ? below : below + 1;
}

// The rounded value as T when it lies in T's range. Comparing as double is exact here: the
// limits of every target are representable, and 2^63 stands for the first value past int64.
template <class T>
T RoundTo(double value) {
    const double rounded = RoundHalfEven(value);
    constexpr double lowest = static_cast<double>(std::numeric_limits<T>::min());
    constexpr double pastHighest = static_cast<double>(std::numeric_limits<T>::max() / 2 + 1) * 2;
    if (rounded < lowest || rounded >= pastHighest) Overflow();
    return static_cast<T>(rounded);
}

struct Wide {  // an unsigned 128-bit number as two 64-bit halves
    std::uint64_t high = 0;
    std::uint64_t low = 0;
};

Wide MultiplyWide(std::uint64_t a, std::uint64_t b) {
    const std::uint64_t a0 = a & 0xFFFFFFFFu, a1 = a >> 32;
    const std::uint64_t b0 = b & 0xFFFFFFFFu, b1 = b >> 32;
    const std::uint64_t p00 = a0 * b0, p01 = a0 * b1, p10 = a1 * b0, p11 = a1 * b1;
    const std::uint64_t middle = (p00 >> 32) + (p01 & 0xFFFFFFFFu) + (p10 & 0xFFFFFFFFu);
    return {p11 + (p01 >> 32) + (p10 >> 32) + (middle >> 32),
            (middle << 32) | (p00 & 0xFFFFFFFFu)};
}

// Divides in place by a small divisor, 32 bits at a time; returns the remainder.
std::uint32_t DivideWide(Wide& value, std::uint32_t divisor) {
    std::uint64_t remainder = 0;
    auto step = [&](std::uint64_t& half) {
        std::uint64_t quotient = 0;
        for (int shift = 32; shift >= 0; shift -= 32) {
            const std::uint64_t part = (remainder << 32) | ((half >> shift) & 0xFFFFFFFFu);
            quotient = (quotient << 32) | (part / divisor);
            remainder = part % divisor;
        }
        half = quotient;
    };
    step(value.high);
    step(value.low);
    return static_cast<std::uint32_t>(remainder);
}

std::uint64_t Magnitude(std::int64_t value) {
    return value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
}

constexpr std::int64_t CurrencyScale = 10000;

}  // namespace

Long CheckedAdd(Long a, Long b) { return Add(a, b); }
Long CheckedSub(Long a, Long b) { return Sub(a, b); }
Long CheckedMul(Long a, Long b) { return Mul(a, b); }
Integer CheckedAdd(Integer a, Integer b) { return Add(a, b); }

Currency CheckedAdd(Currency a, Currency b) { return {Add(a.scaled, b.scaled)}; }
Currency CheckedSub(Currency a, Currency b) { return {Sub(a.scaled, b.scaled)}; }
Currency CheckedMul(Currency a, Integer factor) {
    return {Mul(a.scaled, static_cast<std::int64_t>(factor))};
}

// Both scaled integers multiplied exactly, then the product's extra 10^4 divided away with
// ties to even.
Currency CheckedMul(Currency a, Currency b) {
    const bool negative = (a.scaled < 0) != (b.scaled < 0);
    Wide product = MultiplyWide(Magnitude(a.scaled), Magnitude(b.scaled));
    const std::uint32_t remainder = DivideWide(product, static_cast<std::uint32_t>(CurrencyScale));
    if (remainder * 2 > CurrencyScale || (remainder * 2 == CurrencyScale && (product.low & 1))) {
        if (++product.low == 0) ++product.high;
    }
    const std::uint64_t limit = negative ? std::uint64_t{1} << 63 : (std::uint64_t{1} << 63) - 1;
    if (product.high != 0 || product.low > limit) Overflow();
    return {negative ? static_cast<std::int64_t>(0 - product.low)
                     : static_cast<std::int64_t>(product.low)};
}

Integer ToInteger(Long value) { return Narrow<Integer>(value); }
Byte ToByte(Long value) { return Narrow<Byte>(value); }
Long ToLong(std::int64_t value) { return Narrow<Long>(value); }

Long RoundToLong(double value) { return RoundTo<Long>(value); }
Integer RoundToInteger(double value) { return RoundTo<Integer>(value); }
Byte RoundToByte(double value) { return RoundTo<Byte>(value); }

Currency RoundToCurrency(double value) {
    // Stored so that the x87 unit cannot carry extra precision into the tie test: the
    // scaled value is the double product, as on every other processor.
    volatile double scaled = value * static_cast<double>(CurrencyScale);
    return {RoundTo<std::int64_t>(scaled)};
}

double ToDouble(Currency value) {
    return static_cast<double>(value.scaled) / static_cast<double>(CurrencyScale);
}

Currency CurrencyFromCount64(std::int64_t word) {
    return CheckedMul(Currency{word}, Integer{CurrencyScale});
}

Currency CurrencyFromCount32(Long count) {
    return {static_cast<std::int64_t>(count) * CurrencyScale};
}

}  // namespace orbex
