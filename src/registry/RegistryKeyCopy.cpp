// Copying and renaming, composed from the key's own members so that their failures pass
// through unchanged. A rename is a copy followed by a delete; before it deletes anything it
// makes sure the copy is whole: every read and write of the move is checked, values of types
// the typed members cannot carry travel byte for byte, and targets inside the source are
// refused before anything is written. A copy takes its values from one listing per key, which
// raises what GetValueNames would, and writes them through SetValue.
#include "RegistryKey.h"

#include "KeyHandles.h"
#include "StoredValue.h"
#include "frame/Ansi.h"
#include "frame/RaisedError.h"
#include "platform/Api.h"

#include <cwctype>
#include <vector>

namespace orbex {
namespace {

constexpr Long NotFound = 2;    // ERROR_FILE_NOT_FOUND: the value is not there
constexpr Long MoreData = 234;  // ERROR_MORE_DATA

// Registry names compare without regard to case.
String Lowered(const String& text) {
    String out;
    out.reserve(text.size());
    for (wchar_t c : text) out.push_back(static_cast<wchar_t>(std::towlower(c)));
    return out;
}

// A key path as the registry resolves it: the platform reads it only up to a NUL, and runs of
// backslashes and trailing ones name the same key.
String Canonical(const String& path) {
    String out;
    for (wchar_t c : Lowered(path.substr(0, path.find(L'\0')))) {
        if (c == L'\\' && !out.empty() && out.back() == L'\\') continue;
        out.push_back(c);
    }
    while (!out.empty() && out.back() == L'\\') out.pop_back();
    return out;
}

bool IsSameOrBelow(const String& path, const String& ancestor) {
    const String p = Canonical(path), a = Canonical(ancestor);
    if (a.empty() || p == a) return true;
    return p.size() > a.size() && p.compare(0, a.size(), a) == 0 && p[a.size()] == L'\\';
}

bool IsTypedValue(Long type) {
    switch (type) {
    case vqString: case vqExpandedString: case vqBinary: case vqDWORD: case vqMultiString: case vqQWORD:
        return true;
    default:
        return false;
    }
}

bool HasEntries(const StringArray& names) { return names.lower >= 0; }

}  // namespace

std::unique_ptr<RegistryKey> RegistryKey::RenameSubKey(const String& name) {
    return CopyOrMoveSubKey(name, Transfer::Move, L"RenameSubKey");
}

std::unique_ptr<RegistryKey> RegistryKey::CopySubKey(const String& name) {
    return CopyOrMoveSubKey(name, Transfer::Copy, L"CopySubKey");
}

RegistryKey* RegistryKey::CopySubKeyEx(RegistryKey* destination) {
    if (!destination) Raise(vqInvalidArgument, L"CopySubKeyEx", RegistryText::DestinationMissing);
    if (Contains(*destination)) Raise(vqInvalidArgument, L"CopySubKeyEx", RegistryText::TargetInsideSource);
    CopyTree(*destination, Transfer::Copy, L"CopySubKeyEx");
    return destination;
}

void RegistryKey::CopyValues(RegistryKey* destination) {
    if (!destination) Raise(vqInvalidArgument, L"CopyValues", RegistryText::DestinationMissing);
    CopyValuesTo(*destination, Transfer::Copy, L"CopyValues");
}

void RegistryKey::CopyValue(const String& name, RegistryKey* destination) {
    if (!destination) Raise(vqInvalidArgument, L"CopyValue", RegistryText::DestinationMissing);
    CopyValueTo(name, *destination, name, Transfer::Copy, L"CopyValue");
}

void RegistryKey::RenameValue(const String& oldName, const String& newName) {
    // Names that differ only in case address the same value: deleting the old name after
    // writing the new one would delete the value itself.
    if (Lowered(oldName) == Lowered(newName)) return;
    CopyValueTo(oldName, *this, newName, Transfer::Move, L"RenameValue");
    DeleteValue(oldName, False);
}

// The target rule: a name with a backslash is taken as it is, a plain name makes a sibling.
std::unique_ptr<RegistryKey> RegistryKey::CopyOrMoveSubKey(const String& name, Transfer transfer,
                                                         const wchar_t* member) {
    // A closed key lists nothing: its move would copy nothing and then delete the source.
    if (transfer == Transfer::Move && !IsValidHandle())
        Raise(vqInvalidRegistryKey, member, RegistryText::KeyClosed);
    String target;
    if (name.find(L'\\') != String::npos) {
        target = name;
    } else {
        const std::size_t last = subKeyPath_.rfind(L'\\');
        target = L"\\" + (last == String::npos ? String() : subKeyPath_.substr(0, last + 1)) + name;
    }
    const String targetPath = target.front() == L'\\' ? target.substr(1) : subKeyPath_ + L"\\" + target;
    if (IsSameOrBelow(targetPath, subKeyPath_)) Raise(vqInvalidArgument, member, RegistryText::TargetInsideSource);

    std::unique_ptr<RegistryKey> created = CreateSubKey(target);
    if (!created) Raise(vqInvalidOperation, member, RegistryText::SubKeyNotCreated);
    CopyTree(*created, transfer, member);
    if (transfer == Transfer::Move) {
        DeleteSubKeyTree(L"", False);
        CloseKey();
        ShareKeyHandle(*created);
    }
    return created;
}

// Sub-keys first, then the key's own values.
void RegistryKey::CopyTree(RegistryKey& destination, Transfer transfer, const wchar_t* member) {
    CopySubKeys(destination, transfer, member);
    CopyValuesTo(destination, transfer, member);
}

void RegistryKey::CopySubKeys(RegistryKey& destination, Transfer transfer, const wchar_t* member) {
    const StringArray names = GetSubKeyNames();
    if (!HasEntries(names)) return;
    for (const String& name : names.items) {
        std::unique_ptr<RegistryKey> created = destination.CreateSubKey(name);
        if (!created) Raise(vqInvalidOperation, member, RegistryText::SubKeyNotCreated);
        std::unique_ptr<RegistryKey> source = OpenSubKey(name, False);
        if (!source) Raise(vqInvalidArgument, member, RegistryText::SubKeyMissing);
        if (transfer == Transfer::Copy) {
            // The sub-key's values, then its sub-keys. Writing the same values again after the
            // sub-keys, as a plain composition of the members would, changes nothing.
            WriteValues(source->ListValues(), *created);
            source->CopySubKeys(*created, transfer, member);
        } else {
            source->CopyValuesTo(*created, transfer, member);
            source->CopyTree(*created, transfer, member);
        }
    }
}

// A copy takes each value's type and data from the listing that names it; a move reads every
// value on its own, checked, and carries untyped ones byte for byte.
void RegistryKey::CopyValuesTo(RegistryKey& destination, Transfer transfer, const wchar_t* member) {
    if (transfer == Transfer::Copy) return WriteValues(ListValues(), destination);
    const StringArray names = GetValueNames();
    if (!HasEntries(names)) return;
    for (const String& name : names.items) CopyValueTo(name, destination, name, transfer, member);
}

// GetValueNames' listing, each name with the type and data its fetch brought along.
std::vector<RegistryKey::ListedValue> RegistryKey::ListValues() {
    std::vector<ListedValue> values;
    const StringArray names = ListValueNames([&](std::uint32_t type, const std::uint8_t* data, std::uint32_t size) {
        values.push_back({String(), type, {data, data + size}});
    });
    if (!HasEntries(names)) return {};
    for (std::size_t index = 0; index < values.size(); ++index) values[index].name = names.items[index];
    return values;
}

// Each value as GetValueEx reads it unexpanded, written under its own type.
void RegistryKey::WriteValues(const std::vector<ListedValue>& values, RegistryKey& destination) {
    for (const ListedValue& value : values) {
        const auto size = static_cast<platform::Dword>(value.data.size());
        destination.SetValue(value.name, StoredValue(value.type, value.data.data(), size, False),
                             static_cast<Long>(value.type));
    }
}

// A typed read and a typed write. A move also checks both, and carries a value of a type the
// typed members cannot hold byte for byte.
void RegistryKey::CopyValueTo(const String& name, RegistryKey& destination, const String& targetName,
                              Transfer transfer, const wchar_t* member) {
    Long type = 0;
    const Variant value = GetValueEx(name, type, String(), False);
    if (transfer == Transfer::Move) {
        if (lastError_ != 0 && lastError_ != NotFound && lastError_ != MoreData)
            Raise(vqInvalidOperation, member, RegistryText::ValueNotCopied);
        if (lastError_ != NotFound && !IsTypedValue(type))
            return CarryRawValue(name, destination, targetName, member);
        if (IsTypedValue(type) && lastError_ != 0)
            Raise(vqInvalidOperation, member, RegistryText::ValueNotCopied);
    }
    destination.SetValue(targetName, value, type);
    if (transfer == Transfer::Move && destination.lastError_ != 0)
        Raise(vqInvalidOperation, member, RegistryText::ValueNotCopied);
}

// The stored bytes and type, unchanged. A value that grows meanwhile is read again.
void RegistryKey::CarryRawValue(const String& name, RegistryKey& destination, const String& targetName,
                                const wchar_t* member) {
    const std::string ansiName = ToAnsi(name);
    std::vector<std::uint8_t> data(16);
    platform::Dword type = 0, size = 0;
    Long result = MoreData;
    for (int attempt = 0; attempt < 4 && result == MoreData; ++attempt) {
        size = static_cast<platform::Dword>(data.size());
        result = platform::api().RegQueryValueExA(ToPlatform(keyHandle_), ansiName.c_str(), nullptr, &type,
                                                  data.data(), &size);
        if (result == MoreData) data.resize(size);
    }
    lastError_ = result;
    if (result != 0) Raise(vqInvalidOperation, member, RegistryText::ValueNotCopied);
    destination.lastError_ = platform::api().RegSetValueExA(ToPlatform(destination.keyHandle_),
                                                            ToAnsi(targetName).c_str(), 0, type, data.data(), size);
    if (destination.lastError_ != 0) Raise(vqInvalidOperation, member, RegistryText::ValueNotCopied);
    destination.MarkModified();
}

// Whether `other` is this key or lies below it, on the same root of the same machine.
bool RegistryKey::Contains(const RegistryKey& other) const {
    return rootKey_ == other.rootKey_ && Lowered(machineName_) == Lowered(other.machineName_) &&
           IsSameOrBelow(other.subKeyPath_, subKeyPath_);
}

}  // namespace orbex
