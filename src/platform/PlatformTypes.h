// Scalar types of the platform functions, spelled without windows.h. Each has the size and
// signedness of its Win32 counterpart; handles of every kind are pointer-sized integers.
#pragma once
#include <cstddef>
#include <cstdint>

namespace orbex::platform {

using Bool = std::int32_t;          // BOOL: non-zero is success
using Boolean = std::uint8_t;       // BOOLEAN, one byte
using Dword = std::uint32_t;        // DWORD, UINT
using Word = std::uint16_t;         // WORD
using Status = std::int32_t;        // LONG result codes of the registry functions
using Hresult = std::int32_t;       // HRESULT
using Lcid = std::uint32_t;         // LCID
using Handle = std::intptr_t;       // HANDLE, HKEY, HWND, HDC, HINSTANCE
using ItemIdList = void*;           // PIDLIST_ABSOLUTE, owned by the task allocator
using Bstr = wchar_t*;              // BSTR, owned by the system allocator
using CurrencyWord = std::int64_t;  // CY, the scaled 64-bit integer
using DateValue = double;           // DATE

constexpr Handle InvalidHandle = -1;  // INVALID_HANDLE_VALUE

}  // namespace orbex::platform
