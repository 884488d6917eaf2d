#include "Convert.h"

#include "Checked.h"
#include "RaisedError.h"
#include "platform/Api.h"

#include <cwchar>
#include <type_traits>

namespace orbex {
namespace {

constexpr platform::Lcid UserDefaultLocale = 0x400;  // LOCALE_USER_DEFAULT
constexpr platform::Hresult TypeMismatchResult = static_cast<platform::Hresult>(0x80020005);
constexpr platform::Hresult OverflowResult = static_cast<platform::Hresult>(0x8002000A);
constexpr platform::Hresult InvalidArgResult = static_cast<platform::Hresult>(0x80070057);

// A failed Automation conversion as the run-time error a client's language raises for it.
void Check(platform::Hresult result) {
    if (result >= 0) return;
    if (result == OverflowResult) RaiseRunTime(RunTime::Overflow);
    if (result == InvalidArgResult) RaiseRunTime(RunTime::InvalidArgument);
    RaiseRunTime(RunTime::TypeMismatch);
}

// Owns a text the Automation runtime allocated, and frees it on every way out.
class OwnedBstr {
public:
    OwnedBstr() = default;
    OwnedBstr(const OwnedBstr&) = delete;
    OwnedBstr& operator=(const OwnedBstr&) = delete;
    ~OwnedBstr() {
        if (text_ != nullptr) platform::api().SysFreeString(text_);
    }
    platform::Bstr* out() { return &text_; }
    String str() const { return text_ != nullptr ? String(text_, std::wcslen(text_)) : String{}; }

private:
    platform::Bstr text_ = nullptr;
};

template <class Value, class Function>
String AutomationText(Function function, Value value) {
    OwnedBstr text;
    Check(function(value, UserDefaultLocale, 0, text.out()));
    return text.str();
}

double TextToDouble(const String& text) {
    double value = 0;
    Check(platform::api().VarR8FromStr(text.c_str(), UserDefaultLocale, 0, &value));
    return value;
}

Long BooleanNumber(BooleanValue value) { return isTrue(value.bits) ? -1 : 0; }

// Currency to Long: the whole part, the fraction rounded with ties to even.
Long RoundCurrencyToLong(Currency value) {
    std::int64_t whole = value.scaled / 10000;
    const std::int64_t fraction = value.scaled % 10000;  // carries the sign of the value
    const bool odd = (whole & 1) != 0;
    if (fraction > 5000 || (fraction == 5000 && odd)) ++whole;
    if (fraction < -5000 || (fraction == -5000 && odd)) --whole;
    return ToLong(whole);
}

[[noreturn]] void NotANumber(const Variant& value) {
    if (std::holds_alternative<Null>(value)) RaiseRunTime(RunTime::InvalidUseOfNull);
    RaiseRunTime(RunTime::TypeMismatch);
}

}  // namespace

String ToText(const Variant& value) {
    const auto& api = platform::api();
    return std::visit(
        [&](const auto& v) -> String {
            using T = std::decay_t<decltype(v)>;
            if constexpr (std::is_same_v<T, String>) {
                return v;
            } else if constexpr (std::is_same_v<T, Empty>) {
                return String{};
            } else if constexpr (std::is_same_v<T, Null>) {
                RaiseRunTime(RunTime::InvalidUseOfNull);
            } else if constexpr (std::is_same_v<T, Integer> || std::is_same_v<T, Long> ||
                                 std::is_same_v<T, Byte>) {
                return DecimalText(v);
            } else if constexpr (std::is_same_v<T, float>) {
                return AutomationText(api.VarBstrFromR4, v);
            } else if constexpr (std::is_same_v<T, double>) {
                return AutomationText(api.VarBstrFromR8, v);
            } else if constexpr (std::is_same_v<T, Currency>) {
                return AutomationText(api.VarBstrFromCy, v.scaled);
            } else if constexpr (std::is_same_v<T, Date>) {
                return AutomationText(api.VarBstrFromDate, v.days);
            } else if constexpr (std::is_same_v<T, BooleanValue>) {
                return isTrue(v.bits) ? L"True" : L"False";
            } else {  // arrays, objects and error values have no text form
                RaiseRunTime(RunTime::TypeMismatch);
            }
        },
        value);
}

bool IsNumeric(const Variant& value) {
    return std::visit(
        [](const auto& v) -> bool {
            using T = std::decay_t<decltype(v)>;
            if constexpr (std::is_same_v<T, String>) {
                double number = 0;
                return platform::api().VarR8FromStr(v.c_str(), UserDefaultLocale, 0, &number) >= 0;
            } else {
                return std::is_same_v<T, Empty> || std::is_same_v<T, Integer> ||
                       std::is_same_v<T, Long> || std::is_same_v<T, float> ||
                       std::is_same_v<T, double> || std::is_same_v<T, Currency> ||
                       std::is_same_v<T, BooleanValue> || std::is_same_v<T, Byte>;
            }
        },
        value);
}

// A Date converts as its day count, as the Automation runtime converts it.
Long ToLong(const Variant& value) {
    if (std::holds_alternative<Empty>(value)) return 0;
    if (auto v = std::get_if<Integer>(&value)) return *v;
    if (auto v = std::get_if<Long>(&value)) return *v;
    if (auto v = std::get_if<Byte>(&value)) return *v;
    if (auto v = std::get_if<BooleanValue>(&value)) return BooleanNumber(*v);
    if (auto v = std::get_if<float>(&value)) return RoundToLong(*v);
    if (auto v = std::get_if<double>(&value)) return RoundToLong(*v);
    if (auto v = std::get_if<Date>(&value)) return RoundToLong(v->days);
    if (auto v = std::get_if<Currency>(&value)) return RoundCurrencyToLong(*v);
    if (auto v = std::get_if<String>(&value)) return RoundToLong(TextToDouble(*v));
    NotANumber(value);
}

Currency ToCurrency(const Variant& value) {
    if (std::holds_alternative<Empty>(value)) return {};
    if (auto v = std::get_if<Integer>(&value)) return CurrencyFromCount32(*v);
    if (auto v = std::get_if<Long>(&value)) return CurrencyFromCount32(*v);
    if (auto v = std::get_if<Byte>(&value)) return CurrencyFromCount32(*v);
    if (auto v = std::get_if<BooleanValue>(&value)) return CurrencyFromCount32(BooleanNumber(*v));
    if (auto v = std::get_if<float>(&value)) return RoundToCurrency(*v);
    if (auto v = std::get_if<double>(&value)) return RoundToCurrency(*v);
    if (auto v = std::get_if<Date>(&value)) return RoundToCurrency(v->days);
    if (auto v = std::get_if<Currency>(&value)) return *v;
    if (auto v = std::get_if<String>(&value)) {
        platform::CurrencyWord scaled = 0;
        Check(platform::api().VarCyFromStr(v->c_str(), UserDefaultLocale, 0, &scaled));
        return {scaled};
    }
    NotANumber(value);
}

double ToDouble(const Variant& value) {
    if (std::holds_alternative<Empty>(value)) return 0;
    if (auto v = std::get_if<Integer>(&value)) return *v;
    if (auto v = std::get_if<Long>(&value)) return *v;
    if (auto v = std::get_if<Byte>(&value)) return *v;
    if (auto v = std::get_if<BooleanValue>(&value)) return BooleanNumber(*v);
    if (auto v = std::get_if<float>(&value)) return *v;
    if (auto v = std::get_if<double>(&value)) return *v;
    if (auto v = std::get_if<Date>(&value)) return v->days;
    if (auto v = std::get_if<Currency>(&value)) return orbex::ToDouble(*v);
    if (auto v = std::get_if<String>(&value)) return TextToDouble(*v);
    NotANumber(value);
}

Integer TextToInteger(const String& text) {
    Integer value = 0;
    Check(platform::api().VarI2FromStr(text.c_str(), UserDefaultLocale, 0, &value));
    return value;
}

Date TextToDate(const String& text) {
    platform::DateValue days = 0;
    Check(platform::api().VarDateFromStr(text.c_str(), UserDefaultLocale, 0, &days));
    return {days};
}

String DecimalText(std::int64_t value) {
    // Digits from the magnitude as unsigned, so the most negative value has one too.
    std::uint64_t magnitude =
        value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
    wchar_t digits[21];
    wchar_t* start = digits + 21;
    do {
        *--start = static_cast<wchar_t>(L'0' + magnitude % 10);
        magnitude /= 10;
    } while (magnitude != 0);
    if (value < 0) *--start = L'-';
    return String(start, digits + 21);
}

}  // namespace orbex
