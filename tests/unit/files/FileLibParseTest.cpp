#include "files/FileLib.h"
#include "frame/Raises.h"

#include <gtest/gtest.h>

#include <functional>

namespace orbex {
namespace {

using testing::NothingRaised;
using testing::RaisedNumber;

// A cell of the table: the text a parser gives, or Overflow when it raises 6.
const String Overflow = L"<raises 6>";

String Parsed(const std::function<String()>& parse) {
    String text;
    const Long raised = RaisedNumber([&] { text = parse(); });
    if (raised == RunTime::Overflow) return Overflow;
    EXPECT_EQ(raised, NothingRaised);
    return text;
}

String Repeat(std::size_t n, wchar_t c) { return String(n, c); }

// Long texts are shown by their length and ends only.
std::string Shown(const String& text) {
    if (text.size() <= 40) return ::testing::PrintToString(text);
    return ::testing::PrintToString(text.substr(0, 12)) + "..." + ::testing::PrintToString(text.substr(text.size() - 12)) +
           " (" + std::to_string(text.size()) + " characters)";
}

::testing::AssertionResult Gives(const String& actual, const String& expected) {
    if (actual == expected) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "gives " << Shown(actual) << ", expected " << Shown(expected);
}

// The four parsers side by side: pure text, only the backslash separates levels, the last dot
// of the whole text starts the extension, and positions beyond an Integer overflow.
TEST(FileLibParse, RootPathNameAndExtension) {
    const struct { String filename, root, path, name, ext; } rows[] = {
        {L"C:\\Dir\\File.txt", L"C:\\", L"C:\\Dir\\", L"File.txt", L"txt"},
        {L"C:\\Dir\\", L"C:\\", L"C:\\Dir\\", L"", L""},
        {L"C:\\Dir.old\\File", L"C:\\", L"C:\\Dir.old\\", L"File", L"old\\File"},
        {L"C:File.txt", L"C:\\", L"C:File.txt", L"C:File.txt", L"txt"},
        {L"C:", L"C:\\", L"C:", L"C:", L""},
        {L"1:x", L"1:\\", L"1:x", L"1:x", L""},
        {L"C", L"", L"C", L"C", L""},
        {L"File.txt", L"", L"File.txt", L"File.txt", L"txt"},
        {L"archive.tar.gz", L"", L"archive.tar.gz", L"archive.tar.gz", L"gz"},
        {L".profile", L"", L".profile", L".profile", L"profile"},
        {L"\\Dir\\File", L"", L"\\Dir\\", L"File", L""},
        {L"\\\\Server\\Share\\Dir\\File.txt", L"\\\\Server\\Share\\", L"\\\\Server\\Share\\Dir\\", L"File.txt", L"txt"},
        {L"\\\\Server\\Share", L"\\\\Server\\Share\\", L"\\\\Server\\", L"Share", L""},
        {L"\\\\Server\\", L"\\\\Server\\\\", L"\\\\Server\\", L"", L""},
        {L"\\\\Server", L"", L"\\\\", L"Server", L""},
        {L"\\\\\\Share\\Dir", L"", L"\\\\\\Share\\", L"Dir", L""},
        {L"\\\\a\\", L"", L"\\\\a\\", L"", L""},
        {L"//Server/Share/File.txt", L"", L"//Server/Share/File.txt", L"//Server/Share/File.txt", L"txt"},
        {L"", L"", L"", L"", L""},
        // Blanks around the text are trimmed; tabs are not blanks.
        {L"   C:\\Dir\\File.txt  ", L"C:\\", L"C:\\Dir\\", L"File.txt", L"txt"},
        {L"\tC:\\a", L"", L"\tC:\\", L"a", L""},
        // Positions live in an Integer: a backslash at 32767 is the last one that fits, and
        // what lies behind it then starts at a position that does not.
        {Repeat(32766, L'a') + L"\\x", L"", Repeat(32766, L'a') + L"\\", Overflow, L""},
        {Repeat(32765, L'a') + L"\\x", L"", Repeat(32765, L'a') + L"\\", L"x", L""},
        {Repeat(32767, L'a') + L"\\x.t", L"", Overflow, Overflow, Overflow},
        {Repeat(32766, L'a') + L".t", L"", Repeat(32766, L'a') + L".t", Repeat(32766, L'a') + L".t", Overflow},
        {Repeat(40000, L'a'), L"", Repeat(40000, L'a'), Repeat(40000, L'a'), L""},
        {L"\\\\" + Repeat(32770, L's') + L"\\share", Overflow, Overflow, Overflow, L""},
        // A share running to the end of the text needs the text's length plus 1.
        {L"\\\\s\\" + Repeat(32762, L'x'), L"\\\\s\\" + Repeat(32762, L'x') + L"\\", L"\\\\s\\", Repeat(32762, L'x'), L""},
        {L"\\\\s\\" + Repeat(32763, L'x'), Overflow, L"\\\\s\\", Repeat(32763, L'x'), L""},
    };
    const FileLib lib;
    for (const auto& row : rows) {
        SCOPED_TRACE(Shown(row.filename));
        EXPECT_TRUE(Gives(Parsed([&] { return lib.ParseFilenameRoot(row.filename); }), row.root)) << "ParseFilenameRoot";
        EXPECT_TRUE(Gives(Parsed([&] { return lib.ParseFilenamePath(row.filename); }), row.path)) << "ParseFilenamePath";
        EXPECT_TRUE(Gives(Parsed([&] { return lib.ParseFilename(row.filename); }), row.name)) << "ParseFilename";
        EXPECT_TRUE(Gives(Parsed([&] { return lib.ParseFilenameExt(row.filename); }), row.ext)) << "ParseFilenameExt";
    }
}

}  // namespace
}  // namespace orbex
