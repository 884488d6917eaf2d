// Copying and renaming on the real registry: whole trees, the target rule, refusals that keep
// the source, the handle shared after a rename, and fault injection that fails every write and
// delete of a rename in turn and checks that no data is lost.
#include "frame/RaisedError.h"
#include "platform/TestHook.h"
#include "TestKeys.h"
#include "frame/Raises.h"
#include "registry/RegLib.h"
#include "registry/RegistryKey.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace orbex {
namespace {

using platform::Api;
using platform::Dword;
using platform::Handle;
namespace hook = platform::testing;

constexpr Handle kCurrentUser = static_cast<Handle>(static_cast<Long>(0x80000001));
const std::string kBase = "Software\\OrbexTest\\Copy";

// What a tree holds, read with the real platform: path below the base → value name → type and bytes.
using Values = std::map<std::string, std::pair<Dword, std::string>>;
using Tree = std::map<std::string, Values>;

Handle OpenRaw(const std::string& path) {
    Handle key = 0;
    return platform::realApi().RegOpenKeyExA(kCurrentUser, path.c_str(), 0, 0x20019, &key) == 0 ? key : 0;
}

void Snapshot(const std::string& path, const std::string& relative, Tree& tree) {
    Handle key = OpenRaw(path);
    if (!key) return;
    Values& values = tree[relative];
    char name[256];
    std::uint8_t data[4096];
    for (Dword index = 0;; ++index) {
        Dword nameLength = sizeof name, size = sizeof data, type = 0;
        if (platform::realApi().RegEnumValueA(key, index, name, &nameLength, nullptr, &type, data, &size) != 0) break;
        values[std::string(name, nameLength)] = {type, std::string(reinterpret_cast<char*>(data), size)};
    }
    std::vector<std::string> children;
    for (Dword index = 0;; ++index) {
        Dword nameLength = sizeof name;
        if (platform::realApi().RegEnumKeyExA(key, index, name, &nameLength, nullptr, nullptr, nullptr, nullptr) != 0)
            break;
        children.emplace_back(name, nameLength);
    }
    platform::realApi().RegCloseKey(key);
    for (const std::string& child : children) Snapshot(path + "\\" + child, relative + "\\" + child, tree);
}

Tree SnapshotOf(const std::string& below) {
    Tree tree;
    Snapshot(kBase + "\\" + below, "", tree);
    return tree;
}

void SetRaw(const std::string& path, const char* name, Dword type, const std::string& data) {
    Handle key = 0;
    ASSERT_EQ(platform::realApi().RegCreateKeyExA(kCurrentUser, path.c_str(), 0, nullptr, 0, testing::KeyAllAccess,
                                                  nullptr, &key, nullptr), 0);
    platform::realApi().RegSetValueExA(key, name, 0, type, reinterpret_cast<const std::uint8_t*>(data.data()),
                                       static_cast<Dword>(data.size()));
    platform::realApi().RegCloseKey(key);
}

void DeleteRaw(const std::string& path) { testing::DeleteKeyTree(kCurrentUser, path); }

// The tree as a copy delivers it: a text is cut at its first NUL and stored again with one
// terminator, and a copy, unlike a move, carries only the type of the untyped values.
Tree AsCarried(Tree tree, bool move) {
    for (auto& [path, values] : tree) {
        for (auto& [name, value] : values) {
            if (value.first == 1 || value.first == 2)
                value.second = value.second.substr(0, value.second.find('\0')) + std::string(1, '\0');
            else if (!move && (value.first == 0 || value.first > 11 || value.first == 8)) value.second.clear();
        }
    }
    return tree;
}

class Copying : public ::testing::Test {
protected:
    void SetUp() override {
        DeleteRaw(kBase);
        const std::string source = kBase + "\\Source";
        SetRaw(source, "text", 1, std::string("abc\0", 4));
        SetRaw(source, "expand", 2, std::string("%PATH%\0", 7));
        SetRaw(source, "dword", 4, std::string("\x2a\0\0\0", 4));
        SetRaw(source, "multi", 7, std::string("a\0b\0\0", 5));
        SetRaw(source, "bin", 3, std::string("\x01\x02\x03", 3));
        SetRaw(source, "", 1, std::string("default\0", 8));
        SetRaw(source + "\\Child", "qword", 11, std::string("\x05\0\0\0\0\0\0\0", 8));
        SetRaw(source + "\\Child\\Grandchild", "none", 0, "raw data");
        SetRaw(source + "\\Child\\Grandchild", "resources", 8, std::string("\x10\x20\0\x30", 4));
        original_ = SnapshotOf("Source");
    }
    void TearDown() override { DeleteRaw(kBase); }

    std::unique_ptr<RegistryKey> Open(const std::string& below) {
        return RegLib().CurrentUser()->OpenSubKey(L"Software\\OrbexTest\\Copy\\" + std::wstring(below.begin(), below.end()),
                                                  True);
    }

    Tree original_;
};

TEST_F(Copying, CopySubKeyCopiesTheWholeTreeAsASibling) {
    auto source = Open("Source");
    auto copy = source->CopySubKey(L"Copy");
    ASSERT_TRUE(copy);
    EXPECT_EQ(copy->Name(), L"HKEY_CURRENT_USER\\Software\\OrbexTest\\Copy\\Copy");
    EXPECT_EQ(SnapshotOf("Copy"), AsCarried(original_, false));
    EXPECT_EQ(SnapshotOf("Source"), original_);
}

TEST_F(Copying, TargetsInsideTheSourceAreRefusedAndTheSourceKept) {
    const struct {
        const char* receiver;
        const wchar_t* name;
    } rows[] = {
        {"Source", L"\\Software\\OrbexTest\\Copy\\Source"},         // the source itself
        {"Source", L"\\software\\orbextest\\copy\\source\\x"},      // below it, in other case
        {"Source", L"Child\\Copy"},                                 // relative, with a backslash
        {"Source\\Child", L"\\Software\\OrbexTest\\Copy\\Source\\Child\\"},
    };
    for (const auto& row : rows) {
        auto source = Open(row.receiver);
        ASSERT_TRUE(source);
        EXPECT_EQ(testing::RaisedNumber([&] { source->CopySubKey(row.name); }), vqInvalidArgument);
        EXPECT_EQ(testing::RaisedNumber([&] { source->RenameSubKey(row.name); }), vqInvalidArgument);
        EXPECT_EQ(SnapshotOf("Source"), original_);
    }
    auto root = RegLib().CurrentUser();
    EXPECT_EQ(testing::RaisedNumber([&] { root->CopySubKey(L"Anything"); }), vqInvalidArgument);
    auto source = Open("Source");
    auto child = source->OpenSubKey(L"Child", True);
    EXPECT_EQ(testing::RaisedNumber([&] { source->CopySubKeyEx(child.get()); }), vqInvalidArgument);
    EXPECT_EQ(testing::RaisedNumber([&] { source->CopySubKeyEx(nullptr); }), vqInvalidArgument);
    EXPECT_EQ(testing::RaisedNumber([&] { source->CopyValues(nullptr); }), vqInvalidArgument);
}

TEST_F(Copying, RenameMovesEverythingAndTheReceiverFollows) {
    auto source = Open("Source");
    auto renamed = source->RenameSubKey(L"Renamed");
    ASSERT_TRUE(renamed);
    EXPECT_TRUE(SnapshotOf("Source").empty());
    EXPECT_EQ(SnapshotOf("Renamed"), AsCarried(original_, true)) << "types 0 and 8 arrive with their data";
    EXPECT_EQ(source->GetKeyHandle(), renamed->GetKeyHandle());
    EXPECT_EQ(source->Name(), L"HKEY_CURRENT_USER\\Software\\OrbexTest\\Copy\\Source");
    Long type = 0;
    EXPECT_EQ(std::get<Long>(source->GetValueEx(L"dword", type)), 42);
}

TEST_F(Copying, TheSharedHandleIsClosedOnceWhicheverGoesFirst) {
    for (bool receiverFirst : {true, false}) {
        SetUp();
        std::map<Handle, int> closed;
        hook::Replace<&Api::RegCloseKey> count{[&](Handle key) {
            ++closed[key];
            return platform::realApi().RegCloseKey(key);
        }};
        auto source = Open("Source");
        auto renamed = source->RenameSubKey(L"Renamed");
        const Handle shared = static_cast<Handle>(renamed->GetKeyHandle());
        if (receiverFirst) source.reset(); else renamed.reset();
        EXPECT_EQ(closed[shared], 0);
        Long type = 0;
        (receiverFirst ? renamed : source)->GetValueEx(L"dword", type);
        EXPECT_EQ(type, 4) << "the remaining holder still reads through the handle";
        source.reset();
        renamed.reset();
        EXPECT_EQ(closed[shared], 1);
        TearDown();
    }
}

TEST_F(Copying, RenameOfAClosedKeyKeepsTheSource) {
    auto source = Open("Source");
    source->CloseKey();
    EXPECT_EQ(testing::RaisedNumber([&] { source->RenameSubKey(L"Renamed"); }), vqInvalidRegistryKey);
    EXPECT_EQ(SnapshotOf("Source"), original_);
    EXPECT_TRUE(SnapshotOf("Renamed").empty());
}

TEST_F(Copying, RenameValueKeepsAValueRenamedOntoItself) {
    auto source = Open("Source");
    for (const wchar_t* newName : {L"text", L"TEXT"}) {
        source->RenameValue(L"text", newName);
        EXPECT_EQ(SnapshotOf("Source"), original_);
    }
    source->RenameValue(L"text", L"moved");
    Tree expected = original_;
    expected[""]["moved"] = {1, std::string("abc\0", 4)};
    expected[""].erase("text");
    EXPECT_EQ(SnapshotOf("Source"), expected);
}

TEST_F(Copying, RenameValueCarriesTypesTheTypedMembersCannotHold) {
    auto grandchild = Open("Source\\Child\\Grandchild");
    grandchild->RenameValue(L"resources", L"moved");
    const Values values = SnapshotOf("Source\\Child\\Grandchild")[""];
    ASSERT_EQ(values.count("moved"), 1u);
    EXPECT_EQ(values.at("moved"), original_["\\Child\\Grandchild"].at("resources"));
    EXPECT_EQ(values.count("resources"), 0u);
}

TEST_F(Copying, AValueThatCannotBeReadStopsTheRenameBeforeAnyDelete) {
    hook::Replace<&Api::RegQueryValueExA> refuse{[&](Handle key, const char* name, Dword* reserved, Dword* type,
                                                     std::uint8_t* data, Dword* size) -> platform::Status {
        if (std::string(name) == "bin") return 5;
        return platform::realApi().RegQueryValueExA(key, name, reserved, type, data, size);
    }};
    auto source = Open("Source");
    EXPECT_EQ(testing::RaisedNumber([&] { source->RenameSubKey(L"Renamed"); }), vqInvalidOperation);
    EXPECT_EQ(testing::RaisedNumber([&] { source->RenameValue(L"bin", L"moved"); }), vqInvalidOperation);
    EXPECT_EQ(SnapshotOf("Source"), original_);
}

// Fails the n-th call of one platform function with a code that no member reports by itself.
class FailNth {
public:
    void arm(int n) { remaining_ = n; }
    bool fire() { return remaining_ > 0 && --remaining_ == 0; }
    bool reached() const { return remaining_ == 0; }

private:
    int remaining_ = 0;
};

TEST_F(Copying, NoDataIsLostWhenAnyWriteOrDeleteOfARenameFails) {
    constexpr platform::Status kFailure = 1450;  // insufficient system resources
    FailNth failer;
    std::string failing;
    hook::Replace<&Api::RegSetValueExA> set{[&](Handle k, const char* n, Dword r, Dword t, const std::uint8_t* d,
                                                Dword s) -> platform::Status {
        if (failing == "RegSetValueExA" && failer.fire()) return kFailure;
        return platform::realApi().RegSetValueExA(k, n, r, t, d, s);
    }};
    hook::Replace<&Api::RegCreateKeyExA> create{[&](Handle k, const char* p, Dword r, char* c, Dword o, Dword m,
                                                    platform::SecurityAttributes* s, Handle* h,
                                                    Dword* d) -> platform::Status {
        if (failing == "RegCreateKeyExA" && failer.fire()) return kFailure;
        return platform::realApi().RegCreateKeyExA(k, p, r, c, o, m, s, h, d);
    }};
    hook::Replace<&Api::RegDeleteKeyA> remove{[&](Handle k, const char* p) -> platform::Status {
        if (failing == "RegDeleteKeyA" && failer.fire()) return kFailure;
        return platform::realApi().RegDeleteKeyA(k, p);
    }};

    int runs = 0;
    for (const char* function : {"RegSetValueExA", "RegCreateKeyExA", "RegDeleteKeyA"}) {
        for (int n = 1;; ++n) {
            SetUp();
            failing = function;
            failer.arm(n);
            {
                auto source = Open("Source");
                try {
                    source->RenameSubKey(L"Renamed");
                } catch (const RaisedError&) {
                }
            }
            const bool reached = failer.reached();
            failing.clear();
            const Tree source = SnapshotOf("Source"), target = SnapshotOf("Renamed");
            EXPECT_TRUE(source == original_ || target == AsCarried(original_, true))
                << function << " failing at call " << n << ": source intact or target complete";
            ++runs;
            TearDown();
            // Once the n-th call no longer comes, every call of this function has failed once.
            if (!reached) break;
        }
    }
    EXPECT_GT(runs, 20);
}

}  // namespace
}  // namespace orbex
