// Copying and deleting a tree of 1,000 keys holding 5,000 values of the six typed kinds: the
// platform's own tree calls, Orbex through its vtable, and reg.exe.
#include "Bench.h"

#include "Orbex_h.h"

#include <cstring>
#include <memory>

namespace bench {
namespace {

constexpr char Base[] = "Software\\OrbexBench\\Tree";
constexpr wchar_t WideBase[] = L"Software\\OrbexBench\\Tree";
constexpr char RegKey[] = "HKCU\\Software\\OrbexBench\\Tree\\";
constexpr int FanOut[] = {10, 9, 10};  // 10 + 90 + 900 = 1,000 keys
constexpr long TreeKeys = 1000, TreeValues = 5000;

struct Key {
    HKEY h = nullptr;
    Key() = default;
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    ~Key() { if (h) RegCloseKey(h); }
};

void Create(HKEY parent, const std::string& name, Key& key) {
    Check(RegCreateKeyExA(parent, name.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key.h, nullptr) ==
          ERROR_SUCCESS, "creating " + name);
}

void SetValue(HKEY key, const std::string& name, DWORD type, const void* data, size_t size) {
    Check(RegSetValueExA(key, name.c_str(), 0, type, static_cast<const BYTE*>(data), static_cast<DWORD>(size)) ==
          ERROR_SUCCESS, "writing " + name);
}

// Five values per key, their types rotating with the key's number so that all six occur.
void WriteValues(HKEY key, int number) {
    for (int v = 0; v < 5; ++v) {
        const std::string name = "value" + std::to_string(v);
        const std::string text = "text of key " + std::to_string(number);
        const DWORD dword = static_cast<DWORD>(number * 7 + v);
        const ULONGLONG qword = 1000000ull * number + v;
        const BYTE bytes[] = {0, 1, 2, 3, 0xFE, 0xFF, static_cast<BYTE>(number), static_cast<BYTE>(v)};
        static const char multi[] = "first\0second\0third\0";
        switch ((number + v) % 6) {
        case 0: SetValue(key, name, REG_SZ, text.c_str(), text.size() + 1); break;
        case 1: SetValue(key, name, REG_EXPAND_SZ, "%SystemRoot%\\orbex", 19); break;
        case 2: SetValue(key, name, REG_DWORD, &dword, sizeof dword); break;
        case 3: SetValue(key, name, REG_QWORD, &qword, sizeof qword); break;
        case 4: SetValue(key, name, REG_BINARY, bytes, sizeof bytes); break;
        default: SetValue(key, name, REG_MULTI_SZ, multi, sizeof multi); break;
        }
    }
}

void MakeTree(HKEY key, int depth, int& number) {
    if (depth == 3) return;
    for (int i = 0; i < FanOut[depth]; ++i) {
        Key child;
        Create(key, "key" + std::to_string(i), child);
        WriteValues(child.h, number++);
        MakeTree(child.h, depth + 1, number);
    }
}

struct Tally { long keys = 0, values = 0; };

// Walks the source and finds each of its entries in the copy with the same type and bytes, and
// nothing more in the copy.
void Compare(HKEY source, HKEY copy, Tally& tally) {
    DWORD keys = 0, values = 0, copyKeys = 0, copyValues = 0;
    RegQueryInfoKeyA(source, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr, nullptr,
                     nullptr, nullptr);
    RegQueryInfoKeyA(copy, nullptr, nullptr, nullptr, &copyKeys, nullptr, nullptr, &copyValues, nullptr, nullptr,
                     nullptr, nullptr);
    Check(keys == copyKeys && values == copyValues, "the copy has as many entries as the source");
    char name[64];
    for (DWORD i = 0; i < values; ++i) {
        BYTE a[128], b[128];
        DWORD length = sizeof name, aType = 0, bType = 0, aSize = sizeof a, bSize = sizeof b;
        Check(RegEnumValueA(source, i, name, &length, nullptr, &aType, a, &aSize) == ERROR_SUCCESS, "source value");
        Check(RegQueryValueExA(copy, name, nullptr, &bType, b, &bSize) == ERROR_SUCCESS && aType == bType &&
              aSize == bSize && std::memcmp(a, b, aSize) == 0, std::string("the copy's value ") + name);
    }
    tally.values += static_cast<long>(values);
    for (DWORD i = 0; i < keys; ++i) {
        DWORD length = sizeof name;
        Check(RegEnumKeyExA(source, i, name, &length, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS,
              "source key");
        Key s, c;
        Check(RegOpenKeyExA(source, name, 0, KEY_READ, &s.h) == ERROR_SUCCESS &&
              RegOpenKeyExA(copy, name, 0, KEY_READ, &c.h) == ERROR_SUCCESS, std::string("the copy's key ") + name);
        ++tally.keys;
        Compare(s.h, c.h, tally);
    }
}

struct Tree {
    Key base, source;
    Ref<_RegistryKey> orbexBase, orbexSource;

    bool Exists(const char* leaf) const {
        Key key;
        return RegOpenKeyExA(base.h, leaf, 0, KEY_READ, &key.h) == ERROR_SUCCESS;
    }
    void Drop(const char* leaf) const {
        RegDeleteTreeA(base.h, leaf);
        RegDeleteKeyA(base.h, leaf);
        Check(!Exists(leaf), std::string("removing ") + leaf);
    }
    // A whole copy of the source at `leaf`, made by the platform; like every contender of the
    // copy, it creates its target key itself.
    void CopyTo(const char* leaf) const {
        Key target;
        Create(base.h, leaf, target);
        Check(RegCopyTreeA(source.h, nullptr, target.h) == ERROR_SUCCESS, "RegCopyTreeA");
    }
    // Checks the copy at `leaf` entry by entry, then removes it.
    void VerifyAndDrop(const char* leaf) const {
        Tally tally;
        {
            Key copy;
            Check(RegOpenKeyExA(base.h, leaf, 0, KEY_READ, &copy.h) == ERROR_SUCCESS, std::string("no ") + leaf);
            Compare(source.h, copy.h, tally);
        }
        Check(tally.keys == TreeKeys && tally.values == TreeValues,
              std::string(leaf) + ": " + std::to_string(tally.keys) + " keys, " + std::to_string(tally.values) +
              " values");
        Drop(leaf);
    }
};

Ref<_RegistryKey> OrbexKey(_RegistryKey* user, const std::wstring& path) {
    Ref<_RegistryKey> key;
    CheckHr(user->OpenSubKey(Bstr(path.c_str()).b, VARIANT_FALSE, key.put()), "OpenSubKey");
    Check(key.get() != nullptr, "Orbex opens the tree's keys");
    return key;
}

}  // namespace

void AddRegistryTreeCases(Suite& suite) {
    ClaimRegistryBranch(suite, Base);

    auto tree = std::make_shared<Tree>();
    Create(HKEY_CURRENT_USER, Base, tree->base);
    Create(tree->base.h, "Source", tree->source);
    int number = 0;
    MakeTree(tree->source.h, 0, number);
    {
        Ref<IDispatch> object(CreateByProgId(L"Orbex.RegLib"));
        Ref<_RegLib> lib;
        CheckHr(object->QueryInterface(IID__RegLib, reinterpret_cast<void**>(lib.put())), "QueryInterface _RegLib");
        Ref<_RegistryKey> user;
        CheckHr(lib->get_CurrentUser(Bstr(L"").b, user.put()), "CurrentUser");
        tree->orbexBase = OrbexKey(user.get(), WideBase);
        tree->orbexSource = OrbexKey(user.get(), std::wstring(WideBase) + L"\\Source");
    }

    Case copy{"CopySubKey, 1,000 keys and 5,000 values", {}};
    copy.contenders.push_back({"floor: RegCopyTreeA", [tree] { tree->CopyTo("FloorCopy"); }, {},
                               [tree] { tree->VerifyAndDrop("FloorCopy"); }});
    copy.contenders.push_back({"Orbex vtable", [tree] {
        Ref<_RegistryKey> created;
        CheckHr(tree->orbexSource->CopySubKey(Bstr(L"OrbexCopy").b, created.put()), "CopySubKey");
        Check(created.get() != nullptr, "CopySubKey gives the new key");
    }, {}, [tree] { tree->VerifyAndDrop("OrbexCopy"); }});
    const std::string regCopy = std::string("reg.exe copy ") + RegKey + "Source " + RegKey + "RegCopy /s /f";
    copy.contenders.push_back({"reg copy", [regCopy] { Check(RunProcess(regCopy) == 0, regCopy); }, {},
                               [tree] { tree->VerifyAndDrop("RegCopy"); }});
    suite.cases.push_back(std::move(copy));

    Case remove{"DeleteSubKeyTree, 1,000 keys and 5,000 values", {}};
    const auto make = [tree] { tree->CopyTo("Doomed"); };
    const auto gone = [tree](const char* who) { Check(!tree->Exists("Doomed"), std::string(who) + " left the key"); };
    remove.contenders.push_back({"floor: RegDeleteTreeA", [tree, gone] {
        Check(RegDeleteTreeA(tree->base.h, "Doomed") == ERROR_SUCCESS, "RegDeleteTreeA");
        gone("RegDeleteTreeA");
    }, make});
    remove.contenders.push_back({"Orbex vtable", [tree, gone] {
        CheckHr(tree->orbexBase->DeleteSubKeyTree(Bstr(L"Doomed").b, VARIANT_FALSE), "DeleteSubKeyTree");
        gone("DeleteSubKeyTree");
    }, make});
    const std::string regDelete = std::string("reg.exe delete ") + RegKey + "Doomed /f";
    remove.contenders.push_back({"reg delete", [regDelete, gone] {
        Check(RunProcess(regDelete) == 0, regDelete);
        gone("reg delete");
    }, make});
    suite.cases.push_back(std::move(remove));
}

}  // namespace bench
