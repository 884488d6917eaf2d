#include "files/FileInfo.h"

#include "FilesSupport.h"
#include "frame/Ansi.h"
#include "frame/Raises.h"

#include <map>
#include <vector>

namespace orbex {
namespace {

using platform::Api;
using platform::Bool;
using platform::Dword;
using platform::FileTime;
using platform::Handle;
using platform::SystemTime;
using platform::testing::Recorder;
using platform::testing::Replace;
using testing::Bytes;
using testing::RaisedNumber;
using testing::TempTree;

std::vector<Boolean> Attributes(const FileInfo& f) {
    return {f.AttributeArchive(), f.AttributeCompressed(), f.AttributeDirectory(), f.AttributeEncrypted(),
            f.AttributeHidden(), f.AttributeNormal(), f.AttributeNotContentIndexed(), f.AttributeOffline(),
            f.AttributeReadOnly(), f.AttributeReparsePoint(), f.AttributeSparseFile(), f.AttributeSystem(),
            f.AttributeTemporary()};
}
std::vector<double> Stamps(const FileInfo& f) {
    return {f.CreationDate().days, f.LastAccessDate().days, f.LastWriteDate().days};
}

TEST(FileInfo, FoldersAndNamesThatDoNotOpen) {
    TempTree tree;
    FileInfo info;
    EXPECT_EQ(Attributes(info), std::vector<Boolean>(13, False));
    EXPECT_EQ(Stamps(info), std::vector<double>(3, 0));

    info.Filename(tree[""]);
    EXPECT_EQ(info.AttributeDirectory(), True);
    EXPECT_GT(info.LastWriteDate().days, 0);

    // Type and size cleared, every attribute True, the dates of the folder kept.
    const std::vector<double> kept = Stamps(info);
    for (const String& name : {tree["missing.txt"], String(L"\u0142\u4E2D.txt")}) {
        info.Filename(name);
        EXPECT_EQ(info.Filename(), AnsiRoundTrip(name));  // as the platform received it
        EXPECT_EQ(info.FileType(), vqFTUnknown);
        EXPECT_EQ(info.Size(), Currency{});
        EXPECT_EQ(Attributes(info), std::vector<Boolean>(13, True));
        EXPECT_EQ(Stamps(info), kept);
    }
}

// Each writable property changes its own bit of the word the load found and sends the whole
// word, refused or not. A Not loaded object (word -1) sends nothing and keeps its word.
TEST(FileInfo, AttributeWrites) {
    TempTree tree;
    const String name = tree.File("word.txt", "x");
    constexpr Dword Loaded = 0x4A80;
    Replace<&Api::GetFileAttributesA> attributes{[](const char*) { return Loaded; }};
    std::vector<Dword> sent;
    Replace<&Api::SetFileAttributesA> set{[&](const char*, Dword word) { return sent.push_back(word), Bool{0}; }};
    using Write = void (FileInfo::*)(Boolean);
    using Read = Boolean (FileInfo::*)() const;
    const std::tuple<Write, Read, Dword> rows[] = {
        {&FileInfo::AttributeArchive, &FileInfo::AttributeArchive, 0x20},
        {&FileInfo::AttributeHidden, &FileInfo::AttributeHidden, 0x2},
        {&FileInfo::AttributeNotContentIndexed, &FileInfo::AttributeNotContentIndexed, 0x2000},
        {&FileInfo::AttributeOffline, &FileInfo::AttributeOffline, 0x1000},
        {&FileInfo::AttributeReadOnly, &FileInfo::AttributeReadOnly, 0x1},
        {&FileInfo::AttributeSystem, &FileInfo::AttributeSystem, 0x4},
        {&FileInfo::AttributeTemporary, &FileInfo::AttributeTemporary, 0x100}};
    for (const auto& [write, read, bit] : rows) {
        FileInfo info;
        info.Filename(name);
        sent.clear();
        (info.*write)(1);
        EXPECT_EQ((info.*read)(), True) << bit;
        (info.*write)(False);
        EXPECT_EQ((info.*read)(), False) << bit;
        EXPECT_EQ(sent, (std::vector<Dword>{Loaded | bit, Loaded & ~bit})) << bit;

        info.Filename(L"missing");
        sent.clear();
        (info.*write)(False);
        EXPECT_TRUE(sent.empty()) << bit;
        EXPECT_EQ((info.*read)(), True) << bit;
    }
}

// Open flags and size query by family and version; the length by name is a signed 32-bit count,
// the 64-bit size is exact to the Currency limit, and beyond it the load stops, handle closed.
TEST(FileInfo, OpenAndSizeByPlatform) {
    TempTree tree;
    const String name = tree.File("seven.txt", "1234567");
    const struct { testing::Version windows; Dword flags; bool sizeEx; } rows[] = {
        {testing::Win95, 0, false}, {testing::Nt4, 0x2000000, false}, {testing::Win2000, 0x2000000, true}};
    for (const auto& row : rows) {
        testing::FakeVersion pretend{row.windows};
        std::vector<Dword> flags;
        Replace<&Api::CreateFileA> open{[&](const char* n, Dword a, Dword s, platform::SecurityAttributes* sa, Dword d,
                                            Dword f, Handle t) {
            return flags.push_back(f), platform::realApi().CreateFileA(n, a, s, sa, d, f, t);
        }};
        Recorder recorder;
        FileInfo info;
        info.Filename(name);
        EXPECT_EQ(flags, std::vector<Dword>{row.flags}) << row.windows.major;
        EXPECT_EQ(recorder.count("GetFileSizeEx"), row.sizeEx ? 1u : 0u) << row.windows.major;
        EXPECT_EQ(recorder.count("FindClose"), row.sizeEx ? 0u : 1u) << row.windows.major;
        EXPECT_EQ(Bytes(info.Size()), 7) << row.windows.major;
    }
    {
        testing::FakeVersion pretend{testing::Nt4};
        Replace<&Api::FindFirstFileA> find{[](const char*, platform::Win32FindData* data) {
            return *data = {}, data->nFileSizeHigh = 1, data->nFileSizeLow = 0x80000000, Handle{77};
        }};
        Replace<&Api::FindClose> close{[](Handle search) { return Bool{search == 77}; }};
        FileInfo info;
        info.Filename(name);
        EXPECT_EQ(Bytes(info.Size()), -2147483648LL);
    }
    for (const std::int64_t reported : {922337203685477LL, 922337203685478LL}) {
        Replace<&Api::GetFileSizeEx> size{[&](Handle, std::int64_t* out) { return *out = reported, Bool{1}; }};
        Recorder recorder;
        FileInfo info;
        info.Filename(name);
        const bool fits = reported <= 922337203685477LL;
        EXPECT_EQ(Bytes(info.Size()), fits ? reported : 0);
        EXPECT_EQ(info.LastWriteDate().days != 0, fits) << reported;
        EXPECT_EQ(recorder.count("CloseHandle"), 1u) << reported;
    }
}

// Whole seconds through the date and time texts; a refused conversion leaves its field alone;
// text the date conversion does not accept gives 0.
TEST(FileInfo, StampConversions) {
    TempTree tree;
    const String name = tree.File("stamp.txt", "x");
    const SystemTime late{2002, 1, 6, 5, 13, 4, 5, 999};
    Replace<&Api::FileTimeToSystemTime> system{[&](const FileTime*, SystemTime* out) { return *out = late, Bool{1}; }};
    int call = 0;
    Replace<&Api::FileTimeToLocalFileTime> local{[&](const FileTime* in, FileTime* out) {
        return *out = *in, Bool{++call != 2};
    }};
    FileInfo info;
    info.Filename(name);
    const double expected = 37261 + (13 * 3600 + 4 * 60 + 5) / 86400.0;  // 2002-01-05 13:04:05
    const std::vector<double> stamps = Stamps(info);
    EXPECT_NEAR(stamps[0], expected, 1e-7);
    EXPECT_EQ(stamps[1], 0);
    EXPECT_NEAR(stamps[2], expected, 1e-7);

    Replace<&Api::GetDateFormatA> format{[](platform::Lcid, Dword, const SystemTime*, const char*, char* buffer,
                                            std::int32_t) { return std::strcpy(buffer, "no date"), 8; }};
    info.Filename(name);
    EXPECT_EQ(Stamps(info), std::vector<double>(3, 0));
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
    EXPECT_EQ(RaisedNumber([&] { info.ProductName(); }), RunTime::InvalidArgument);
    EXPECT_EQ(RaisedNumber([&] { info.MajorVersion(); }), RunTime::InvalidArgument);
}

TEST(FileVersion, NumbersFromTheVersionText) {
    constexpr Long Ok = testing::NothingRaised, Mismatch = RunTime::TypeMismatch, Overflow = RunTime::Overflow;
    const struct { const char* text; Integer numbers[4]; Long raised[4]; } rows[] = {
        {"1.2.3.4", {1, 2, 3, 4}, {Ok, Ok, Ok, Ok}},
        {"1.2", {1, 2, 0, 0}, {Ok, Ok, Ok, Ok}},
        {"1.2.3.4.5", {1, 2, 3, 4}, {Ok, Ok, Ok, Ok}},
        {"5.1.26.0 (build tag", {5, 1, 26, 0}, {Ok, Ok, Ok, Mismatch}},
        {"1.2.70000.0", {1, 2, 0, 0}, {Ok, Ok, Overflow, Ok}},
        {"1..3", {1, 0, 3, 0}, {Ok, Mismatch, Ok, Ok}},
    };
    FakeBlock block;
    FileInfo info;
    info.Filename(L"fake.dll");
    Integer (FileInfo::*const parts[])() const = {&FileInfo::MajorVersion, &FileInfo::MinorVersion,
                                                  &FileInfo::RevisionVersion, &FileInfo::BuildVersion};
    for (const auto& row : rows) {
        block.values["\\StringFileInfo\\040904B0\\FileVersion"] = row.text;
        EXPECT_EQ(info.Version(), testing::Wide(row.text));
        for (int k = 0; k < 4; ++k) {
            Integer number = -1;
            EXPECT_EQ(RaisedNumber([&] { number = (info.*parts[k])(); }), row.raised[k]) << row.text << " part " << k;
            if (row.raised[k] == Ok) {
                EXPECT_EQ(number, row.numbers[k]) << row.text << " part " << k;
            }
        }
    }
}

}  // namespace
}  // namespace orbex
