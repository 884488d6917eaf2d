// Opening, creating and probing sub-keys, and connecting to another machine's root. Every new
// key opens its own handle from the root by its whole path; the key it came from only lends
// machine name, root and path prefix.
#include "RegistryKey.h"

#include "KeyHandles.h"

#include "frame/Ansi.h"
#include "frame/RaisedError.h"
#include "platform/Api.h"

namespace orbex {
namespace {

constexpr platform::Dword ReadMask = 0x20019;   // KEY_READ
constexpr platform::Dword WriteMask = 0x4001F;  // WRITE_DAC and every key right but KEY_CREATE_LINK
constexpr platform::Dword ProbeMask = 1;        // KEY_QUERY_VALUE
constexpr Long BadNetworkPath = 53;             // ERROR_BAD_NETPATH

bool IsValidPlatformHandle(platform::Handle handle) {
    return handle != 0 && handle != platform::InvalidHandle;
}

// The tests OpenSubKey and CreateSubKey make before any new key exists.
void CheckOpenArguments(bool rootValid, const String& name, const wchar_t* member) {
    if (!rootValid) Raise(vqInvalidRegistryKey, member, RegistryText::KeyClosed);
    if (name.size() > MaxRegistryNameLength) Raise(vqInvalidArgument, member, RegistryText::NameTooLong);
}

}  // namespace

RegistryKey::OwnedConnection::~OwnedConnection() {
    if (handle == 0 || handle == NoHandle) return;
    try {
        platform::api().RegCloseKey(ToPlatform(handle));
    } catch (...) {
        // Termination cannot report a failure.
    }
}

std::unique_ptr<RegistryKey> RegistryKey::OpenSubKey(const String& name, Boolean writeable) {
    CheckOpenArguments(IsValidHandle(rootKey_), name, L"OpenSubKey");
    auto key = NewSubKey(name);
    if (key->ConnectAndOpen(isTrue(writeable), false)) return key;
    if (key->lastError_ == RegistryAccessDenied) {
        Raise(vqNoAccess, L"OpenSubKey", RegistryText::NoAccess);
    }
    return nullptr;
}

std::unique_ptr<RegistryKey> RegistryKey::CreateSubKey(const String& name) {
    CheckOpenArguments(IsValidHandle(rootKey_), name, L"CreateSubKey");
    auto key = NewSubKey(name);
    if (key->ConnectAndOpen(true, true)) {
        MarkModified();
        return key;
    }
    if (key->lastError_ == RegistryAccessDenied) {
        Raise(vqNoAccess, L"CreateSubKey", RegistryText::NoAccess);
    }
    return nullptr;
}

// A leading backslash counts from the root; otherwise the name goes below this key's path. For
// a root that path is "", and the backslash put in front is removed again by SetSubKeyPath.
std::unique_ptr<RegistryKey> RegistryKey::NewSubKey(const String& name) const {
    auto key = std::make_unique<RegistryKey>();
    key->SetMachineName(machineName_);
    key->SetRootKey(rootKey_);
    if (!name.empty() && name.front() == L'\\') {
        key->SetSubKeyPath(name);
    } else {
        key->SetSubKeyPath(subKeyPath_ + L"\\" + name);
    }
    return key;
}

// A named machine is connected to at every open. The connection becomes this key's root when
// there is a path to open below it, and is then this key's to close; with no path it only
// proves the machine answers, and the key addresses the root it already had.
bool RegistryKey::ConnectAndOpen(bool writeable, bool create) {
    const auto& api = platform::api();
    if (!machineName_.empty()) {
        const std::string machine = ToAnsi(machineName_);
        platform::Handle connection = 0;
        lastError_ = api.RegConnectRegistryA(machine.c_str(), ToPlatform(rootKey_), &connection);
        machineName_ = FromAnsi(machine);
        if (lastError_ == 0) {
            if (subKeyPath_.empty()) {
                if (IsValidPlatformHandle(connection)) api.RegCloseKey(connection);
            } else {
                rootKey_ = FromPlatform(connection);
                connection_.handle = rootKey_;
            }
        }
    }
    if (lastError_ != 0) return false;
    if (subKeyPath_.empty()) {
        keyHandle_ = rootKey_;
        return IsValidHandle(keyHandle_);
    }

    const std::string path = ToAnsi(subKeyPath_);
    platform::Handle opened = 0;
    if (create) {
        char className[] = "0";
        platform::SecurityAttributes security{};
        platform::Dword disposition = 0;  // created or opened: nobody asks
        lastError_ = api.RegCreateKeyExA(ToPlatform(rootKey_), path.c_str(), 0, className, 0,
                                         WriteMask, &security, &opened, &disposition);
    } else {
        lastError_ = api.RegOpenKeyExA(ToPlatform(rootKey_), path.c_str(), 0,
                                       writeable ? WriteMask : ReadMask, &opened);
    }
    // The path as the platform read it, up to any NUL: what follows a NUL would otherwise reach
    // the paths of this key's sub-keys, and those would open this key again.
    subKeyPath_ = FromAnsi(path.c_str());
    if (lastError_ == 0) keyHandle_ = FromPlatform(opened);
    return IsValidHandle(keyHandle_);
}

// Looks the name up under the root, never below this key's path, and never on another machine.
// Whatever goes wrong, the answer is false and the probe handle does not stay open.
bool RegistryKey::SubKeyExists(const String& name) {
    bool exists = false;
    platform::Handle probe = 0;
    try {
        if (!IsValidHandle(rootKey_) || name.size() > MaxRegistryNameLength) return false;
        const std::string path = ToAnsi(!name.empty() && name.front() == L'\\' ? name.substr(1) : name);
        exists = platform::api().RegOpenKeyExA(ToPlatform(rootKey_), path.c_str(), 0, ProbeMask,
                                               &probe) == 0;
    } catch (...) {
        exists = false;
    }
    try {
        if (IsValidPlatformHandle(probe)) platform::api().RegCloseKey(probe);
    } catch (...) {
    }
    return exists;
}

// The receiver plays no part. A successful connection is the new key's own handle, released by
// its CloseKey like any other.
std::unique_ptr<RegistryKey> RegistryKey::OpenRemoteBaseKey(Long rootKey, const String& machineName) {
    auto key = std::make_unique<RegistryKey>();
    key->SetRootKey(rootKey);
    key->ConnectRoot(machineName);
    switch (key->lastError_) {
        case 0: return key;
        case RegistryAccessDenied: Raise(vqNoAccess, L"OpenRemoteBaseKey", RegistryText::NoAccess);
        case BadNetworkPath:
            Raise(vqInvalidArgument, L"OpenRemoteBaseKey", RegistryText::InvalidRootOrMachine);
        default: return nullptr;
    }
}

bool RegistryKey::ConnectRoot(const String& machineName) {
    SetMachineName(machineName);
    if (!machineName_.empty()) {
        const std::string machine = ToAnsi(machineName_);
        platform::Handle connection = 0;
        lastError_ = platform::api().RegConnectRegistryA(machine.c_str(), ToPlatform(rootKey_),
                                                         &connection);
        machineName_ = FromAnsi(machine);
        if (lastError_ == 0) keyHandle_ = FromPlatform(connection);
    }
    return IsValidHandle(keyHandle_);
}

}  // namespace orbex
