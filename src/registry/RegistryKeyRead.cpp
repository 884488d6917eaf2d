// Reading values: one stored value becomes a Variant by its stored type. A size probe comes
// first; the read that follows passes the probe's size and is not retried, so a value that
// changes in between gives whatever the read left in the receiving buffer.
#include "RegistryKey.h"

#include "KeyHandles.h"
#include "StoredValue.h"

#include "frame/Ansi.h"
#include "frame/Checked.h"
#include "frame/FunctionLib.h"
#include "frame/RaisedError.h"
#include "platform/Api.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace orbex {
namespace {

using platform::Dword;

constexpr Long MoreData = 234;  // ERROR_MORE_DATA: the value is larger than the buffer offered

constexpr Dword TextType = 1, ExpandTextType = 2, BinaryType = 3, DwordType = 4,
                MultiTextType = 7, QwordType = 11;

const wchar_t* const ReadSource = L"GetValue";

// One query of a value into the given buffer; the type seen is dropped, the probe has it.
Long Query(Long handle, const std::string& name, std::uint8_t* data, Dword size) {
    Dword type = 0;
    return platform::api().RegQueryValueExA(ToPlatform(handle), name.c_str(), nullptr, &type,
                                            data, &size);
}

// The low `width` bytes of a number stored little-endian, which may have been stored with more
// bytes than the number's width, or fewer (its high bytes then count as 0).
std::uint64_t StoredNumber(const std::uint8_t* bytes, Dword size, std::size_t width) {
    std::uint64_t number = 0;
    for (std::size_t i = width; i-- > 0;) number = (number << 8) | (i < size ? bytes[i] : 0);
    return number;
}

// Environment references expanded; the text as read when the platform can't expand it.
String ExpandText(const std::string& stored, const String& unexpanded) {
    const auto& api = platform::api();
    char nothing = '\0';
    const Dword needed = api.ExpandEnvironmentStringsA(stored.c_str(), &nothing, 0);
    std::string expanded(needed, '\0');
    if (api.ExpandEnvironmentStringsA(stored.c_str(), expanded.data(), needed) == 0) {
        return CutAtFirstNul(unexpanded, 1);
    }
    return CutAtFirstNul(FromAnsi(expanded), 1);
}

}  // namespace

Variant StoredValue(Dword type, const std::uint8_t* bytes, Dword size, Boolean expandVariables) {
    switch (type) {
        case TextType:
        case ExpandTextType:
        case MultiTextType: {
            const std::string stored(reinterpret_cast<const char*>(bytes), size);
            const String text = FromAnsi(stored);
            if (type == ExpandTextType && isTrue(expandVariables)) return ExpandText(stored, text);
            if (type == MultiTextType) return SplitText(CutAtLastNul(text, 2), L'\0');
            return CutAtFirstNul(text, 1);
        }
        case BinaryType: {
            // An empty value still gives one element.
            ByteArray array;
            if (size == 0) array.items.assign(1, 0);
            else array.items.assign(bytes, bytes + size);
            return array;
        }
        case DwordType:
            return static_cast<Long>(static_cast<std::uint32_t>(StoredNumber(bytes, size, 4)));
        case QwordType:
            return CurrencyFromCount64(static_cast<std::int64_t>(StoredNumber(bytes, size, 8)));
        default:
            return Empty{};
    }
}

// True only when the unnamed value holds data: a missing one and one of size 0 both answer
// False. LastError is left alone.
bool RegistryKey::HasDefaultValue() {
    if (!IsValidHandle(rootKey_)) Raise(vqInvalidRegistryKey, ReadSource, RegistryText::KeyClosed);
    std::uint32_t data = 0;
    return Query(keyHandle_, std::string{}, reinterpret_cast<std::uint8_t*>(&data), 0) == MoreData;
}

Variant RegistryKey::GetValue(const String& name, const Variant& defaultValue, Boolean expandVariables) {
    Long dataType = 0;
    return GetValueEx(name, dataType, defaultValue, expandVariables);
}

Variant RegistryKey::GetValueEx(const String& name, Long& dataType, const Variant& defaultValue,
                                Boolean expandVariables) {
    if (!IsValidHandle(rootKey_)) Raise(vqInvalidRegistryKey, ReadSource, RegistryText::KeyClosed);
    const std::string ansiName = ToAnsi(name);

    // Offering a size of 0 learns the type and the size; only an empty value fits.
    Dword type = 0, size = 0;
    std::uint32_t probe = 0;
    lastError_ = platform::api().RegQueryValueExA(ToPlatform(keyHandle_), ansiName.c_str(), nullptr,
                                                  &type, reinterpret_cast<std::uint8_t*>(&probe), &size);
    dataType = static_cast<Long>(type);
    if (lastError_ != 0 && lastError_ != MoreData) return defaultValue;

    // The read passes the probe's size into a buffer at least that large, so a value that grew
    // meanwhile cannot run over it. An empty binary value and an untyped one need no read.
    const bool typed = type == TextType || type == ExpandTextType || type == MultiTextType ||
                       type == BinaryType || type == DwordType || type == QwordType;
    if (!typed) return Empty{};
    std::vector<std::uint8_t> bytes(std::max<Dword>(size, 1), 0);
    if (type != BinaryType || size != 0) lastError_ = Query(keyHandle_, ansiName, bytes.data(), size);
    return StoredValue(type, bytes.data(), size, expandVariables);
}

}  // namespace orbex
