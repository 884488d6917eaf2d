#include "frame/Ansi.h"
#include "frame/FunctionLib.h"

#include "Raises.h"
#include "platform/TestHook.h"

#include <cstdint>
#include <optional>

namespace orbex {
namespace {

using namespace std::string_literals;

TEST(FunctionLib, CutAtNul) {
    struct Case { String text; Integer nulCount; String first, last; };
    const Case cases[] = {
        {L"abc", 1, L"abc", L"abc"},
        {L"\0abc"s, 1, L"", L""},
        {L"ab\0c\0"s, 1, L"ab", L"ab\0c"s},
        {L"a\0\0\0"s, 2, L"a", L"a\0"s},  // the last pair starts at the second NUL
        {L"a\0b\0c"s, 2, L"a\0b\0c"s, L"a\0b\0c"s},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(CutAtFirstNul(c.text, c.nulCount), c.first);
        EXPECT_EQ(CutAtLastNul(c.text, c.nulCount), c.last);
    }
}

TEST(FunctionLib, TrimmingAndBackslash) {
    struct Case { const wchar_t *text, *trimmed, *stripped; };
    const Case cases[] = {
        {L"  C:\\  ", L"C:\\", L"C:"}, {L"C:\\dir\\\\", L"C:\\dir\\\\", L"C:\\dir\\"},
        {L"  abc ", L"abc", L"abc"}, {L"\tabc\t", L"\tabc\t", L"\tabc\t"}, {L"   ", L"", L""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(TrimBlanks(c.text), c.trimmed) << c.text;
        EXPECT_EQ(StripTrailingBackslash(c.text), c.stripped) << c.text;
    }
}

TEST(FunctionLib, LowWordToInteger) {
    testing::CheckRows({
        GIVES(LowWordToInteger(0xFFFF), -1), GIVES(LowWordToInteger(0x8000), -32768),
        GIVES(LowWordToInteger(0x7FFF), 32767), GIVES(LowWordToInteger(0x12345678), 0x5678),
        GIVES(LowWordToInteger(static_cast<Long>(0xFFFF0001)), 1),
    });
}

TEST(FunctionLib, SplitTextKeepsEmptyPieces) {
    const std::pair<const wchar_t*, std::vector<String>> cases[] = {
        {L"", {}}, {L"a", {L"a"}}, {L"a,,b,", {L"a", L"", L"b", L""}}, {L",", {L"", L""}},
    };
    for (const auto& [text, pieces] : cases) {
        const StringArray split = SplitText(text, L',');
        EXPECT_EQ(split.lower, 0) << text;
        EXPECT_EQ(split.items, pieces) << text;
    }
}

// The prefix's ANSI code page is 1252: e-acute survives, a CJK character turns into '?'.
TEST(Ansi, RoundTripKeepsNulsAndLosesForeignCharacters) {
    const String text = L"a\0\u00E9\u4E2Dz"s;
    EXPECT_EQ(ToAnsi(text), "a\0\xE9?z"s);
    EXPECT_EQ(AnsiRoundTrip(text), L"a\0\u00E9?z"s);
    EXPECT_EQ(FromAnsi("x\0y"s), L"x\0y"s);
}

// A multi-byte code page in miniature: a byte from 0x80 up starts a character of itself and the
// next two bytes; one cut short by the end of the text gives a character per byte.
std::int32_t MultiByte(platform::Dword, platform::Dword, const char* text, std::int32_t length, wchar_t* wide,
                       std::int32_t room) {
    String out;
    for (std::int32_t i = 0; i < length; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte >= 0x80 && i + 2 < length) {
            out += static_cast<wchar_t>(byte << 8 | static_cast<unsigned char>(text[i + 1] ^ text[i + 2]));
            i += 2;
        } else {
            out += static_cast<wchar_t>(byte);
        }
    }
    const auto size = static_cast<std::int32_t>(out.size());
    if (room == 0) return size;
    if (size > room) return 0;
    out.copy(wide, out.size());
    return size;
}

// Whatever the code page, the cut text is the whole buffer's text cut to the count.
TEST(Ansi, FromAnsiBufferGivesTheFirstCharactersOfTheWholeBuffer) {
    const std::pair<std::string, std::size_t> cases[] = {
        {"a\0bc\0\0  "s, 4},           // a list as the platform ends it
        {"\xE9t\xE9\0\0 "s, 3},         // characters of several bytes before the cut
        {"x\xE3\x81\x82\0 "s, 2},      // a character across the cut
        {"abc"s, 5}, {"ab"s, SIZE_MAX},  // a count beyond the buffer
        {""s, 0}, {" "s, 0},
    };
    for (const bool multiByte : {false, true}) {
        std::optional<platform::testing::Replace<&platform::Api::MultiByteToWideChar>> codePage;
        if (multiByte) codePage.emplace(MultiByte);
        for (const auto& [buffer, count] : cases) {
            EXPECT_EQ(FromAnsiBuffer(buffer, count), FromAnsi(buffer).substr(0, count))
                << ::testing::PrintToString(buffer) << " " << count << (multiByte ? " multi-byte" : "");
        }
    }
}

}  // namespace
}  // namespace orbex
