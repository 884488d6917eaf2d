// Writing and deleting values. SetValue decides by the requested type alone: the type picks a
// conversion, and the value either passes that conversion's test or is refused before the
// platform is called, so a refused write leaves the stored value as it was.
#include "RegistryKey.h"

#include "KeyHandles.h"

#include "frame/Ansi.h"
#include "frame/Checked.h"
#include "frame/Convert.h"
#include "frame/RaisedError.h"
#include "platform/Api.h"

#include <cstdint>
#include <string>

namespace orbex {
namespace {

[[noreturn]] void Refuse() {
    Raise(vqInvalidDataType, L"SetValue", RegistryText::InvalidDataType);
}

// The number's bytes, least significant first, so a negative one stores its two's complement.
std::string LittleEndian(std::uint64_t number, std::size_t width) {
    std::string bytes(width, '\0');
    for (char& byte : bytes) {
        byte = static_cast<char>(number & 0xFF);
        number >>= 8;
    }
    return bytes;
}

// The bytes stored for a value under a type. Byte arrays and objects have no text form and
// are refused by the text conversion itself with a type mismatch, like every other array.
std::string StoredForm(const Variant& value, Long valueType) {
    switch (valueType) {
        case vqString:
        case vqExpandedString:
            return ToAnsi(ToText(value));  // no terminator; stored unexpanded
        case vqBinary: {
            const auto* array = std::get_if<ByteArray>(&value);
            if (array == nullptr) Refuse();
            return std::string(array->items.begin(), array->items.end());
        }
        case vqDWORD:
            if (!IsNumeric(value)) Refuse();
            return LittleEndian(static_cast<std::uint32_t>(ToLong(value)), 4);
        case vqMultiString: {
            const auto* array = std::get_if<StringArray>(&value);
            if (array == nullptr) Refuse();
            std::string data;
            for (const String& item : array->items) data += ToAnsi(item) + '\0';
            return data + '\0';
        }
        case vqQWORD: {
            // Scaled back by 10000 so that the stored word is the whole number itself:
            // 5 stores 5 and 2.4 stores 2.
            if (!IsNumeric(value)) Refuse();
            const Currency whole = RoundToCurrency(ToDouble(ToCurrency(value)) / 10000.0);
            return LittleEndian(static_cast<std::uint64_t>(whole.scaled), 8);
        }
        default:
            return std::string{};  // any other type number is stored empty
    }
}

}  // namespace

void RegistryKey::SetValue(const String& name, const Variant& value, Long valueType) {
    if (!IsValidHandle(rootKey_)) Raise(vqInvalidRegistryKey, L"SetValue", RegistryText::KeyClosed);
    if (name.size() > MaxRegistryNameLength) {
        Raise(vqInvalidArgument, L"SetValue", RegistryText::NameTooLong);
    }
    const std::string data = StoredForm(value, valueType);
    lastError_ = platform::api().RegSetValueExA(
        ToPlatform(keyHandle_), ToAnsi(name).c_str(), 0, static_cast<platform::Dword>(valueType),
        reinterpret_cast<const std::uint8_t*>(data.data()), static_cast<platform::Dword>(data.size()));
    if (lastError_ == 0) MarkModified();
    if (lastError_ == RegistryAccessDenied) {
        Raise(vqNoAccess, L"SetValue", RegistryText::NoAccess);
    }
}

// No closed-key test: a key without a handle gets the platform's failure, which reads as a
// missing value.
void RegistryKey::DeleteValue(const String& name, Boolean errorOnMissingSubKey) {
    lastError_ = platform::api().RegDeleteValueA(ToPlatform(keyHandle_), ToAnsi(name).c_str());
    if (lastError_ == 0) {
        MarkModified();
    } else if (lastError_ == RegistryAccessDenied) {
        Raise(vqNoAccess, L"DeleteValue", RegistryText::NoAccess);
    } else if (isTrue(errorOnMissingSubKey)) {
        Raise(vqInvalidArgument, L"DeleteValue", RegistryText::ValueMissing);
    }
}

}  // namespace orbex
