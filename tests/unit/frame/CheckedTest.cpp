#include "frame/Checked.h"

#include "Raises.h"

#include <limits>

namespace orbex {
namespace {

constexpr Long Overflow = RunTime::Overflow;
constexpr Long maxLong = std::numeric_limits<Long>::max();
constexpr Long minLong = std::numeric_limits<Long>::min();
constexpr std::int64_t maxScaled = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t minScaled = std::numeric_limits<std::int64_t>::min();

// On x87 the extended product 0.00005 * 10000 lies just above 0.5; the tie is decided on the
// double product, as on every other processor.
TEST(Checked, RoundsHalfToEven) {
    testing::CheckRows({
        GIVES(RoundToLong(0.5), 0), GIVES(RoundToLong(1.5), 2), GIVES(RoundToLong(2.5), 2),
        GIVES(RoundToLong(-2.5), -2), GIVES(RoundToLong(-1.5), -2), GIVES(RoundToLong(2.5000001), 3),
        GIVES(RoundToLong(-2147483648.5), minLong), RAISES(RoundToLong(2147483647.5), Overflow),
        RAISES(RoundToLong(std::numeric_limits<double>::quiet_NaN()), Overflow),
        RAISES(RoundToLong(-std::numeric_limits<double>::infinity()), Overflow),
        GIVES(RoundToInteger(-32768.5), -32768), RAISES(RoundToInteger(32767.5), Overflow),
        GIVES(RoundToByte(-0.5), 0), GIVES(RoundToByte(254.5), 254),
        RAISES(RoundToByte(255.5), Overflow), RAISES(RoundToByte(-0.6), Overflow),
        GIVES(RoundToCurrency(0.00005).scaled, 0), GIVES(RoundToCurrency(0.00025).scaled, 2),
        GIVES(RoundToCurrency(1.23455).scaled, 12346), GIVES(RoundToCurrency(-2.4).scaled, -24000),
        RAISES(RoundToCurrency(922337203685477.6).scaled, Overflow),
        RAISES(RoundToCurrency(-922337203685478.0).scaled, Overflow),
    });
}

TEST(Checked, TrapsOverflowAtEveryLimit) {
    testing::CheckRows({
        RAISES(CheckedAdd(maxLong, 1), Overflow), RAISES(CheckedSub(minLong, 1), Overflow),
        RAISES(CheckedSub(0, minLong), Overflow), RAISES(CheckedMul(65536, 32768), Overflow),
        GIVES(CheckedMul(-65536, 32768), minLong),
        RAISES(CheckedAdd(Integer{32767}, Integer{1}), Overflow),
        RAISES(CheckedAdd(Integer{-32768}, Integer{-1}), Overflow),
        GIVES(ToInteger(-32768), -32768), RAISES(ToInteger(32768), Overflow),
        GIVES(ToByte(255), 255), RAISES(ToByte(256), Overflow), RAISES(ToByte(-1), Overflow),
        GIVES(ToLong(std::int64_t{minLong}), minLong), RAISES(ToLong(std::int64_t{maxLong} + 1), Overflow),
        RAISES(CheckedAdd(Currency{maxScaled}, Currency{1}).scaled, Overflow),
        RAISES(CheckedSub(Currency{minScaled}, Currency{1}).scaled, Overflow),
        GIVES(CurrencyFromCount64(5).scaled, 50000),
        GIVES(CurrencyFromCount64(-5).scaled, -50000),  // a word with bit 63 set
        GIVES(CurrencyFromCount64(922337203685477).scaled, 9223372036854770000),
        GIVES(CurrencyFromCount64(-922337203685477).scaled, -9223372036854770000),
        RAISES(CurrencyFromCount64(922337203685478).scaled, Overflow),
        RAISES(CurrencyFromCount64(-922337203685478).scaled, Overflow),
        GIVES(CurrencyFromCount32(minLong).scaled, minLong * 10000LL),
    });
}

// The exact product of the scaled integers passes 64 bits before 10^4 is divided away.
TEST(Checked, MultipliesCurrencyExactly) {
    testing::CheckRows({
        GIVES(CheckedMul(Currency{15000}, Currency{15000}).scaled, 22500),
        GIVES(CheckedMul(Currency{1}, Currency{5000}).scaled, 0),  // 0.00005, a tie
        GIVES(CheckedMul(Currency{3}, Currency{5000}).scaled, 2),
        GIVES(CheckedMul(Currency{-3}, Currency{5000}).scaled, -2),
        GIVES(CheckedMul(Currency{-15000}, Currency{15000}).scaled, -22500),
        GIVES(CheckedMul(Currency{1000000000000}, Currency{1000000000}).scaled, 100000000000000000),
        GIVES(CheckedMul(Currency{minScaled}, Currency{10000}).scaled, minScaled),
        RAISES(CheckedMul(Currency{minScaled}, Currency{-10000}).scaled, Overflow),
        RAISES(CheckedMul(Currency{maxScaled}, Currency{20000}).scaled, Overflow),
    });
}

}  // namespace
}  // namespace orbex
