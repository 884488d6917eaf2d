#include "TempFolder.h"

#include "frame/Raises.h"
#include "ini/INILib.h"
#include "platform/TestHook.h"

#include <gtest/gtest.h>

#include <functional>

namespace orbex {
namespace {

using platform::Api;
using platform::Dword;
using platform::testing::Recorder;
using platform::testing::Replace;
using testing::NothingRaised;
using testing::RaisedNumber;
using testing::TempFolder;

constexpr Long RaisesZero = -1;  // in a row: the member raises Number 0

// Each row reads one key both ways, GetStringValue with Default "d" and GetNumericValue with
// Default 5; Filename stays a.ini whatever INIFile a call names.
TEST(INIValues, FileRuleDefaultsAndTheCutAt254) {
    TempFolder folder;
    folder.Write("a.ini", "[s]\r\nk=from a\r\nn=42\r\nminus=-1\r\nlong=" + std::string(300, 'v') + "\r\n");
    folder.Write("b.ini", "[s]\r\nk=from b\r\n");
    INILib lib;
    lib.Filename(folder.File("a.ini"));
    lib.BufferSize(10);  // plays no part in single values
    const struct {
        const wchar_t* key;
        String iniFile;
        String text;
        Long number;
    } rows[] = {
        {L"k", L"", L"from a", 0},
        {L"k", folder.File("b.ini"), L"from b", 0},
        {L"n", folder.File("b.ini"), L"d", 5},
        {L"n", L"", L"42", 42},
        {L"n", L" ", L"d", 5},  // a blank is a file name of its own
        {L"missing", L"", L"d", 5},
        {L"long", L"", String(254, L'v'), 0},
        {L"minus", L"", L"-1", RaisesZero},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(::testing::Message() << row.key << " in " << row.iniFile);
        String fallback = L"d";
        EXPECT_EQ(lib.GetStringValue(L"s", row.key, fallback, row.iniFile), row.text);
        Long number = 0;
        const Long raised = RaisedNumber([&] { number = lib.GetNumericValue(L"s", row.key, 5, row.iniFile); });
        EXPECT_EQ(raised, row.number == RaisesZero ? 0 : NothingRaised);
        if (raised == NothingRaised) {
            EXPECT_EQ(number, row.number);
        }
        EXPECT_EQ(lib.Filename(), folder.File("a.ini"));
    }
    EXPECT_EQ(lib.GetNumericValue(L"s", L"missing"), 0);
    EXPECT_EQ(RaisedNumber([&] { lib.GetNumericValue(L"s", L"missing", -1); }), 0);
}

// A row with a number raises it before the platform is asked to write; the file stays as the
// row before left it.
TEST(INIValues, WriteValueStoresTheTextFormOrFailsBeforeWriting) {
    TempFolder folder;
    INILib lib;
    lib.Filename(folder.File("w.ini"));
    const struct {
        const char* label;
        Variant value;
        String stored;
        Long raised = NothingRaised;
    } rows[] = {
        {"Long", Long{42}, L"42"},
        {"Null", Null{}, L"42", 94},
        {"String()", StringArray{0, {L"a"}}, L"42", 13},
        {"Byte()", ByteArray{0, {1}}, L"42", 13},
        {"object", Opaque{Opaque::Kind::Object}, L"42", 13},
        {"Boolean 1", BooleanValue{1}, L"True"},
        {"Double", 2.5, L"2.5"},
        {"Empty", Empty{}, L""},
    };
    for (const auto& row : rows) {
        const std::string before = folder.Read("w.ini");
        Recorder recorder;
        EXPECT_EQ(RaisedNumber([&] { lib.WriteValue(L"w", L"k", row.value); }), row.raised) << row.label;
        if (row.raised != NothingRaised) {
            EXPECT_EQ(recorder.count("WritePrivateProfileStringA"), 0u) << row.label;
            EXPECT_EQ(folder.Read("w.ini"), before) << row.label;
        }
        String fallback = L"missing";
        EXPECT_EQ(lib.GetStringValue(L"w", L"k", fallback), row.stored) << row.label;
    }
    EXPECT_EQ(folder.Read("w.ini"), "[w]\r\nk=\r\n");  // an empty value keeps its key
    lib.DeleteKey(L"w", L"k");
    lib.DeleteKey(L"w", L"k");
    EXPECT_EQ(folder.Read("w.ini"), "[w]\r\n");
}

// The platform's failure answers, which Wine doesn't give for real files: -1 from the reads
// and 0 from the writes. The deletes ignore them.
TEST(INIValues, PlatformFailuresRaiseNumberZeroWithTheMembersTexts) {
    Replace<&Api::GetPrivateProfileIntA> intFails{[](const char*, const char*, std::int32_t, const char*) {
        return 0xFFFFFFFFu;
    }};
    Replace<&Api::GetPrivateProfileStringA> stringFails{
        [](const char*, const char*, const char*, char*, Dword, const char*) { return 0xFFFFFFFFu; }};
    Replace<&Api::GetPrivateProfileSectionA> sectionFails{
        [](const char*, char*, Dword, const char*) { return 0xFFFFFFFFu; }};
    Replace<&Api::WritePrivateProfileStringA> writeFails{
        [](const char*, const char*, const char*, const char*) { return platform::Bool{0}; }};
    Replace<&Api::WritePrivateProfileSectionA> sectionWriteFails{
        [](const char*, const char*, const char*) { return platform::Bool{0}; }};

    INILib lib;
    String fallback;
    const struct {
        std::function<void()> call;
        const wchar_t* source;  // nullptr: nothing raised
        const wchar_t* description;
    } rows[] = {
        {[&] { lib.GetNumericValue(L"s", L"k"); }, L"INILib:GetNumericValue", L"Error retrieving INI value."},
        {[&] { lib.GetStringValue(L"s", L"k", fallback); }, L"INILib:GetStringValue", L"Error retrieving INI value."},
        {[&] { lib.WriteValue(L"s", L"k", Long{1}); }, L"INILib:WriteValue", L"Error writing INI value."},
        {[&] { lib.GetSectionNames(); }, L"INILib:GetSectionNames", L"Error retrieving INI section names."},
        {[&] { lib.GetSectionKeys(L"s"); }, L"INILib:GetSectionKeys", L"Error retrieving INI section keys."},
        {[&] { lib.GetSection(L"s"); }, L"INILib:GetStringSection", L"Error retrieving INI section."},
        {[&] { lib.WriteSection(L"s", {}); }, L"INILib:WriteSection", L"Error writing INI section."},
        {[&] { lib.DeleteKey(L"s", L"k"); }, nullptr, nullptr},
        {[&] { lib.DeleteSection(L"s"); }, nullptr, nullptr},
    };
    for (const auto& row : rows) {
        RaisedError raised{NothingRaised, {}, {}};
        try {
            row.call();
        } catch (const RaisedError& error) {
            raised = error;
        }
        if (!row.source) {
            EXPECT_EQ(raised.Number, NothingRaised);
            continue;
        }
        EXPECT_EQ(raised.Number, 0) << row.source;
        EXPECT_EQ(raised.Source, row.source);
        EXPECT_EQ(raised.Description, row.description);
    }
}

}  // namespace
}  // namespace orbex
