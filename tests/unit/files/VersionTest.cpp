#include "files/FileInfo.h"

#include "InfoSupport.h"
#include "frame/RaisedError.h"
#include "platform/TestHook.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace orbex {
namespace {

using platform::Api;
using platform::Dword;
using platform::testing::Recorder;
using platform::testing::Replace;
using testing::ScratchFolder;

constexpr Long NoError = 0x7FFFFFFF;

template <class Call>
Long RaisedBy(Call&& call) {
    try {
        call();
    } catch (const RaisedError& error) {
        return error.Number;
    }
    return NoError;
}

// The product module of this build: the test program runs in <build>\tests, the module lies in
// <build>\src\com.
String OrbexModule() {
    const std::filesystem::path module = std::filesystem::current_path().parent_path() / "src" / "com" / "Orbex.dll";
    EXPECT_TRUE(std::filesystem::exists(module)) << module.string();
    return module.wstring();
}

TEST(FileVersion, ReadsTheStringTableOfAModule) {
    FileInfo info;
    info.Filename(OrbexModule());
    EXPECT_EQ(info.Version(), L"1.00");
    EXPECT_EQ(info.MajorVersion(), 1);
    EXPECT_EQ(info.MinorVersion(), 0);
    EXPECT_EQ(info.RevisionVersion(), 0);
    EXPECT_EQ(info.BuildVersion(), 0);
    EXPECT_EQ(info.Description(), L"Orbex - Class library for the developer.");
    EXPECT_EQ(info.Comments(), L"Orbex - Class library for the developer.");
    EXPECT_EQ(info.InternalName(), L"Orbex");
    EXPECT_EQ(info.OriginalFilename(), L"Orbex.dll");
    EXPECT_EQ(info.ProductName(), L"Orbex");
    EXPECT_EQ(info.CompanyName(), L"");
    EXPECT_EQ(info.LegalCopyright(), L"");
    EXPECT_EQ(info.LegalTrademarks(), L"");
}

// The version values do not depend on the load: a module that is open for writing elsewhere
// still gives them, and so does an object whose load failed for another reason.
TEST(FileVersion, DoesNotDependOnTheLoad) {
    Replace<&Api::CreateFileA> refused{[](const char*, Dword, Dword, platform::SecurityAttributes*, Dword, Dword,
                                          platform::Handle) { return platform::InvalidHandle; }};
    FileInfo info;
    info.Filename(OrbexModule());
    EXPECT_EQ(info.AttributeDirectory(), True);  // Not loaded
    EXPECT_EQ(info.Version(), L"1.00");
}

TEST(FileVersion, FilesWithoutAResourceGiveEmptyTextsAndZeros) {
    ScratchFolder folder;
    for (const String& name : {folder.Write("plain.txt", "no resource here"), folder.Name("missing.dll")}) {
        FileInfo info;
        info.Filename(name);
        EXPECT_EQ(info.Version(), L"");
        EXPECT_EQ(info.ProductName(), L"");
        EXPECT_EQ(info.MajorVersion(), 0);
        EXPECT_EQ(info.BuildVersion(), 0);
    }
    FileInfo unnamed;
    Recorder recorder;
    EXPECT_EQ(unnamed.Version(), L"");
    EXPECT_EQ(unnamed.Description(), L"");
    EXPECT_EQ(unnamed.MajorVersion(), 0);
    EXPECT_TRUE(recorder.calls().empty());
}

// A version block made up by the test: translations and values by query path.
class FakeBlock {
public:
    std::vector<std::uint8_t> translation{0x09, 0x04, 0xB0, 0x04};
    std::map<std::string, std::string> values;
    std::vector<std::string> queries;

private:
    Replace<&Api::GetFileVersionInfoSizeA> size_{[](const char*, Dword* handle) { return *handle = 7, Dword{64}; }};
    Replace<&Api::GetFileVersionInfoA> read_{[](const char*, Dword, Dword, void*) { return platform::Bool{1}; }};
    Replace<&Api::VerQueryValueA> query_{[this](const void*, const char* path, void** value, Dword* length) {
        queries.push_back(path);
        if (std::strcmp(path, "\\VarFileInfo\\Translation") == 0) {
            *value = translation.data();
            *length = static_cast<Dword>(translation.size());
            return platform::Bool{!translation.empty()};
        }
        const auto found = values.find(path);
        if (found == values.end()) return platform::Bool{0};
        *value = found->second.data();
        *length = static_cast<Dword>(found->second.size() + 1);
        return platform::Bool{1};
    }};
};

TEST(FileVersion, OnlyTheFirstTranslationNamesTheTable) {
    FakeBlock block;
    block.translation = {0x07, 0x04, 0xE4, 0x04, 0x09, 0x04, 0xB0, 0x04};
    block.values["\\StringFileInfo\\040704E4\\ProductName"] = "Erstes";
    block.values["\\StringFileInfo\\040904B0\\ProductName"] = "Second";
    block.values["\\StringFileInfo\\040904B0\\CompanyName"] = "Second only";
    FileInfo info;
    info.Filename(L"fake.dll");
    block.queries.clear();
    EXPECT_EQ(info.ProductName(), L"Erstes");
    EXPECT_EQ(block.queries,
              (std::vector<std::string>{"\\VarFileInfo\\Translation", "\\StringFileInfo\\040704E4\\ProductName"}));
    EXPECT_EQ(info.CompanyName(), L"");
    EXPECT_EQ(info.Description(), L"");
}

TEST(FileVersion, TranslationShapes) {
    FakeBlock block;
    block.values["\\StringFileInfo\\ABCD1234\\FileVersion"] = "2.0";
    block.values["\\StringFileInfo\\040904B0\\FileVersion"] = "";
    FileInfo info;
    info.Filename(L"fake.dll");
    EXPECT_EQ(info.Version(), L"");  // stored length 1, no text
    EXPECT_EQ(info.MajorVersion(), 0);

    block.translation = {0xCD, 0xAB, 0x34, 0x12};  // language 0xABCD, code page 0x1234
    EXPECT_EQ(info.Version(), L"2.0");
    block.translation = {};
    EXPECT_EQ(info.Version(), L"");
    block.translation = {0x09, 0x04};
    EXPECT_EQ(RaisedBy([&] { info.Version(); }), RunTime::InvalidArgument);
    EXPECT_EQ(RaisedBy([&] { info.BuildVersion(); }), RunTime::InvalidArgument);
}

TEST(FileVersion, NumbersFromTheVersionText) {
    struct Row {
        const char* text;
        Integer numbers[4];
        Long raised[4];
    };
    constexpr Long Ok = NoError, Mismatch = RunTime::TypeMismatch, Overflow = RunTime::Overflow;
    const Row rows[] = {
        {"1.2.3.4", {1, 2, 3, 4}, {Ok, Ok, Ok, Ok}},
        {"1.2", {1, 2, 0, 0}, {Ok, Ok, Ok, Ok}},
        {"1.2.3.4.5", {1, 2, 3, 4}, {Ok, Ok, Ok, Ok}},
        {"5.1.26.0 (build tag", {5, 1, 26, 0}, {Ok, Ok, Ok, Mismatch}},
        {"1.2.70000.0", {1, 2, 0, 0}, {Ok, Ok, Overflow, Ok}},
        {"1..3", {1, 0, 3, 0}, {Ok, Mismatch, Ok, Ok}},
        {"-32768.32767", {-32768, 32767, 0, 0}, {Ok, Ok, Ok, Ok}},
        {"", {0, 0, 0, 0}, {Ok, Ok, Ok, Ok}},
    };
    FakeBlock block;
    FileInfo info;
    info.Filename(L"fake.dll");
    Integer (FileInfo::*const parts[])() const = {&FileInfo::MajorVersion, &FileInfo::MinorVersion,
                                                  &FileInfo::RevisionVersion, &FileInfo::BuildVersion};
    for (const Row& row : rows) {
        block.values["\\StringFileInfo\\040904B0\\FileVersion"] = row.text;
        EXPECT_EQ(info.Version(), String(row.text, row.text + std::strlen(row.text)));
        for (int k = 0; k < 4; ++k) {
            Integer number = 0;
            EXPECT_EQ(RaisedBy([&] { number = (info.*parts[k])(); }), row.raised[k]) << row.text << " part " << k;
            if (row.raised[k] == Ok) {
                EXPECT_EQ(number, row.numbers[k]) << row.text << " part " << k;
            }
        }
    }
}

}  // namespace
}  // namespace orbex
