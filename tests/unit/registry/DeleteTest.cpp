#include "TestKeys.h"

#include "platform/TestHook.h"
#include "registry/RegLib.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace orbex {
namespace {

using platform::Api;
using platform::Dword;
using platform::Handle;
using platform::Status;
using platform::testing::Recorder;
using platform::testing::Replace;
using namespace testing;

bool Exists(const TestKey& test, const std::string& relative) {
    const Handle key = OpenRaw(test.path() + "\\" + relative, 1);
    return key && platform::realApi().RegCloseKey(key) == 0;
}

enum class Fake { None, Open, Delete };  // which platform call gives `result` instead

TEST(Delete, RemovesTheTargetThroughItsOwnHandle) {
    const Failure missing{vqInvalidArgument, L"DeleteSubKey", RegistryText::SubKeyMissing};
    const Failure hasChildren{vqInvalidOperation, L"DeleteSubKey", RegistryText::SubKeyHasChildren};
    const Failure openDenied{vqNoAccess, L"OpenSubKey", RegistryText::NoAccess};
    const Failure deleteDenied{vqNoAccess, L"DeleteSubKey", RegistryText::NoAccess};
    struct Row {
        const char* what;
        bool tree;                        // DeleteSubKeyTree, else DeleteSubKey
        std::string caller;               // below the test key; "" for the test key itself
        String name;
        Boolean errorOnMissing;
        Fake fake;
        Status result;
        Failure failure;
        std::vector<std::string> gone, kept;
        bool marked;                      // the caller's Modified
    };
    for (const Row& row : {
             Row{"leaf", false, "", L"A\\B\\D", False, Fake::None, 0, NoFailure, {"A\\B\\D"}, {"A\\B\\C"}, true},
             Row{"with a child", false, "", L"A\\B", False, Fake::None, 0, hasChildren, {}, {"A\\B\\C"}, false},
             Row{"itself", false, "A\\E", L"", False, Fake::None, 0, NoFailure, {"A\\E"}, {"A"}, true},
             Row{"missing", false, "", L"X", False, Fake::None, 0, NoFailure, {}, {}, false},
             Row{"missing, told", false, "", L"X", True, Fake::None, 0, missing, {}, {}, false},
             Row{"256 characters", true, "", String(256, L'A'), False, Fake::None, 0,
                 {vqInvalidArgument, L"OpenSubKey", RegistryText::NameTooLong}, {}, {}, false},
             Row{"open denied", false, "", L"A\\E", False, Fake::Open, 5, openDenied, {}, {"A\\E"}, false},
             Row{"delete denied", false, "", L"A\\E", False, Fake::Delete, 5, deleteDenied, {}, {"A\\E"}, false},
             Row{"delete refused", false, "", L"A\\E", False, Fake::Delete, 1, NoFailure, {}, {"A\\E"}, false},
             Row{"tree", true, "", L"A\\B", False, Fake::None, 0, NoFailure, {"A\\B"}, {"A\\E"}, false},
             Row{"tree from the root", true, "A\\E", L"\\", False, Fake::None, 0,
                 {vqInvalidArgument, L"DeleteSubKeyTree", RegistryText::RootNotDeletable}, {}, {"A"}, false},
             Row{"tree itself", true, "A", L"", False, Fake::None, 0, NoFailure, {"A"}, {}, false},
             Row{"tree missing", true, "", L"X", False, Fake::None, 0, NoFailure, {}, {"A"}, false},
             Row{"tree missing, told", true, "", L"X", True, Fake::None, 0,
                 {vqInvalidArgument, L"DeleteSubKeyTree", RegistryText::SubKeyMissing}, {}, {}, false},
             Row{"tree, open denied", true, "", L"A", False, Fake::Open, 5, openDenied, {}, {"A\\B\\C"}, false},
             Row{"tree, delete denied", true, "", L"A", False, Fake::Delete, 5, deleteDenied, {}, {"A\\B\\C"}, false},
             // A child the platform keeps without saying 5 leaves its parent with a child.
             Row{"tree, delete refused", true, "", L"A", False, Fake::Delete, 1, hasChildren, {}, {"A\\B\\C"}, false}}) {
        TestKey test;
        for (const char* path : {"A\\B\\C", "A\\B\\D", "A\\E"}) test.CreateSubKey(path);
        const auto root = RegLib{}.CurrentUser();
        const auto caller = root->OpenSubKey(Wide(test.path() + (row.caller.empty() ? "" : "\\" + row.caller)));
        ASSERT_TRUE(caller) << row.what;
        caller->AutoFlush(True);
        {
            std::optional<Replace<&Api::RegOpenKeyExA>> open;
            std::optional<Replace<&Api::RegDeleteKeyA>> remove;
            if (row.fake == Fake::Open) open.emplace([&](Handle, const char*, Dword, Dword, Handle*) { return row.result; });
            if (row.fake == Fake::Delete) remove.emplace([&](Handle, const char*) { return row.result; });
            const auto call = row.tree ? &RegistryKey::DeleteSubKeyTree : &RegistryKey::DeleteSubKey;
            EXPECT_EQ(FailureOf([&] { (caller.get()->*call)(row.name, row.errorOnMissing); }), row.failure) << row.what;
        }
        for (const std::string& path : row.gone) EXPECT_FALSE(Exists(test, path)) << row.what << ' ' << path;
        for (const std::string& path : row.kept) EXPECT_TRUE(Exists(test, path)) << row.what << ' ' << path;
        // DeleteSubKey reports to its receiver; DeleteSubKeyTree leaves it alone.
        EXPECT_EQ(caller->ReadLastError(), row.tree || row.fake != Fake::Delete ? 0 : row.result) << row.what;
        Recorder recorder;
        caller->CloseKey();
        EXPECT_EQ(recorder.count("RegFlushKey"), row.marked ? 1u : 0u) << row.what;
    }
}

// A root is never deleted: by name "" it meets its own sub-keys first, or the root test.
TEST(Delete, LeavesRootsAlone) {
    Replace<&Api::RegDeleteKeyA> guard{[](Handle, const char*) {
        ADD_FAILURE() << "a root reached RegDeleteKeyA";
        return Status{5};
    }};
    const auto root = RegLib{}.CurrentUser();
    EXPECT_EQ(FailureOf([&] { root->DeleteSubKey(L""); }),
              Failure(vqInvalidOperation, L"DeleteSubKey", RegistryText::SubKeyHasChildren));
    EXPECT_EQ(FailureOf([&] { root->DeleteSubKeyTree(L"", True); }),
              Failure(vqInvalidArgument, L"DeleteSubKeyTree", RegistryText::RootNotDeletable));
}

}  // namespace
}  // namespace orbex
