#include "Sandbox.h"

#include <algorithm>
#include <cwctype>
#include <vector>

namespace orbex::fuzz {
namespace {

constexpr size_t MaxEntries = 400;
constexpr unsigned long long MaxBytes = 8ull << 20;

// What the library hands the platform: the text up to its first NUL, in the ANSI code page.
std::string AsPlatformSees(const std::wstring& text) {
    const std::wstring head(text.c_str());
    if (head.empty()) return {};
    const int size = WideCharToMultiByte(CP_ACP, 0, head.data(), static_cast<int>(head.size()), nullptr, 0,
                                         nullptr, nullptr);
    std::string out(static_cast<size_t>(size), '\0');
    WideCharToMultiByte(CP_ACP, 0, head.data(), static_cast<int>(head.size()), out.data(), size, nullptr, nullptr);
    return out;
}

bool StartsWithFolded(const std::string& text, const std::string& prefix) {
    if (text.size() < prefix.size()) return false;
    for (size_t i = 0; i < prefix.size(); ++i)
        if (std::tolower(static_cast<unsigned char>(text[i])) != std::tolower(static_cast<unsigned char>(prefix[i])))
            return false;
    return true;
}

unsigned long long Fnv(const char* data, size_t size, unsigned long long hash = 1469598103934665603ull) {
    for (size_t i = 0; i < size; ++i) hash = (hash ^ static_cast<unsigned char>(data[i])) * 1099511628211ull;
    return hash;
}

void Append(std::string& out, const wchar_t* text, size_t length) {
    out.append(reinterpret_cast<const char*>(text), length * sizeof(wchar_t));
}

// Both walks recurse once per level, and a call may make hundreds of levels: their buffers
// live on the heap.
void SnapshotKey(HKEY key, const std::wstring& path, std::string& out) {
    std::vector<wchar_t> buffer(16384);
    wchar_t* const name = buffer.data();
    std::vector<BYTE> data(1 << 16);
    for (DWORD index = 0;; ++index) {
        DWORD nameLength = 16384, type = 0, size = static_cast<DWORD>(data.size());
        LONG status = RegEnumValueW(key, index, name, &nameLength, nullptr, &type, data.data(), &size);
        if (status == ERROR_MORE_DATA) {
            data.resize(size + 2);
            --index;
            continue;
        }
        if (status != ERROR_SUCCESS) break;
        out += "V:";
        Append(out, path.c_str(), path.size());
        out += '|';
        Append(out, name, nameLength);
        out += '|' + std::to_string(type) + '|' + std::to_string(size) + '|' +
               std::to_string(Fnv(reinterpret_cast<const char*>(data.data()), size)) + '\n';
    }
    std::vector<std::wstring> children;
    for (DWORD index = 0;; ++index) {
        DWORD nameLength = 16384;
        if (RegEnumKeyExW(key, index, name, &nameLength, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
        children.emplace_back(name, nameLength);
    }
    for (const std::wstring& child : children) {
        out += "K:";
        const std::wstring childPath = path + L"\\" + child;
        Append(out, childPath.c_str(), childPath.size());
        out += '\n';
        HKEY opened = nullptr;
        if (RegOpenKeyExW(key, child.c_str(), 0, KEY_READ, &opened) == ERROR_SUCCESS) {
            SnapshotKey(opened, childPath, out);
            RegCloseKey(opened);
        } else {
            out += "unreadable\n";
        }
    }
}

void SnapshotFolder(const std::wstring& folder, std::string& out) {
    WIN32_FIND_DATAW found;
    HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return;
    std::vector<std::wstring> folders;
    do {
        const std::wstring name = found.cFileName;
        if (name == L"." || name == L"..") continue;
        const std::wstring path = folder + L"\\" + name;
        out += "F:";
        Append(out, path.c_str(), path.size());
        out += '|' + std::to_string(found.dwFileAttributes);
        if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
            folders.push_back(path);
        } else {
            unsigned long long hash = Fnv(nullptr, 0);
            HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                      OPEN_EXISTING, 0, nullptr);
            if (file != INVALID_HANDLE_VALUE) {
                std::vector<char> buffer(65536);
                DWORD read = 0;
                while (ReadFile(file, buffer.data(), static_cast<DWORD>(buffer.size()), &read, nullptr) && read)
                    hash = Fnv(buffer.data(), read, hash);
                CloseHandle(file);
            }
            out += '|' + std::to_string(found.nFileSizeLow) + '|' + std::to_string(hash);
        }
        out += '\n';
    } while (FindNextFileW(search, &found));
    FindClose(search);
    for (const std::wstring& child : folders) SnapshotFolder(child, out);
}

void DeleteFolderTree(const std::wstring& folder) {
    WIN32_FIND_DATAW found;
    HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &found);
    if (search != INVALID_HANDLE_VALUE) {
        do {
            const std::wstring name = found.cFileName;
            if (name == L"." || name == L"..") continue;
            const std::wstring path = folder + L"\\" + name;
            SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
            if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) DeleteFolderTree(path);
            else DeleteFileW(path.c_str());
        } while (FindNextFileW(search, &found));
        FindClose(search);
    }
    RemoveDirectoryW(folder.c_str());
}

void WriteFileText(const std::wstring& path, const char* text) {
    HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return;
    DWORD written = 0;
    WriteFile(file, text, static_cast<DWORD>(strlen(text)), &written, nullptr);
    CloseHandle(file);
}

void SetValue(HKEY key, const wchar_t* name, DWORD type, const void* data, DWORD size) {
    RegSetValueExW(key, name, 0, type, static_cast<const BYTE*>(data), size);
}

std::wstring Repeat(const wchar_t* unit, size_t count) {
    std::wstring out;
    for (size_t i = 0; i < count; ++i) out += unit;
    return out;
}

std::wstring Suffix(Random& random) {
    switch (random.below(14)) {
    case 0: return L"";
    case 1: return L"\\";
    case 2: return L"\\\\";
    case 3: return std::wstring(L"\0tail", 5);
    case 4: return std::wstring(L"\0\\..\\..\\windows", 16);
    case 5: return L"\\" + std::wstring(random.pick<size_t>({255, 260, 300, 70000}), L'a');
    case 6: return Repeat(L"\\d", random.pick<size_t>({20, 200}));
    case 7: return L"*";
    case 8: return L"?<>|\"";
    case 9: return L" .";
    case 10: return L":stream";
    case 11: return L"\\\x00e9\x65e5\xff0e";
    case 12: return L"\\\xd800";
    default: return L"\\" + HostileText(random).substr(0, 40);
    }
}

}  // namespace

std::wstring HostileText(Random& random) {
    switch (random.below(26)) {
    case 0: return L"";
    case 1: return L"0";
    case 2: return L"-1";
    case 3: return L"65535";
    case 4: return L"1e400";
    case 5: return L"&HFFFF";
    case 6: return L"12/31/9999";
    case 7: return L"True";
    case 8: return std::wstring(L"a\0b", 3);
    case 9: return std::wstring(L"\0", 1);
    case 10: return std::wstring(random.pick<size_t>({255, 256, 260, 1024, 32767, 65535, 65536}), L'x');
    case 11: return std::wstring(random.percent(10) ? (1u << 20) : 100000u, L'y');
    case 12: return L"%TEMP%\\%UNDEFINED%%%";
    case 13: return L"\x00e9\x00ff\x65e5\x672c";
    case 14: return L"\xd800\xdc00\xdfff\xffff";
    case 15: return L"\xff0e\xff0e\xff3c";
    case 16: return L"\\\\server\\share";
    case 17: return L"*?<>|";
    case 18: return L" \t\r\n";
    case 19: return L"[section]\r\nkey=value";
    case 20: return L"=;comment";
    case 21: return L"\\";
    case 22: return L"Sub";
    case 23: return L"Text";
    case 24: return std::wstring(L"Lines\0\0", 7);
    default: return L"plain text";
    }
}

Sandbox::Sandbox() {
    wchar_t module[MAX_PATH];
    GetModuleFileNameW(nullptr, module, MAX_PATH);
    std::wstring path = module;
    folder_ = path.substr(0, path.rfind(L'\\')) + L"\\sandbox";
    folderAnsi_ = AsPlatformSees(folder_);
}

void Sandbox::reset() {
    SetCurrentDirectoryW(folder_.substr(0, folder_.rfind(L'\\')).c_str());
    RegDeleteTreeW(HKEY_CURRENT_USER, KeyPath);
    HKEY key = nullptr;
    RegCreateKeyExW(HKEY_CURRENT_USER, KeyPath, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr);
    const DWORD number = 42;
    const unsigned long long wide = 1ull << 40;
    const BYTE bytes[] = {0, 1, 2, 255};
    SetValue(key, L"", REG_SZ, L"default", 16);
    SetValue(key, L"Text", REG_SZ, L"some text", 20);
    SetValue(key, L"Expand", REG_EXPAND_SZ, L"%TEMP%\\x", 18);
    SetValue(key, L"Number", REG_DWORD, &number, 4);
    SetValue(key, L"Wide", REG_QWORD, &wide, 8);
    SetValue(key, L"Bytes", REG_BINARY, bytes, 4);
    SetValue(key, L"Lines", REG_MULTI_SZ, L"one\0two\0", 18);
    SetValue(key, L"Odd", 0x1234, bytes, 3);
    HKEY sub = nullptr;
    RegCreateKeyExW(key, L"Sub\\Deeper", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &sub, nullptr);
    SetValue(sub, L"Text", REG_SZ, L"deep", 10);
    RegCloseKey(sub);
    RegCreateKeyExW(key, L"Empty", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &sub, nullptr);
    RegCloseKey(sub);
    RegCloseKey(key);

    DeleteFolderTree(folder_);
    CreateDirectoryW(folder_.c_str(), nullptr);
    CreateDirectoryW((folder_ + L"\\sub").c_str(), nullptr);
    CreateDirectoryW((folder_ + L"\\empty").c_str(), nullptr);
    WriteFileText(folder_ + L"\\file.txt", "some bytes\r\n");
    WriteFileText(folder_ + L"\\sub\\inner.txt", "inner");
    WriteFileText(folder_ + L"\\settings.ini", "[Main]\r\nA=1\r\nB=text\r\n\r\n[Other]\r\nC=\r\n");
    SetCurrentDirectoryW(folder_.c_str());
}

bool Sandbox::keepUsable(const std::string& snapshot) {
    HKEY key = nullptr;
    const bool keyThere = RegOpenKeyExW(HKEY_CURRENT_USER, KeyPath, 0, KEY_READ, &key) == ERROR_SUCCESS;
    if (keyThere) RegCloseKey(key);
    const DWORD attributes = GetFileAttributesW(folder_.c_str());
    const bool folderThere = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
    const size_t entries = static_cast<size_t>(std::count(snapshot.begin(), snapshot.end(), '\n'));
    if (keyThere && folderThere && entries < MaxEntries && snapshot.size() < MaxBytes) {
        // The current folder leaves the sandbox only when a call removed the folder it was in.
        wchar_t current[MAX_PATH * 2];
        GetCurrentDirectoryW(MAX_PATH * 2, current);
        if (!holdsFile(current)) SetCurrentDirectoryW(folder_.c_str());
        return false;
    }
    reset();
    return true;
}

std::string Sandbox::snapshot() const {
    std::string out;
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, KeyPath, 0, KEY_READ, &key) == ERROR_SUCCESS) {
        out += "key\n";
        SnapshotKey(key, L"", out);
        RegCloseKey(key);
    }
    const DWORD attributes = GetFileAttributesW(folder_.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES) {
        out += "folder " + std::to_string(attributes) + "\n";
        SnapshotFolder(folder_, out);
    }
    return out;
}

std::wstring Sandbox::filePath(Random& random) const {
    static const wchar_t* const bases[] = {L"", L"\\file.txt", L"\\settings.ini", L"\\sub", L"\\sub\\inner.txt",
                                           L"\\empty", L"\\new", L"\\new\\deeper", L"\\missing.txt"};
    std::wstring path = random.percent(15) ? std::wstring(L"sub") : folder_ + bases[random.below(9)];
    path += Suffix(random);
    return holdsFile(path) ? path : folder_ + L"\\file.txt";
}

std::wstring Sandbox::iniPath(Random& random) const {
    static const wchar_t* const bases[] = {L"\\settings.ini", L"\\new.ini", L"\\sub\\other.ini", L"\\empty", L""};
    std::wstring path = folder_ + bases[random.below(5)] + (random.percent(70) ? std::wstring() : Suffix(random));
    return holdsIniFile(path) ? path : folder_ + L"\\settings.ini";
}

std::wstring Sandbox::subKeyName(Random& random) {
    std::wstring name;
    switch (random.below(10)) {
    case 0: name = L"Sub"; break;
    case 1: name = L"Sub\\Deeper"; break;
    case 2: name = L"Empty"; break;
    case 3: name = L"New" + std::to_wstring(random.below(4)); break;
    case 4: name = L"a\\b\\c\\"; break;
    case 5: name = std::wstring(random.pick<size_t>({255, 256, 300, 70000}), L'k'); break;
    case 6: name = L"Sub\\\\Deeper"; break;
    case 7: name = L"Text"; break;
    default: name = HostileText(random); break;
    }
    return holdsSubKey(name) ? name : L"New";
}

bool Sandbox::holdsFile(const std::wstring& path) const {
    const std::string seen = AsPlatformSees(path);
    if (seen.find("..") != std::string::npos) return false;
    if (StartsWithFolded(seen, folderAnsi_))
        return seen.size() == folderAnsi_.size() || seen[folderAnsi_.size()] == '\\';
    // Relative: below the current folder, which stays inside.
    return !seen.empty() && seen[0] != '\\' && seen[0] != '/' && seen.find(':') == std::string::npos;
}

bool Sandbox::holdsIniFile(const std::wstring& path) const {
    const std::string seen = AsPlatformSees(path);
    return seen.find("..") == std::string::npos && StartsWithFolded(seen, folderAnsi_ + "\\");
}

bool Sandbox::holdsSubKey(const std::wstring& name) {
    const std::string seen = AsPlatformSees(name);
    return name.empty() || (name[0] != L'\\' && (seen.empty() || seen[0] != '\\'));
}

bool Sandbox::ownsKey(const std::wstring& fullName, bool strictlyBelow) {
    const std::wstring own = KeyName;
    if (fullName.size() < own.size() || _wcsnicmp(fullName.c_str(), own.c_str(), own.size()) != 0) return false;
    if (fullName.size() == own.size()) return !strictlyBelow;
    return fullName[own.size()] == L'\\' && fullName.size() > own.size() + 1;
}

}  // namespace orbex::fuzz
