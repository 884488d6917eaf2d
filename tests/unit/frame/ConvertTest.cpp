#include "frame/Convert.h"

#include "Raises.h"

#include <limits>

namespace orbex {
namespace {

using testing::RaisedNumber;
constexpr Long Overflow = RunTime::Overflow;
constexpr Long Mismatch = RunTime::TypeMismatch;
constexpr Long NullUse = RunTime::InvalidUseOfNull;

// The test prefix runs in the English (United States) locale.
TEST(Convert, TextForm) {
    struct Case { Variant value; String text; };
    const Case cases[] = {
        {String(L"a\0b", 3), String(L"a\0b", 3)}, {Empty{}, L""}, {Integer{-32768}, L"-32768"},
        {Long{2147483647}, L"2147483647"}, {Byte{255}, L"255"}, {2.5, L"2.5"}, {-1e6, L"-1000000"},
        {0.1f, L"0.1"}, {Currency{12345}, L"1.2345"}, {Currency{-50000}, L"-5"},
        {Date{36526.5}, L"1/1/2000 12:00:00 PM"}, {BooleanValue{1}, L"True"},
        {BooleanValue{False}, L"False"},
    };
    for (const auto& c : cases) EXPECT_EQ(ToText(c.value), c.text) << c.value.index();

    const std::pair<Variant, Long> failing[] = {
        {Null{}, NullUse}, {StringArray{}, Mismatch}, {ByteArray{}, Mismatch},
        {Opaque{}, Mismatch}, {ErrorValue{5}, Mismatch},
    };
    for (const auto& [value, number] : failing)
        EXPECT_EQ(RaisedNumber([&] { ToText(value); }), number) << value.index();
}

TEST(Convert, NumericTest) {
    for (const Variant& value : {Variant{Empty{}}, Variant{BooleanValue{True}}, Variant{Byte{1}},
                                 Variant{Currency{1}}, Variant{1.5f}, Variant{String(L" -2.5 ")}})
        EXPECT_TRUE(IsNumeric(value)) << value.index();
    for (const Variant& value : {Variant{String(L"")}, Variant{String(L"12abc")}, Variant{Date{1}},
                                 Variant{Null{}}, Variant{ErrorValue{}}, Variant{StringArray{}}})
        EXPECT_FALSE(IsNumeric(value)) << value.index();
}

TEST(Convert, ToNumbers) {
    testing::CheckRows({
        GIVES(ToLong(String(L"12")), 12), GIVES(ToLong(2.5), 2), GIVES(ToLong(3.5f), 4),
        GIVES(ToLong(String(L"2.5")), 2), GIVES(ToLong(Currency{-25000}), -2),
        GIVES(ToLong(Currency{35000}), 4), GIVES(ToLong(BooleanValue{1}), -1), GIVES(ToLong(Empty{}), 0),
        RAISES(ToLong(String(L"2147483648")), Overflow), RAISES(ToLong(2147483648.0), Overflow),
        RAISES(ToLong(Currency{std::numeric_limits<std::int64_t>::max()}), Overflow),
        RAISES(ToLong(String(L"abc")), Mismatch), RAISES(ToLong(Null{}), NullUse),
        RAISES(ToLong(ErrorValue{}), Mismatch), RAISES(ToLong(StringArray{}), Mismatch),
        GIVES(ToCurrency(String(L"12.34567")).scaled, 123457), GIVES(ToCurrency(2.4).scaled, 24000),
        GIVES(ToCurrency(BooleanValue{True}).scaled, -10000), GIVES(ToCurrency(Long{-7}).scaled, -70000),
        RAISES(ToCurrency(1e15).scaled, Overflow), RAISES(ToCurrency(String(L"1e15")).scaled, Overflow),
        RAISES(ToCurrency(String(L"")).scaled, Mismatch), RAISES(ToCurrency(Null{}).scaled, NullUse),
        GIVES(ToDouble(String(L"2.5")) * 2, 5), GIVES(ToDouble(Currency{5000}) * 2, 1),
        RAISES(ToDouble(String(L"1e400")), Overflow), RAISES(ToDouble(Opaque{}), Mismatch),
    });
}

// Wine's VarI2FromStr gives DISP_E_TYPEMISMATCH for "" and for trailing text, and
// DISP_E_OVERFLOW past the Integer range.
TEST(Convert, TextToIntegerAndDate) {
    testing::CheckRows({
        GIVES(TextToInteger(L" 26 "), 26), GIVES(TextToInteger(L"-32768"), -32768),
        GIVES(TextToInteger(L"2.5"), 2), GIVES(TextToInteger(L"3.5"), 4),
        RAISES(TextToInteger(L"32768"), Overflow), RAISES(TextToInteger(L"70000"), Overflow),
        RAISES(TextToInteger(L""), Mismatch), RAISES(TextToInteger(L"0 (build"), Mismatch),
        RAISES(TextToDate(L"no date").days, Mismatch),
    });
    EXPECT_EQ(TextToDate(L"January 05, 2002 13:04:05").days, 37261 + 47045 / 86400.0);
}

TEST(Convert, DecimalText) {
    EXPECT_EQ(DecimalText(0), L"0");
    EXPECT_EQ(DecimalText(std::numeric_limits<std::int64_t>::min()), L"-9223372036854775808");
}

}  // namespace
}  // namespace orbex
