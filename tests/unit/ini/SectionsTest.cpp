#include "TempFolder.h"

#include "frame/Raises.h"
#include "ini/INILib.h"
#include "platform/TestHook.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace orbex {
namespace {

using platform::testing::Recorder;
using testing::NothingRaised;
using testing::RaisedNumber;
using testing::TempFolder;

using Items = std::vector<String>;

constexpr const char* Sample = "[alpha]\r\na=1\r\nb=\r\nc=x=y\r\n[beta]\r\n[gamma]\r\nk=v\r\n";

// n lines k0=v, k1=v, ...
Items NumberedLines(std::size_t n) {
    Items lines;
    for (std::size_t i = 0; i < n; ++i) lines.push_back(L"k" + std::to_wstring(i) + L"=v");
    return lines;
}

enum List { Names, Keys, Lines };

StringArray Read(INILib& lib, List list) {
    switch (list) {
    case Names: return lib.GetSectionNames();
    case Keys: return lib.GetSectionKeys(L"alpha");
    default: return lib.GetSection(L"alpha");
    }
}

// One platform call per list, into a buffer of BufferSize; a list that doesn't fit arrives cut
// two characters before the buffer's end, and loses one more character to the cut.
TEST(INISections, ListsTheirFormatAndTheCutOfTheBuffer) {
    TempFolder folder;
    folder.Write("s.ini", Sample);
    INILib lib;
    const struct {
        List list;
        const char* file;
        Long size;
        Items items;
        Long raised = NothingRaised;
    } rows[] = {
        {Names, "s.ini", 32767, {L"alpha", L"beta", L"gamma"}},
        {Keys, "s.ini", 32767, {L"a", L"b", L"c"}},
        {Lines, "s.ini", 32767, {L"a=1", L"b=", L"c=x=y"}},
        {Names, "missing.ini", 32767, {}},
        {Keys, "missing.ini", 32767, {}},
        {Lines, "missing.ini", 32767, {}},
        {Names, "s.ini", 17, {L"alpha", L"beta", L"gam"}},
        {Names, "s.ini", 9, {L"alpha", L""}},
        {Names, "s.ini", 8, {L"alpha"}},
        {Keys, "s.ini", 5, {L"a", L""}},
        {Lines, "s.ini", 11, {L"a=1", L"b=", L"c"}},
        {Names, "s.ini", 0, {}},
        {Keys, "s.ini", 0, {}},
        {Lines, "s.ini", 0, {}},
        {Names, "s.ini", -1, {}, 5},
        {Keys, "s.ini", -1, {}, 5},
        {Lines, "s.ini", -2147483647 - 1, {}, 5},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(::testing::Message() << "list " << row.list << " of " << row.file << ", size " << row.size);
        lib.Filename(folder.File(row.file));
        lib.BufferSize(row.size);
        Recorder recorder;
        StringArray list{7, {L"unset"}};
        EXPECT_EQ(RaisedNumber([&] { list = Read(lib, row.list); }), row.raised);
        if (row.raised == NothingRaised) {
            EXPECT_EQ(list, (StringArray{0, row.items}));
        }
        const std::size_t calls =
            recorder.count("GetPrivateProfileStringA") + recorder.count("GetPrivateProfileSectionA");
        if (row.size != 0) {  // GetSection doesn't ask the platform with size 0
            EXPECT_EQ(calls, row.size < 0 ? 0u : 1u);
        }
    }
    EXPECT_EQ(folder.Read("missing.ini"), "(none)");
}

// Bounds and loop counter are Integers: a bound outside their range fails at once, an upper
// bound of 32767 when the counter steps past it. Either way nothing is written.
TEST(INISections, WriteSectionTakesTheLinesFromLowerToUpperBound) {
    TempFolder folder;
    folder.Write("w.ini", Sample);
    INILib lib;
    lib.Filename(folder.File("w.ini"));
    const struct {
        Long lower;
        Items lines;
        Long raised = NothingRaised;
    } rows[] = {
        {3, {L"x=1", L"y=2"}},
        {0, {}},
        {-32768, {L"n=1"}},
        {32759, NumberedLines(8)},
        {32760, NumberedLines(8), 6},
        {0, NumberedLines(32768), 6},
        {32768, {L"k=v"}, 6},
        {-32769, {L"k=v"}, 6},
    };
    Items stored = {L"k=v"};
    for (const auto& row : rows) {
        Recorder recorder;
        EXPECT_EQ(RaisedNumber([&] { lib.WriteSection(L"gamma", StringArray{row.lower, row.lines}); }), row.raised)
            << row.lower;
        EXPECT_EQ(recorder.count("WritePrivateProfileSectionA"), row.raised == NothingRaised ? 1u : 0u);
        if (row.raised == NothingRaised) stored = row.lines;
        EXPECT_EQ(lib.GetSection(L"gamma").items, stored) << row.lower;
    }
    lib.DeleteSection(L"alpha");
    lib.DeleteSection(L"alpha");
    EXPECT_EQ(lib.GetSectionNames().items, (Items{L"beta", L"gamma"}));
}

}  // namespace
}  // namespace orbex
