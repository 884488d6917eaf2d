// Test helpers for FileInfo and DiskInfo: a scratch folder of real files, a scope in which the
// platform reports an older Windows, and whole-byte readings of Currency sizes.
#pragma once
#include "frame/Types.h"
#include "platform/TestHook.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

namespace orbex::testing {

using platform::Dword;

inline String Wide(const std::string& text) { return String(text.begin(), text.end()); }

class ScratchFolder {
public:
    ScratchFolder() {
        char temp[261] = {};
        path = std::string(temp, platform::realApi().GetTempPathA(sizeof temp, temp)) + "OrbexInfo" +
               std::to_string(std::random_device{}());
        EXPECT_TRUE(std::filesystem::create_directory(path)) << path;
    }
    ~ScratchFolder() {
        std::error_code ignored;
        for (const auto& entry : std::filesystem::directory_iterator(path, ignored)) {
            platform::realApi().SetFileAttributesA(entry.path().string().c_str(), 0x80);
        }
        std::filesystem::remove_all(path, ignored);
    }
    std::string Path(const std::string& name) const { return path + "\\" + name; }
    String Write(const std::string& name, const std::string& content) const {
        std::ofstream(Path(name), std::ios::binary) << content;
        return Wide(Path(name));
    }

    std::string path;
};

// The version record of one Windows, as GetVersionExA fills it.
struct Windows {
    Dword platform, major, minor;
    const char* csd = "";
};
inline constexpr Windows Win95{1, 4, 0}, Win95Osr2{1, 4, 0, " C"}, Win98{1, 4, 10}, Nt351{2, 3, 51}, Nt4{2, 4, 0},
    Win2000{2, 5, 0}, Win32s{0, 1, 0};

// GetVersionExA answers `windows` for every size of record while alive.
class PretendWindows {
public:
    explicit PretendWindows(Windows windows)
        : replace_{[windows](platform::OsVersionInfoEx* info) {
              const Dword size = info->dwOSVersionInfoSize;
              *info = platform::OsVersionInfoEx{};
              info->dwOSVersionInfoSize = size;
              info->dwPlatformId = windows.platform;
              info->dwMajorVersion = windows.major;
              info->dwMinorVersion = windows.minor;
              std::strcpy(info->szCSDVersion, windows.csd);
              return platform::Bool{1};
          }} {}

private:
    platform::testing::Replace<&platform::Api::GetVersionExA> replace_;
};

// The whole number of bytes a Currency size holds; a fraction fails the test.
inline std::int64_t Bytes(Currency size) {
    EXPECT_EQ(size.scaled % 10000, 0);
    return size.scaled / 10000;
}

}  // namespace orbex::testing
