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

using platform::Api;
using platform::Dword;
using platform::OsVersionInfoEx;

class ScratchFolder {
public:
    ScratchFolder() {
        char temp[261] = {};
        const Dword length = platform::realApi().GetTempPathA(sizeof temp, temp);
        path_ = std::string(temp, length) + "OrbexInfo" + std::to_string(std::random_device{}());
        EXPECT_TRUE(std::filesystem::create_directory(path_)) << path_;
    }
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::permissions(path_, std::filesystem::perms::all, ignored);
        for (const auto& entry : std::filesystem::directory_iterator(path_, ignored)) {
            platform::realApi().SetFileAttributesA(entry.path().string().c_str(), 0x80);
        }
        std::filesystem::remove_all(path_, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    std::string Path(const std::string& name) const { return path_ + "\\" + name; }
    String Name(const std::string& name) const { return Wide(Path(name)); }
    String Folder() const { return Wide(path_); }
    const std::string& FolderPath() const { return path_; }
    String Write(const std::string& name, const std::string& content) const {
        std::ofstream(Path(name), std::ios::binary) << content;
        return Name(name);
    }

    static String Wide(const std::string& text) { return String(text.begin(), text.end()); }

private:
    std::string path_;
};

// The version record of one Windows, as GetVersionExA fills it.
struct Windows {
    Dword platform, major, minor;
    const char* csd = "";
};
inline constexpr Windows Win95{1, 4, 0}, Win95Osr2{1, 4, 0, " C"}, Win98{1, 4, 10}, Nt351{2, 3, 51}, Nt4{2, 4, 0},
    Win2000{2, 5, 0}, WinXP{2, 5, 1}, Win32s{0, 1, 0};

// GetVersionExA answers `windows` for every size of record while alive.
class PretendWindows {
public:
    explicit PretendWindows(Windows windows)
        : replace_{[windows](OsVersionInfoEx* info) {
              const Dword size = info->dwOSVersionInfoSize;
              std::memset(reinterpret_cast<char*>(info) + sizeof size, 0, size - sizeof size);
              info->dwPlatformId = windows.platform;
              info->dwMajorVersion = windows.major;
              info->dwMinorVersion = windows.minor;
              std::strncpy(info->szCSDVersion, windows.csd, sizeof info->szCSDVersion - 1);
              return platform::Bool{1};
          }} {}

private:
    platform::testing::Replace<&Api::GetVersionExA> replace_;
};

// The whole number of bytes a Currency size holds; a fraction fails the test.
inline std::int64_t Bytes(Currency size) {
    EXPECT_EQ(size.scaled % 10000, 0);
    return size.scaled / 10000;
}

}  // namespace orbex::testing
