// The numbers and fixed descriptions that RegistryKey members raise. Source is the bare member
// name, joined by the member at the moment it raises.
#pragma once
#include "frame/Types.h"

#include <cstddef>

namespace orbex {

enum vqRegExceptions : Long {
    vqInvalidRegistryKey = static_cast<Long>(0x80040064),  // the key fails the closed-key test
    vqInvalidDataType = static_cast<Long>(0x80040065),     // SetValue data does not fit the type
    vqInvalidOperation = static_cast<Long>(0x80040066),    // DeleteSubKey on a key with sub-keys
    vqInvalidArgument = static_cast<Long>(0x80040067),     // over-long or missing name, root target
    vqNoAccess = static_cast<Long>(0x80040068),            // the platform refused with code 5
};

// The platform's result code for access denied, raised as vqNoAccess.
inline constexpr Long RegistryAccessDenied = 5;

// The longest sub-key or value name a member accepts, in UTF-16 units.
inline constexpr std::size_t MaxRegistryNameLength = 255;

namespace RegistryText {
inline constexpr const wchar_t* KeyClosed = L"The registry key is closed.";
inline constexpr const wchar_t* NameTooLong =
    L"The length of the specified subkey is greater than 255 characters.";
inline constexpr const wchar_t* NoAccess =
    L"The user does not have permission to complete the operation.";
inline constexpr const wchar_t* SubKeyMissing = L"The subkey does not exist.";
// Two fixed texts joined; the first ends in two blanks.
inline constexpr const wchar_t* SubKeyHasChildren =
    L"This subkey has child subkeys.  Use DeleteSubKeyTree to recursively delete subkeys.";
inline constexpr const wchar_t* RootNotDeletable = L"You can't delete system root keys.";
inline constexpr const wchar_t* ValueMissing = L"The value does not exist.";
inline constexpr const wchar_t* InvalidDataType =
    L"Invalid data type.  Data passed in does not match the data type specified.";
inline constexpr const wchar_t* InvalidRootOrMachine = L"The root key or machine name is invalid.";
// Copying and renaming refuse what would loop for ever or lose data.
inline constexpr const wchar_t* TargetInsideSource = L"The target key is the source key or one of its subkeys.";
inline constexpr const wchar_t* DestinationMissing = L"The destination key does not exist.";
inline constexpr const wchar_t* SubKeyNotCreated = L"The subkey could not be created.";
inline constexpr const wchar_t* ValueNotCopied = L"The value could not be copied.";
}  // namespace RegistryText

}  // namespace orbex
