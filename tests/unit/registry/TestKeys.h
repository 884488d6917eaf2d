// Keys on the real registry for tests, read and written with the real platform table so that a
// test's replacements don't reach them, and failures as their three fields.
#pragma once
#include "frame/RaisedError.h"
#include "platform/Api.h"
#include "registry/RegistryKey.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <tuple>
#include <vector>

namespace orbex::testing {

inline constexpr platform::Dword KeyAllAccess = 0xF003F;  // KEY_ALL_ACCESS
inline constexpr platform::Dword KeyRead = 0x20019;       // KEY_READ

using Failure = std::tuple<Long, String, String>;  // Number, Source, Description
inline const Failure NoFailure{0, L"(nothing raised)", L""};

template <class Call>
Failure FailureOf(Call&& call) {
    try {
        call();
    } catch (const RaisedError& error) {
        return {error.Number, error.Source, error.Description};
    }
    return NoFailure;
}

inline String Wide(const std::string& text) { return String(text.begin(), text.end()); }

inline platform::Handle OpenRaw(const std::string& path, platform::Dword access = KeyAllAccess) {
    platform::Handle key = 0;
    return platform::realApi().RegOpenKeyExA(vqCurrentUser, path.c_str(), 0, access, &key) == 0 ? key : 0;
}

inline platform::Handle CreateRaw(const std::string& path) {
    char className[] = "";
    platform::Handle key = 0;
    platform::realApi().RegCreateKeyExA(vqCurrentUser, path.c_str(), 0, className, 0, KeyAllAccess, nullptr, &key,
                                        nullptr);
    return key;
}

// Stores raw bytes under a value name of a key below HKEY_CURRENT_USER, creating the key.
// `size` may stop short of the bytes: text stored without a terminator needs a non-NUL byte
// after its end, or the platform counts a terminator in.
inline void SetRaw(const std::string& path, const std::string& name, platform::Dword type, const std::string& bytes,
                   std::size_t size = std::string::npos) {
    const platform::Handle key = CreateRaw(path);
    EXPECT_EQ(platform::realApi().RegSetValueExA(key, name.c_str(), 0, type,
                  reinterpret_cast<const std::uint8_t*>(bytes.data()),
                  static_cast<platform::Dword>(std::min(size, bytes.size()))), 0) << name;
    platform::realApi().RegCloseKey(key);
}

// Child key names of an open key, in index order.
inline std::vector<std::string> ChildrenOf(platform::Handle key) {
    std::vector<std::string> children;
    char name[256];
    for (platform::Dword index = 0, length = sizeof name;
         platform::realApi().RegEnumKeyExA(key, index, name, &length, nullptr, nullptr, nullptr, nullptr) == 0;
         ++index, length = sizeof name) {
        children.emplace_back(name, length);
    }
    return children;
}

// Removes a key and all keys below it; a missing key is no failure.
inline void DeleteKeyTree(const std::string& path) {
    const platform::Handle key = OpenRaw(path);
    if (!key) return;
    for (const std::string& child : ChildrenOf(key)) DeleteKeyTree(path + "\\" + child);
    platform::realApi().RegCloseKey(key);
    platform::realApi().RegDeleteKeyA(vqCurrentUser, path.c_str());
}

// What a tree holds: path below its top ("" for the top) → value name → type and bytes.
using Values = std::map<std::string, std::pair<long, std::string>>;
using Tree = std::map<std::string, Values>;

inline Tree SnapshotOf(const std::string& path, const std::string& relative = "", Tree&& into = {}) {
    Tree& tree = into;
    const platform::Handle key = OpenRaw(path, KeyRead);
    if (!key) return std::move(tree);
    Values& values = tree[relative];
    char name[256];
    std::uint8_t data[4096];
    for (platform::Dword index = 0, length = sizeof name, size = sizeof data, type = 0;
         platform::realApi().RegEnumValueA(key, index, name, &length, nullptr, &type, data, &size) == 0;
         ++index, length = sizeof name, size = sizeof data) {
        values[std::string(name, length)] = {type, std::string(reinterpret_cast<char*>(data), size)};
    }
    const std::vector<std::string> children = ChildrenOf(key);
    platform::realApi().RegCloseKey(key);
    for (const std::string& child : children) {
        tree = SnapshotOf(path + "\\" + child, relative + "\\" + child, std::move(tree));
    }
    return std::move(tree);
}

// A fresh key of its own under HKEY_CURRENT_USER\Software\OrbexTest, removed with everything
// below it when it goes.
class TestKey {
public:
    TestKey() : path_("Software\\OrbexTest\\T" + std::to_string(std::random_device{}())) {
        const platform::Handle key = CreateRaw(path_);
        EXPECT_NE(key, 0) << "cannot create HKEY_CURRENT_USER\\" << path_;
        platform::realApi().RegCloseKey(key);
    }
    ~TestKey() { DeleteKeyTree(path_); }
    TestKey(const TestKey&) = delete;
    TestKey& operator=(const TestKey&) = delete;

    // Below HKEY_CURRENT_USER, with no leading backslash.
    const std::string& path() const { return path_; }

    // A new handle on the key; the caller closes it.
    platform::Handle Open(platform::Dword access = KeyAllAccess) const { return OpenRaw(path_, access); }

    // Sets `key` up as opening the test key would: root, path and a handle that it owns.
    void Attach(RegistryKey& key, platform::Dword access = KeyAllAccess) const {
        key.SetRootKey(vqCurrentUser);
        key.SetSubKeyPath(Wide(path_));
        key.SetKeyHandle(static_cast<Long>(Open(access)));
    }

    void CreateSubKey(const std::string& relative) const {
        platform::realApi().RegCloseKey(CreateRaw(path_ + "\\" + relative));
    }
    void SetRaw(const std::string& name, platform::Dword type, const std::string& bytes,
                std::size_t size = std::string::npos) const {
        testing::SetRaw(path_, name, type, bytes, size);
    }
    // A value's stored type and bytes; type -1 when missing.
    std::pair<long, std::string> GetRaw(const std::string& name) const {
        const Values values = SnapshotOf(path_)[""];
        const auto found = values.find(name);
        return found == values.end() ? std::pair<long, std::string>{-1, ""} : found->second;
    }

private:
    std::string path_;
};

}  // namespace orbex::testing
