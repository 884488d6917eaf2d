// Test helpers for the system classes: version records of the known families, and a scope in
// which GetVersionExA answers one of them as the platform would.
#pragma once
#include "platform/TestHook.h"

#include <cstring>
#include <vector>

namespace orbex::testing {

using platform::Dword;
using platform::OsVersionInfoEx;

struct Version {
    Dword platform = 2, major = 0, minor = 0;
    std::uint8_t type = 0;
    platform::Word suite = 0;
    const char* csd = "";

    OsVersionInfoEx Record() const {
        OsVersionInfoEx r{};
        r.dwPlatformId = platform, r.dwMajorVersion = major, r.dwMinorVersion = minor;
        r.wProductType = type, r.wSuiteMask = suite;
        std::strncpy(r.szCSDVersion, csd, sizeof r.szCSDVersion - 1);
        return r;
    }
};

inline constexpr Version Win95{1, 4, 0}, Win98{1, 4, 10}, WinME{1, 4, 90}, Nt351{2, 3, 51},
    Nt4{2, 4, 0, 1}, Win2000{2, 5, 0, 1}, WinXP{2, 5, 1, 1}, Win7{2, 6, 1, 1}, Win32s{0, 1, 0};

// GetVersionExA answers `record` while alive: the extended size (156) gets the whole record, the
// plain size only the part up to the CSD text. `sizes` lists every call's size.
struct FakeVersion {
    explicit FakeVersion(const OsVersionInfoEx& record, platform::Bool extended = 1, platform::Bool plain = 1)
        : replace{[this, record, extended, plain](OsVersionInfoEx* info) {
              const Dword size = info->dwOSVersionInfoSize;
              sizes.push_back(size);
              const platform::Bool result = size == 156 ? extended : plain;
              if (result == 0) return result;
              std::memcpy(info, &record, size == 156 ? sizeof record : offsetof(OsVersionInfoEx, wServicePackMajor));
              info->dwOSVersionInfoSize = size;
              return result;
          }} {}
    explicit FakeVersion(const Version& version) : FakeVersion(version.Record()) {}

    std::vector<Dword> sizes;
    platform::testing::Replace<&platform::Api::GetVersionExA> replace;
};

}  // namespace orbex::testing
