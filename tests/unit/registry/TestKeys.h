// Keys on the real registry for tests: each TestKey is a fresh key of its own under
// HKEY_CURRENT_USER\Software\OrbexTest, removed with everything below it when it goes.
// All platform calls go through the real table, so a test's replacements don't reach them.
#pragma once
#include "platform/Api.h"
#include "registry/RegistryKey.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>

namespace orbex::testing {

inline constexpr platform::Dword KeyAllAccess = 0xF003F;  // KEY_ALL_ACCESS
inline constexpr platform::Dword KeyRead = 0x20019;       // KEY_READ

// Removes a key and all keys below it; a missing key is no failure.
inline void DeleteKeyTree(platform::Handle parent, const std::string& path) {
    const auto& real = platform::realApi();
    platform::Handle key = 0;
    if (real.RegOpenKeyExA(parent, path.c_str(), 0, KeyAllAccess, &key) != 0) return;
    // Always the first child, until none is left or one can't be removed.
    for (std::string previous;;) {
        char name[256] = {};
        platform::Dword length = sizeof name;
        if (real.RegEnumKeyExA(key, 0, name, &length, nullptr, nullptr, nullptr, nullptr) != 0) break;
        const std::string child(name, length);
        if (child == previous) break;
        DeleteKeyTree(key, child);
        previous = child;
    }
    real.RegCloseKey(key);
    real.RegDeleteKeyA(parent, path.c_str());
}

class TestKey {
public:
    TestKey() : path_("Software\\OrbexTest\\" + UniqueName()) {
        platform::Handle key = Create(path_);
        EXPECT_NE(key, 0) << "cannot create HKEY_CURRENT_USER\\" << path_;
        platform::realApi().RegCloseKey(key);
    }
    ~TestKey() { DeleteKeyTree(vqCurrentUser, path_); }
    TestKey(const TestKey&) = delete;
    TestKey& operator=(const TestKey&) = delete;

    // Below HKEY_CURRENT_USER, with no leading backslash.
    const std::string& path() const { return path_; }

    // A new handle on the key; the caller closes it.
    platform::Handle Open(platform::Dword access = KeyAllAccess) const {
        platform::Handle key = 0;
        EXPECT_EQ(platform::realApi().RegOpenKeyExA(vqCurrentUser, path_.c_str(), 0, access, &key), 0);
        return key;
    }

    // Sets `key` up as opening the test key would: root, path and a handle that it owns.
    void Attach(RegistryKey& key, platform::Dword access = KeyAllAccess) const {
        key.SetRootKey(vqCurrentUser);
        key.SetSubKeyPath(String(path_.begin(), path_.end()));
        key.SetKeyHandle(static_cast<Long>(Open(access)));
    }

    // Creates a key below the test key, by a path relative to it.
    void CreateSubKey(const std::string& relative) const {
        platform::realApi().RegCloseKey(Create(path_ + "\\" + relative));
    }

    // Stores raw bytes under a value name, bypassing the library. `size` may stop short of the
    // bytes: text stored without a terminator needs a non-NUL byte after its end, or the
    // platform counts a terminator in.
    void SetRaw(const std::string& name, platform::Dword type, const std::string& bytes,
                std::size_t size = std::string::npos) const {
        const platform::Handle key = Open();
        EXPECT_EQ(platform::realApi().RegSetValueExA(key, name.c_str(), 0, type,
                      reinterpret_cast<const std::uint8_t*>(bytes.data()),
                      static_cast<platform::Dword>(std::min(size, bytes.size()))), 0) << name;
        platform::realApi().RegCloseKey(key);
    }

    // A value's stored type and bytes as the narrow query gives them; type -1 when missing.
    struct Raw {
        long type = -1;
        std::string bytes;
    };
    Raw GetRaw(const std::string& name) const {
        const auto& real = platform::realApi();
        const platform::Handle key = Open();
        platform::Dword type = 0, size = 0;
        Raw raw;
        if (real.RegQueryValueExA(key, name.c_str(), nullptr, &type, nullptr, &size) == 0) {
            raw.bytes.assign(size, '\0');
            real.RegQueryValueExA(key, name.c_str(), nullptr, &type,
                                  reinterpret_cast<std::uint8_t*>(raw.bytes.data()), &size);
            raw.bytes.resize(size);
            raw.type = static_cast<long>(type);
        }
        real.RegCloseKey(key);
        return raw;
    }

private:
    static std::string UniqueName() {
        std::random_device random;
        const char* hex = "0123456789ABCDEF";
        std::string name = "T";
        for (int i = 0; i < 12; ++i) name += hex[random() % 16];
        return name;
    }
    static platform::Handle Create(const std::string& path) {
        char className[] = "";
        platform::Handle key = 0;
        platform::realApi().RegCreateKeyExA(vqCurrentUser, path.c_str(), 0, className, 0,
                                            KeyAllAccess, nullptr, &key, nullptr);
        return key;
    }

    std::string path_;
};

}  // namespace orbex::testing
