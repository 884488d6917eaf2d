// Test helpers for the system classes: version records of the known families, and a scope in
// which GetVersionExA answers one of them as the platform would.
#pragma once
#include "platform/TestHook.h"

#include <cstring>
#include <vector>

namespace orbex::testing {

using platform::Api;
using platform::Dword;
using platform::OsVersionInfoEx;

struct Version {
    Dword platform = 2, major = 0, minor = 0;
    std::uint8_t type = 0;
    platform::Word suite = 0;
    const char* csd = "";

    OsVersionInfoEx Record() const {
        OsVersionInfoEx record{};
        record.dwPlatformId = platform;
        record.dwMajorVersion = major;
        record.dwMinorVersion = minor;
        record.wProductType = type;
        record.wSuiteMask = suite;
        std::strncpy(record.szCSDVersion, csd, sizeof record.szCSDVersion - 1);
        return record;
    }
};

inline constexpr Version Win95{1, 4, 0}, Win98{1, 4, 10}, WinME{1, 4, 90}, Nt351{2, 3, 51},
    Nt4{2, 4, 0, 1}, Win2000{2, 5, 0, 1}, WinXP{2, 5, 1, 1}, Win7{2, 6, 1, 1}, Win32s{0, 1, 0};

// GetVersionExA answers `record` while alive: the extended size gets the whole record, the plain
// size only the part up to the CSD text, as the platform fills them. `sizes` lists every call.
class FakeVersion {
public:
    explicit FakeVersion(const OsVersionInfoEx& record, platform::Bool extended = 1, platform::Bool plain = 1)
        : replace_{[this, record, extended, plain](OsVersionInfoEx* info) {
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

private:
    platform::testing::Replace<&Api::GetVersionExA> replace_;
};

}  // namespace orbex::testing
