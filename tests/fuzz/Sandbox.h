// The fuzzer's own registry key (under HKEY_CURRENT_USER\Software) and folder (beside the
// program): seeded with values and files of every kind, photographed after every call, and
// made anew when a call legitimately removes them or they grow too large. It also decides
// which texts may name a file, an INI file or a sub-key for a member that writes.
#pragma once
#include "Random.h"

#include <windows.h>

#include <string>

namespace orbex::fuzz {

class Sandbox {
public:
    Sandbox();

    const std::wstring& folder() const { return folder_; }
    static constexpr const wchar_t* KeyPath = L"Software\\OrbexFuzz";
    static constexpr const wchar_t* KeyName = L"HKEY_CURRENT_USER\\Software\\OrbexFuzz";

    // Deletes and seeds both trees, and makes the folder the current one.
    void reset();
    // Resets when the key or folder is gone or too large; answers whether it did.
    bool keepUsable(const std::string& snapshot);
    // Names, types and data of the key tree; names, attributes, sizes and contents of the folder tree.
    std::string snapshot() const;

    // A hostile text that, as the library will see it, stays inside the folder. Relative names
    // resolve against the current folder, which stays inside; INI names resolve against the
    // Windows folder, so an INI file is always named in full.
    std::wstring filePath(Random& random) const;
    std::wstring iniPath(Random& random) const;
    // A hostile sub-key name that never counts from the root.
    static std::wstring subKeyName(Random& random);

    bool holdsFile(const std::wstring& path) const;
    bool holdsIniFile(const std::wstring& path) const;
    static bool holdsSubKey(const std::wstring& name);
    // Whether a key's full name is the fuzzer's key or one below it (`strictlyBelow`: only below).
    static bool ownsKey(const std::wstring& fullName, bool strictlyBelow);

private:
    std::wstring folder_;
    std::string folderAnsi_;
};

// The texts every hostile text is built from: NULs inside, huge, odd characters.
std::wstring HostileText(Random& random);

}  // namespace orbex::fuzz
