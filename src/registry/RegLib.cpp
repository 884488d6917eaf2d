#include "RegLib.h"

#include "frame/RaisedError.h"
#include "platform/Api.h"

#include <new>

namespace orbex {
namespace {

constexpr platform::Dword Windows9xFamily = 1;       // VER_PLATFORM_WIN32_WINDOWS
constexpr platform::Dword WindowsNtFamily = 2;       // VER_PLATFORM_WIN32_NT
constexpr platform::Dword ExtendedRecordSize = 156;  // OSVERSIONINFOEXA
constexpr platform::Dword PlainRecordSize = 148;     // OSVERSIONINFOA

static_assert(sizeof(platform::OsVersionInfoEx) == ExtendedRecordSize);

// Whether the platform reports the given family. The extended record is asked for first; older
// systems refuse it and answer the plain one. Anything but exactly 1 is a refusal.
bool IsPlatformFamily(platform::Dword family) {
    platform::OsVersionInfoEx info{};
    info.dwOSVersionInfoSize = ExtendedRecordSize;
    platform::Bool result = platform::api().GetVersionExA(&info);
    if (result != 1) {
        info.dwOSVersionInfoSize = PlainRecordSize;
        result = platform::api().GetVersionExA(&info);
    }
    return result == 1 && info.dwPlatformId == family;
}

// The shared root procedure, a catch-all: any failure gives the empty reference.
std::unique_ptr<RegistryKey> MakeRoot(vqRegKeys root, const String& machineName) {
    try {
        auto key = std::make_unique<RegistryKey>();
        key->SetMachineName(machineName);
        key->SetRootKey(root);
        key->SetKeyHandle(root);
        return key;
    } catch (const RaisedError&) {
        return nullptr;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

// A root that exists on one platform family only; also a catch-all.
std::unique_ptr<RegistryKey> MakeFamilyRoot(platform::Dword family, vqRegKeys root,
                                            const String& machineName) {
    try {
        if (!IsPlatformFamily(family)) return nullptr;
        return MakeRoot(root, machineName);
    } catch (const RaisedError&) {
        return nullptr;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

}  // namespace

std::unique_ptr<RegistryKey> RegLib::ClassesRoot(const String& machineName) {
    return MakeRoot(vqClassesRoot, machineName);
}

std::unique_ptr<RegistryKey> RegLib::CurrentConfig(const String& machineName) {
    return MakeRoot(vqCurrentConfig, machineName);
}

std::unique_ptr<RegistryKey> RegLib::CurrentUser(const String& machineName) {
    return MakeRoot(vqCurrentUser, machineName);
}

std::unique_ptr<RegistryKey> RegLib::DynData(const String& machineName) {
    return MakeFamilyRoot(Windows9xFamily, vqDynData, machineName);
}

std::unique_ptr<RegistryKey> RegLib::LocalMachine(const String& machineName) {
    return MakeRoot(vqLocalMachine, machineName);
}

std::unique_ptr<RegistryKey> RegLib::PerformanceData(const String& machineName) {
    return MakeFamilyRoot(WindowsNtFamily, vqPerformanceData, machineName);
}

std::unique_ptr<RegistryKey> RegLib::Users(const String& machineName) {
    return MakeRoot(vqUsers, machineName);
}

}  // namespace orbex
