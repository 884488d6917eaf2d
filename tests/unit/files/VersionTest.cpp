#include "files/FileInfo.h"

#include "InfoSupport.h"
#include "frame/RaisedError.h"

#include <filesystem>
#include <map>
#include <vector>

namespace orbex {
namespace {

using platform::Api;
using platform::Dword;
using platform::testing::Replace;

constexpr Long None = 0x7FFFFFFF;

template <class Call>
Long RaisedBy(Call&& call) {
    try {
        call();
    } catch (const RaisedError& error) {
        return error.Number;
    }
    return None;
}

// The program runs in <build>\tests; the module of this build lies in <build>\src\com.
TEST(FileVersion, ModuleAndFilesWithoutAResource) {
    const auto module = std::filesystem::current_path().parent_path() / "src" / "com" / "Orbex.dll";
    FileInfo info;
    info.Filename(module.wstring());
    EXPECT_EQ(info.Version(), L"1.00");
    EXPECT_EQ((std::vector<Integer>{info.MajorVersion(), info.MinorVersion(), info.RevisionVersion(), info.BuildVersion()}),
              (std::vector<Integer>{1, 0, 0, 0}));
    EXPECT_EQ(info.Description(), L"Orbex - Class library for the developer.");
    EXPECT_EQ(info.OriginalFilename(), L"Orbex.dll");
    EXPECT_EQ(info.CompanyName(), L"");

    testing::ScratchFolder folder;
    for (const String& name : {folder.Write("plain.txt", "no resource"), String(L"missing.dll")}) {
        info.Filename(name);
        EXPECT_EQ(info.ProductName(), L"");
        EXPECT_EQ(info.BuildVersion(), 0);
    }
    info.Filename(L"");
    platform::testing::Recorder recorder;
    EXPECT_EQ(info.Version(), L"");
    EXPECT_EQ(info.MajorVersion(), 0);
    EXPECT_TRUE(recorder.calls().empty());
}

// A version block made up by the test: the translation entries and the values by query path.
struct FakeBlock {
    std::vector<std::uint8_t> translation{0x09, 0x04, 0xB0, 0x04};
    std::map<std::string, std::string> values;
    std::vector<std::string> queries;

    Replace<&Api::GetFileVersionInfoSizeA> size{[](const char*, Dword*) { return Dword{64}; }};
    Replace<&Api::GetFileVersionInfoA> read{[](const char*, Dword, Dword, void*) { return platform::Bool{1}; }};
    Replace<&Api::VerQueryValueA> query{[this](const void*, const char* path, void** value, Dword* length) {
        queries.push_back(path);
        if (queries.back() == "\\VarFileInfo\\Translation") {
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

TEST(FileVersion, TheFirstTranslationNamesTheOnlyTable) {
    FakeBlock block;
    block.translation = {0xCD, 0xAB, 0x34, 0x12, 0x09, 0x04, 0xB0, 0x04};  // 0xABCD/0x1234, then 0x0409/0x04B0
    block.values["\\StringFileInfo\\ABCD1234\\ProductName"] = "First";
    block.values["\\StringFileInfo\\040904B0\\ProductName"] = "Second";
    block.values["\\StringFileInfo\\040904B0\\CompanyName"] = "Second only";
    FileInfo info;
    info.Filename(L"fake.dll");
    block.queries.clear();
    EXPECT_EQ(info.ProductName(), L"First");
    EXPECT_EQ(block.queries, (std::vector<std::string>{"\\VarFileInfo\\Translation", "\\StringFileInfo\\ABCD1234\\ProductName"}));
    EXPECT_EQ(info.CompanyName(), L"");

    block.translation = {};
    EXPECT_EQ(info.ProductName(), L"");
    block.translation = {0xCD, 0xAB};
    EXPECT_EQ(RaisedBy([&] { info.ProductName(); }), RunTime::InvalidArgument);
    EXPECT_EQ(RaisedBy([&] { info.MajorVersion(); }), RunTime::InvalidArgument);
}

TEST(FileVersion, NumbersFromTheVersionText) {
    constexpr Long Ok = None, Mismatch = RunTime::TypeMismatch, Overflow = RunTime::Overflow;
    struct Row {
        const char* text;
        Integer numbers[4];
        Long raised[4];
    };
    const Row rows[] = {
        {"1.2.3.4", {1, 2, 3, 4}, {Ok, Ok, Ok, Ok}},
        {"1.2", {1, 2, 0, 0}, {Ok, Ok, Ok, Ok}},
        {"1.2.3.4.5", {1, 2, 3, 4}, {Ok, Ok, Ok, Ok}},
        {"5.1.26.0 (build tag", {5, 1, 26, 0}, {Ok, Ok, Ok, Mismatch}},
        {"1.2.70000.0", {1, 2, 0, 0}, {Ok, Ok, Overflow, Ok}},
        {"1..3", {1, 0, 3, 0}, {Ok, Mismatch, Ok, Ok}},
        {"", {0, 0, 0, 0}, {Ok, Ok, Ok, Ok}},
    };
    FakeBlock block;
    FileInfo info;
    info.Filename(L"fake.dll");
    Integer (FileInfo::*const parts[])() const = {&FileInfo::MajorVersion, &FileInfo::MinorVersion,
                                                  &FileInfo::RevisionVersion, &FileInfo::BuildVersion};
    for (const Row& row : rows) {
        block.values["\\StringFileInfo\\040904B0\\FileVersion"] = row.text;
        EXPECT_EQ(info.Version(), testing::Wide(row.text));
        for (int k = 0; k < 4; ++k) {
            Integer number = -1;
            EXPECT_EQ(RaisedBy([&] { number = (info.*parts[k])(); }), row.raised[k]) << row.text << " part " << k;
            if (row.raised[k] == Ok) {
                EXPECT_EQ(number, row.numbers[k]) << row.text << " part " << k;
            }
        }
    }
}

}  // namespace
}  // namespace orbex
