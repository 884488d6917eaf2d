// FileLib: the machine's drives and optical drives, and byte counts written for people.
#include "FileLib.h"
#include "FileLibPlatform.h"

#include "frame/Checked.h"
#include "frame/FunctionLib.h"
#include "frame/RaisedError.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace orbex {
namespace {

constexpr platform::Dword FirstDriveBuffer = 20;
constexpr platform::Dword DriveCdRom = 5;

// One of the user's number signs, or the fallback when the locale can't say.
String LocaleSign(platform::Dword type, const String& fallback) {
    constexpr platform::Lcid UserDefault = 0x400;
    char buffer[8] = {};
    const std::int32_t length = platform::api().GetLocaleInfoA(UserDefault, type, buffer, sizeof buffer);
    if (length <= 1) return fallback;
    return CutAtFirstNul(FromAnsi(buffer, static_cast<std::size_t>(length)), 1);
}

// The digits of |value| times 10^places, rounded to a whole number with a tie going away from
// zero. The value is first taken at 15 significant digits, as the Automation conversions see a
// double, so 1.005 counts as the decimal 1.005 and not as the binary number just below it.
std::string ScaledDigits(double value, int places) {
    char text[32];
    std::snprintf(text, sizeof text, "%.14e", std::fabs(value));
    std::string digits;
    for (const char* c = text; *c != 'e'; ++c) {
        if (*c != '.') digits.push_back(*c);
    }
    const int exponent = std::atoi(std::strchr(text, 'e') + 1);
    const int shift = exponent - 14 + places;  // digits * 10^shift is the scaled value
    if (shift >= 0) return digits + std::string(static_cast<std::size_t>(shift), '0');

    const int kept = static_cast<int>(digits.size()) + shift;
    if (kept < 0) return "0";
    std::string whole = digits.substr(0, static_cast<std::size_t>(kept));
    if (digits[static_cast<std::size_t>(kept)] >= '5') {
        int at = kept - 1;
        while (at >= 0 && whole[static_cast<std::size_t>(at)] == '9') whole[static_cast<std::size_t>(at--)] = '0';
        if (at < 0) whole.insert(whole.begin(), '1');
        else ++whole[static_cast<std::size_t>(at)];
    }
    return whole.empty() ? "0" : whole;
}

// The pattern ###,###,###,###,##0 with `places` decimals, in the user's signs.
String FormatGrouped(double value, int places) {
    std::string digits = ScaledDigits(value, places);
    digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size()));
    const bool negative = value < 0 && !digits.empty();
    if (digits.size() < static_cast<std::size_t>(places) + 1) {
        digits.insert(0, static_cast<std::size_t>(places) + 1 - digits.size(), '0');
    }
    const std::size_t integerLength = digits.size() - static_cast<std::size_t>(places);

    const String thousands = LocaleSign(0x0F, L",");  // LOCALE_STHOUSAND
    String result = negative ? L"-" : L"";
    for (std::size_t i = 0; i < integerLength; ++i) {
        if (i > 0 && (integerLength - i) % 3 == 0) result += thousands;
        result += static_cast<wchar_t>(digits[i]);
    }
    if (places > 0) {
        result += LocaleSign(0x0E, L".");  // LOCALE_SDECIMAL
        for (std::size_t i = integerLength; i < digits.size(); ++i) result += static_cast<wchar_t>(digits[i]);
    }
    return result;
}

}  // namespace

StringArray FileLib::DriveList() const {
    const auto& api = platform::api();
    std::string buffer = filelib::NulBuffer(FirstDriveBuffer);
    platform::Dword length = api.GetLogicalDriveStringsA(FirstDriveBuffer, buffer.data());
    if (length == 0) {
        const Long code = static_cast<Long>(api.GetLastError());
        Raise(code, L"Quillet:FileLib:DriveList", L"Could not retrieve drive list.");
    }
    if (length > FirstDriveBuffer) {  // too short: the answer is the size needed
        buffer = filelib::NulBuffer(length);
        length = api.GetLogicalDriveStringsA(length, buffer.data());
    }
    // Drop the NUL behind the last root; a count of 0 here leaves a negative length.
    if (length == 0) RaiseRunTime(RunTime::InvalidArgument);
    const String list = filelib::Left(filelib::FromBuffer(buffer), length - 1);
    return SplitText(list, L'\0');
}

StringArray FileLib::CDROMList() const {
    String optical;
    for (const String& root : DriveList().items) {
        if (platform::api().GetDriveTypeA(ToAnsi(root).c_str()) == DriveCdRom) optical += root + L'\0';
    }
    return SplitText(CutAtLastNul(optical, 1), L'\0');
}

String FileLib::FormatSize(Currency bytes, Integer decimalPlaces) const {
    if (decimalPlaces < 0) RaiseRunTime(RunTime::InvalidArgument);

    constexpr std::int64_t Scale = 10000;
    const struct {
        std::int64_t above;
        double divisor;
        const wchar_t* unit;
    } units[] = {
        {1099511627776LL, 1099511627776.0, L" TB"},
        {1073741824LL, 1073741824.0, L" GB"},
        {1048576LL, 1048576.0, L" MB"},
        {1024LL, 1024.0, L" KB"},
    };
    double divisor = 1;
    const wchar_t* unit = bytes.scaled == Scale ? L" byte" : L" bytes";
    for (const auto& row : units) {
        if (bytes.scaled > row.above * Scale) {  // a fraction counts: 1024.5 is above 1024
            divisor = row.divisor;
            unit = row.unit;
            break;
        }
    }
    return FormatGrouped(ToDouble(bytes) / divisor, decimalPlaces) + unit;
}

}  // namespace orbex
