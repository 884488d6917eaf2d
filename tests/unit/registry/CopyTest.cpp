// Copying and renaming on the real registry: whole trees, the target rule, refusals that keep
// the source, the handle shared after a rename, and fault injection that fails every write and
// delete of a rename in turn and checks that no data is lost.
#include "TestKeys.h"

#include "platform/TestHook.h"
#include "registry/RegLib.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace orbex {
namespace {

using platform::Api;
using platform::Dword;
using platform::Handle;
using platform::Status;
using platform::testing::Replace;
using namespace testing;
using namespace std::string_literals;

const std::string kBase = "Software\\OrbexTest\\Copy";

Tree Below(const std::string& relative) { return SnapshotOf(kBase + "\\" + relative); }

// The tree as a copy delivers it: a text is cut at its first NUL and stored again with one
// terminator, and a copy, unlike a move, carries only the type of the untyped values.
Tree AsCarried(Tree tree, bool move) {
    for (auto& [path, values] : tree) {
        for (auto& [name, value] : values) {
            if (value.first == 1 || value.first == 2)
                value.second = value.second.substr(0, value.second.find('\0')) + '\0';
            else if (!move && (value.first == 0 || value.first > 11 || value.first == 8)) value.second.clear();
        }
    }
    return tree;
}

class Copying : public ::testing::Test {
protected:
    void SetUp() override {
        DeleteKeyTree(kBase);
        const std::string source = kBase + "\\Source";
        SetRaw(source, "text", 1, "abc\0"s);
        SetRaw(source, "expand", 2, "%PATH%\0"s);
        SetRaw(source, "dword", 4, "\x2a\0\0\0"s);
        SetRaw(source, "multi", 7, "a\0b\0\0"s);
        SetRaw(source, "bin", 3, "\x01\x02\x03"s);
        SetRaw(source, "", 1, "default\0"s);
        SetRaw(source + "\\Child", "qword", 11, "\x05\0\0\0\0\0\0\0"s);
        SetRaw(source + "\\Child\\Grandchild", "none", 0, "raw data");
        SetRaw(source + "\\Child\\Grandchild", "resources", 8, "\x10\x20\0\x30"s);
        original_ = Below("Source");
    }
    void TearDown() override { DeleteKeyTree(kBase); }

    static std::unique_ptr<RegistryKey> Open(const std::string& below) {
        return RegLib().CurrentUser()->OpenSubKey(Wide(kBase + "\\" + below), True);
    }

    Tree original_;
};

TEST_F(Copying, CopyAndRenameCarryTheWholeTree) {
    auto source = Open("Source");
    platform::testing::Recorder recorder;
    auto copy = source->CopySubKey(L"Copy");
    ASSERT_TRUE(copy);
    EXPECT_EQ(recorder.count("RegQueryValueExA"), 0u) << "values come with their listing";
    EXPECT_EQ(recorder.count("RegSetValueExA"), 9u) << "each value written once";
    EXPECT_EQ(copy->Name(), L"HKEY_CURRENT_USER\\" + Wide(kBase) + L"\\Copy");
    EXPECT_EQ(Below("Copy"), AsCarried(original_, false));
    EXPECT_EQ(Below("Source"), original_);

    auto renamed = source->RenameSubKey(L"Renamed");
    ASSERT_TRUE(renamed);
    EXPECT_TRUE(Below("Source").empty());
    EXPECT_EQ(Below("Renamed"), AsCarried(original_, true)) << "types 0 and 8 arrive with their data";
    EXPECT_EQ(source->GetKeyHandle(), renamed->GetKeyHandle());
    EXPECT_EQ(source->Name(), L"HKEY_CURRENT_USER\\" + Wide(kBase) + L"\\Source");
    Long type = 0;
    EXPECT_EQ(std::get<Long>(source->GetValueEx(L"dword", type)), 42);
}

TEST_F(Copying, RefusalsKeepTheSource) {
    const struct { const char* receiver; String name; } rows[] = {
        {"Source", L"\\Software\\OrbexTest\\Copy\\Source"},     // the source itself
        {"Source", L"\\software\\orbextest\\copy\\source\\x"},  // below it, in other case
        {"Source", L"Child\\Copy"},                             // relative, with a backslash
        {"Source\\Child", L"\\Software\\OrbexTest\\Copy\\Source\\Child\\"},
        // As the platform reads them: up to a NUL, and a run of backslashes as one.
        {"Source", String(L"Source\0tail", 11)},
        {"Source", L"\\Software\\OrbexTest\\Copy\\\\Source\\x"},
    };
    for (const auto& row : rows) {
        auto source = Open(row.receiver);
        const std::string shown = ::testing::PrintToString(row.name);
        EXPECT_EQ(std::get<0>(FailureOf([&] { source->CopySubKey(row.name); })), vqInvalidArgument) << shown;
        EXPECT_EQ(std::get<0>(FailureOf([&] { source->RenameSubKey(row.name); })), vqInvalidArgument) << shown;
    }
    auto source = Open("Source");
    auto child = source->OpenSubKey(L"Child", True);
    for (const auto& call : std::initializer_list<std::function<void()>>{
             [] { RegLib().CurrentUser()->CopySubKey(L"Anything"); }, [&] { source->CopySubKeyEx(child.get()); },
             [&] { source->CopySubKeyEx(nullptr); }, [&] { source->CopyValues(nullptr); }}) {
        EXPECT_EQ(std::get<0>(FailureOf(call)), vqInvalidArgument);
    }
    auto closed = Open("Source");
    closed->CloseKey();
    EXPECT_EQ(std::get<0>(FailureOf([&] { closed->RenameSubKey(L"Renamed"); })), vqInvalidRegistryKey);
    EXPECT_TRUE(Below("Renamed").empty());
    // A value that cannot be read stops a rename before any delete.
    {
        Replace<&Api::RegQueryValueExA> refuse{[&](Handle key, const char* name, auto... rest) {
            return std::string(name) == "bin" ? 5 : platform::realApi().RegQueryValueExA(key, name, rest...);
        }};
        EXPECT_EQ(std::get<0>(FailureOf([&] { source->RenameSubKey(L"Renamed"); })), vqInvalidOperation);
        EXPECT_EQ(std::get<0>(FailureOf([&] { source->RenameValue(L"bin", L"moved"); })), vqInvalidOperation);
    }
    EXPECT_EQ(Below("Source"), original_);
}

// A key keeps the path the platform opened, which ends at a NUL in the name: the paths of its
// sub-keys are built from it, and would otherwise open the key itself again, without end.
TEST_F(Copying, AKeyPathEndsAtANul) {
    auto base = RegLib().CurrentUser()->OpenSubKey(Wide(kBase), True);
    auto source = base->OpenSubKey(String(L"Source\0tail", 11), True);
    ASSERT_NE(source, nullptr);
    EXPECT_EQ(source->Name(), L"HKEY_CURRENT_USER\\" + Wide(kBase) + L"\\Source");
    source->DeleteSubKeyTree(String(L"Child\0tail", 10));
    EXPECT_TRUE(Below("Source\\Child").empty());
}

TEST_F(Copying, TheSharedHandleIsClosedOnceWhicheverGoesFirst) {
    for (bool receiverFirst : {true, false}) {
        SetUp();
        std::map<Handle, int> closed;
        Replace<&Api::RegCloseKey> count{[&](Handle key) {
            ++closed[key];
            return platform::realApi().RegCloseKey(key);
        }};
        auto source = Open("Source");
        auto renamed = source->RenameSubKey(L"Renamed");
        const Handle shared = static_cast<Handle>(renamed->GetKeyHandle());
        (receiverFirst ? source : renamed).reset();
        EXPECT_EQ(closed[shared], 0);
        Long type = 0;
        (receiverFirst ? renamed : source)->GetValueEx(L"dword", type);
        EXPECT_EQ(type, 4) << "the remaining holder still reads through the handle";
        source.reset();
        renamed.reset();
        EXPECT_EQ(closed[shared], 1);
    }
}

TEST_F(Copying, RenameValue) {
    auto source = Open("Source");
    for (const wchar_t* newName : {L"text", L"TEXT"}) {
        source->RenameValue(L"text", newName);
        EXPECT_EQ(Below("Source"), original_) << "a value renamed onto itself is kept";
    }
    source->RenameValue(L"text", L"moved");
    auto grandchild = Open("Source\\Child\\Grandchild");
    grandchild->RenameValue(L"resources", L"moved");  // a type the typed members cannot hold
    Tree expected = original_;
    expected[""]["moved"] = expected[""]["text"];
    expected[""].erase("text");
    expected["\\Child\\Grandchild"]["moved"] = expected["\\Child\\Grandchild"]["resources"];
    expected["\\Child\\Grandchild"].erase("resources");
    EXPECT_EQ(Below("Source"), expected);
}

TEST_F(Copying, NoDataIsLostWhenAnyWriteOrDeleteOfARenameFails) {
    constexpr Status kFailure = 1450;  // insufficient system resources, which no member reports
    std::string failing;
    int remaining = 0;  // fails the call that brings this to 0
    const auto fire = [&](const char* function) { return failing == function && remaining > 0 && --remaining == 0; };
    const auto& real = platform::realApi();
    Replace<&Api::RegSetValueExA> set{
        [&](auto... a) { return fire("RegSetValueExA") ? kFailure : real.RegSetValueExA(a...); }};
    Replace<&Api::RegCreateKeyExA> create{
        [&](auto... a) { return fire("RegCreateKeyExA") ? kFailure : real.RegCreateKeyExA(a...); }};
    Replace<&Api::RegDeleteKeyA> remove{
        [&](auto... a) { return fire("RegDeleteKeyA") ? kFailure : real.RegDeleteKeyA(a...); }};
    int runs = 0;
    for (const char* function : {"RegSetValueExA", "RegCreateKeyExA", "RegDeleteKeyA"}) {
        // Once the n-th call no longer comes, every call of this function has failed once.
        for (int n = 1; remaining == 0; ++n, ++runs) {
            SetUp();
            failing = function;
            remaining = n;
            try {
                Open("Source")->RenameSubKey(L"Renamed");
            } catch (const RaisedError&) {
            }
            failing.clear();
            EXPECT_TRUE(Below("Source") == original_ || Below("Renamed") == AsCarried(original_, true))
                << function << " failing at call " << n << ": source intact or target complete";
        }
        remaining = 0;
    }
    EXPECT_GT(runs, 20);
}

}  // namespace
}  // namespace orbex
