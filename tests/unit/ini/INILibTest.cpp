// INILib on real files in a fresh temporary folder; the platform's failure answers, which Wine
// doesn't give for real files, come from replaced functions.
#include "ini/INILib.h"

#include "frame/FunctionLib.h"
#include "frame/Raises.h"
#include "platform/TestHook.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <vector>

namespace orbex {
namespace {

using platform::Api;
using platform::Dword;
using platform::testing::Recorder;
using platform::testing::Replace;
using testing::NothingRaised;
using testing::RaisedNumber;
using Items = std::vector<String>;

Items Split(const NulSeparatedList& list) { return SplitText(list.text, L'\0').items; }

// A fresh folder for each test, removed with its files; files are written and read directly.
class INILibTest : public ::testing::Test {
protected:
    INILibTest() { EXPECT_TRUE(std::filesystem::create_directory(folder_)) << folder_; }
    ~INILibTest() override {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    String File(const std::string& name) const { return (folder_ / name).wstring(); }
    void Write(const std::string& name, const std::string& content) const {
        std::ofstream(folder_ / name, std::ios::binary) << content;
    }
    std::string Read(const std::string& name) const {  // "(none)" when there is no file
        std::ifstream in(folder_ / name, std::ios::binary);
        return in ? std::string(std::istreambuf_iterator<char>(in), {}) : "(none)";
    }

    const std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() / ("OrbexIni" + std::to_string(std::random_device{}()));
    INILib lib;
};

constexpr Long RaisesZero = -1;  // in a row: the member raises Number 0

// Each row reads one key both ways, GetStringValue with Default "d" and GetNumericValue with
// Default 5; Filename stays a.ini whatever INIFile a call names; BufferSize plays no part.
TEST_F(INILibTest, FileRuleDefaultsAndTheCutAt254) {
    Write("a.ini", "[s]\r\nk=from a\r\nn=42\r\nminus=-1\r\nlong=" + std::string(300, 'v') + "\r\n");
    Write("b.ini", "[s]\r\nk=from b\r\n");
    lib.Filename(File("a.ini"));
    lib.BufferSize(10);
    for (const auto& [key, iniFile, text, number] :
         {std::tuple{L"k", String(), String(L"from a"), 0}, {L"k", File("b.ini"), L"from b", 0},
          {L"n", File("b.ini"), L"d", 5}, {L"n", L"", L"42", 42}, {L"n", L" ", L"d", 5},  // a blank names a file
          {L"missing", L"", L"d", 5}, {L"long", L"", String(254, L'v'), 0}, {L"minus", L"", L"-1", RaisesZero}}) {
        SCOPED_TRACE(::testing::Message() << key << " in " << iniFile);
        String fallback = L"d";
        EXPECT_EQ(lib.GetStringValue(L"s", key, fallback, iniFile), text);
        Long read = 0;
        const Long raised = RaisedNumber([&] { read = lib.GetNumericValue(L"s", key, 5, iniFile); });
        EXPECT_EQ(raised, number == RaisesZero ? 0 : NothingRaised);
        EXPECT_EQ(read, number == RaisesZero ? 0 : number);
        EXPECT_EQ(lib.Filename(), File("a.ini"));
    }
    EXPECT_EQ(RaisedNumber([&] { lib.GetNumericValue(L"s", L"missing", -1); }), 0);
}

// A refused value raises before the platform is asked to write; the file stays as it was.
TEST_F(INILibTest, WriteValueStoresTheTextFormOrFailsBeforeWriting) {
    lib.Filename(File("w.ini"));
    for (const auto& [label, value, stored, raised] :
         {std::tuple{"Long", Variant{Long{42}}, L"42", NothingRaised}, {"Null", Null{}, L"42", 94},
          {"String()", StringArray{0, {L"a"}}, L"42", 13}, {"Byte()", ByteArray{0, {1}}, L"42", 13},
          {"object", Opaque{Opaque::Kind::Object}, L"42", 13}, {"Boolean 1", BooleanValue{1}, L"True", NothingRaised},
          {"Double", 2.5, L"2.5", NothingRaised}, {"Empty", Empty{}, L"", NothingRaised}}) {
        const std::string before = Read("w.ini");
        Recorder recorder;
        EXPECT_EQ(RaisedNumber([&] { lib.WriteValue(L"w", L"k", value); }), raised) << label;
        if (raised != NothingRaised) {
            EXPECT_EQ(recorder.count("WritePrivateProfileStringA"), 0u) << label;
            EXPECT_EQ(Read("w.ini"), before) << label;
        }
        String fallback = L"missing";
        EXPECT_EQ(lib.GetStringValue(L"w", L"k", fallback), stored) << label;
    }
    EXPECT_EQ(Read("w.ini"), "[w]\r\nk=\r\n");  // an empty value keeps its key
    lib.DeleteKey(L"w", L"k");
    lib.DeleteKey(L"w", L"k");
    EXPECT_EQ(Read("w.ini"), "[w]\r\n");
}

enum List { Names, Keys, Lines };

// One platform call per list, into a buffer of BufferSize; a list that doesn't fit arrives cut
// two characters before the buffer's end, and loses one more character to the cut. A negative
// size raises 5 before the platform is asked; GetSection doesn't ask it with size 0.
TEST_F(INILibTest, ListsTheirFormatAndTheCutOfTheBuffer) {
    Write("s.ini", "[alpha]\r\na=1\r\nb=\r\nc=x=y\r\n[beta]\r\n[gamma]\r\nk=v\r\n");
    const struct {
        List list;
        const char* file;
        Long size;
        Items items;
        Long raised = NothingRaised;
    } rows[] = {
        {Names, "s.ini", 32767, {L"alpha", L"beta", L"gamma"}}, {Keys, "s.ini", 32767, {L"a", L"b", L"c"}},
        {Lines, "s.ini", 32767, {L"a=1", L"b=", L"c=x=y"}},     {Names, "missing.ini", 32767, {}},
        {Keys, "missing.ini", 32767, {}},                       {Lines, "missing.ini", 32767, {}},
        {Names, "s.ini", 17, {L"alpha", L"beta", L"gam"}},      {Names, "s.ini", 9, {L"alpha", L""}},
        {Names, "s.ini", 8, {L"alpha"}},                        {Keys, "s.ini", 5, {L"a", L""}},
        {Lines, "s.ini", 11, {L"a=1", L"b=", L"c"}},            {Names, "s.ini", 0, {}},
        {Keys, "s.ini", 0, {}},                                 {Lines, "s.ini", 0, {}},
        {Names, "s.ini", -1, {}, 5},                            {Keys, "s.ini", -1, {}, 5},
        {Lines, "s.ini", -2147483647 - 1, {}, 5},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(::testing::Message() << "list " << row.list << " of " << row.file << ", size " << row.size);
        lib.Filename(File(row.file));
        lib.BufferSize(row.size);
        Recorder recorder;
        Items list{L"unset"};
        EXPECT_EQ(RaisedNumber([&] {
                      list = Split(row.list == Names  ? lib.GetSectionNames()
                                   : row.list == Keys ? lib.GetSectionKeys(L"alpha")
                                                      : lib.GetSection(L"alpha"));
                  }),
                  row.raised);
        EXPECT_EQ(list, row.raised == NothingRaised ? row.items : Items{L"unset"});
        const std::size_t calls = recorder.count("GetPrivateProfileStringA") + recorder.count("GetPrivateProfileSectionA");
        EXPECT_EQ(calls, row.size < 0 || (row.size == 0 && row.list == Lines) ? 0u : 1u);
    }
    EXPECT_EQ(Read("missing.ini"), "(none)");
}

// Bounds and loop counter are Integers: a bound outside their range fails at once, an upper
// bound of 32767 when the counter steps past it. Either way nothing is written.
TEST_F(INILibTest, WriteSectionTakesTheLinesFromLowerToUpperBound) {
    Write("w.ini", "[alpha]\r\na=1\r\n[beta]\r\n[gamma]\r\nk=v\r\n");
    lib.Filename(File("w.ini"));
    auto numbered = [](std::size_t n) {
        Items lines;
        for (std::size_t i = 0; i < n; ++i) lines.push_back(L"k" + std::to_wstring(i) + L"=v");
        return lines;
    };
    Items stored = {L"k=v"};
    for (const auto& [lower, lines, raised] :
         {std::tuple{3, Items{L"x=1", L"y=2"}, NothingRaised}, {0, Items{}, NothingRaised}, {-32768, Items{L"n=1"}, NothingRaised},
          {32759, numbered(8), NothingRaised}, {32760, numbered(8), 6}, {0, numbered(32768), 6}, {32768, Items{L"k=v"}, 6},
          {-32769, Items{L"k=v", L"n=1"}, 6}}) {
        Recorder recorder;
        EXPECT_EQ(RaisedNumber([&] { lib.WriteSection(L"gamma", StringArray{lower, lines}); }), raised) << lower;
        EXPECT_EQ(recorder.count("WritePrivateProfileSectionA"), raised == NothingRaised ? 1u : 0u);
        if (raised == NothingRaised) stored = lines;
        EXPECT_EQ(Split(lib.GetSection(L"gamma")), stored) << lower;
    }
    lib.DeleteSection(L"alpha");
    lib.DeleteSection(L"alpha");
    EXPECT_EQ(Split(lib.GetSectionNames()), (Items{L"beta", L"gamma"}));
}

// The platform's failure answers: -1 from the reads and 0 from the writes raise Number 0 with
// the member's texts. The deletes ignore them.
TEST_F(INILibTest, PlatformFailuresRaiseNumberZeroWithTheMembersTexts) {
    Replace<&Api::GetPrivateProfileIntA> intFails{[](const char*, const char*, std::int32_t, const char*) { return ~0u; }};
    Replace<&Api::GetPrivateProfileStringA> stringFails{
        [](const char*, const char*, const char*, char*, Dword, const char*) { return ~0u; }};
    Replace<&Api::GetPrivateProfileSectionA> sectionFails{[](const char*, char*, Dword, const char*) { return ~0u; }};
    Replace<&Api::WritePrivateProfileStringA> writeFails{[](const char*, const char*, const char*, const char*) { return 0; }};
    Replace<&Api::WritePrivateProfileSectionA> sectionWriteFails{[](const char*, const char*, const char*) { return 0; }};
    String fallback;
    const std::wstring read = L"Error retrieving INI ";
    for (const auto& [call, text] : std::vector<std::pair<std::function<void()>, std::wstring>>{
             {[&] { lib.GetNumericValue(L"s", L"k"); }, L"INILib:GetNumericValue " + read + L"value."},
             {[&] { lib.GetStringValue(L"s", L"k", fallback); }, L"INILib:GetStringValue " + read + L"value."},
             {[&] { lib.WriteValue(L"s", L"k", Long{1}); }, L"INILib:WriteValue Error writing INI value."},
             {[&] { lib.GetSectionNames(); }, L"INILib:GetSectionNames " + read + L"section names."},
             {[&] { lib.GetSectionKeys(L"s"); }, L"INILib:GetSectionKeys " + read + L"section keys."},
             {[&] { lib.GetSection(L"s"); }, L"INILib:GetStringSection " + read + L"section."},
             {[&] { lib.WriteSection(L"s", {}); }, L"INILib:WriteSection Error writing INI section."},
             {[&] { lib.DeleteKey(L"s", L"k"); }, L""}, {[&] { lib.DeleteSection(L"s"); }, L""}}) {
        std::wstring raised;
        try {
            call();
        } catch (const RaisedError& error) {
            raised = std::to_wstring(error.Number) + L" " + error.Source + L" " + error.Description;
        }
        EXPECT_EQ(raised, text.empty() ? text : L"0 " + text);
    }
}

}  // namespace
}  // namespace orbex
