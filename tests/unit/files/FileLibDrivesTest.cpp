#include "FilesSupport.h"

#include "files/FileLib.h"
#include "frame/Raises.h"

#include <cstring>
#include <string>
#include <vector>

namespace orbex {
namespace {

using platform::Api;
using platform::Dword;
using platform::testing::Replace;
using testing::NothingRaised;
using testing::RaisedNumber;

Currency Scaled(std::int64_t scaled) { return Currency{scaled}; }
Currency Whole(std::int64_t value) { return Currency{value * 10000}; }

// While alive, the platform's drive list holds the roots of `letters` (each root ended by a NUL)
// and every call records the buffer length it was given.
class FakeDrives {
public:
    explicit FakeDrives(const char* letters)
        : replace_{[this](Dword length, char* buffer) -> Dword {
              lengths.push_back(length);
              const auto needed = static_cast<Dword>(roots_.size() + 1);
              if (length < needed) return needed;
              std::memcpy(buffer, roots_.data(), roots_.size() + 1);
              return static_cast<Dword>(roots_.size());
          }} {
        for (const char* c = letters; *c; ++c) roots_ += std::string(1, *c) + ":\\" + std::string(1, '\0');
    }
    std::vector<Dword> lengths;

private:
    std::string roots_;
    Replace<&Api::GetLogicalDriveStringsA> replace_;
};

TEST(FileLibDrives, FormatSizeTable) {
    const String Raises5 = L"<raises 5>";
    const struct { Currency bytes; Integer places; String text; } rows[] = {
        {Whole(0), 2, L"0.00 bytes"},
        {Whole(1), 2, L"1.00 byte"},
        {Scaled(15000), 2, L"1.50 bytes"},
        {Whole(1024), 2, L"1,024.00 bytes"},
        {Scaled(10245000), 2, L"1.00 KB"},  // 1024.5 is above 1024
        {Whole(1536), 3, L"1.500 KB"},
        {Whole(1023 * 1024 + 1023), 2, L"1,024.00 KB"},  // rounding may show the next unit's 1,024
        {Whole(1048577), 2, L"1.00 MB"},
        {Whole(1073741824), 2, L"1,024.00 MB"},
        {Whole(1073741825), 2, L"1.00 GB"},
        {Whole(1099511627777), 2, L"1.00 TB"},
        {Whole(922337203685477), 2, L"838.86 TB"},
        {Whole(-2048), 2, L"-2,048.00 bytes"},
        {Whole(-922337203685477), 0, L"-922,337,203,685,477 bytes"},
        {Whole(1), 0, L"1 byte"},
        {Whole(1536), 0, L"2 KB"},
        {Scaled(15000), 0, L"2 bytes"},  // ties go away from zero
        {Scaled(-25000), 0, L"-3 bytes"},
        {Scaled(10050), 2, L"1.01 bytes"},  // 1.005 rounds as the decimal it reads
        {Scaled(1), 4, L"0.0001 bytes"},
        {Whole(5), -1, Raises5},
    };
    const FileLib lib;
    for (const auto& row : rows) {
        String text;
        const Long raised = RaisedNumber([&] { text = lib.FormatSize(row.bytes, row.places); });
        if (raised == RunTime::InvalidArgument) text = Raises5;
        else EXPECT_EQ(raised, NothingRaised);
        EXPECT_EQ(text, row.text) << row.bytes.scaled << " scaled, " << row.places << " places";
    }
}

TEST(FileLibDrives, FormatSizeUsesTheUsersSigns) {
    Replace<&Api::GetLocaleInfoA> german{[](platform::Lcid, Dword type, char* data, std::int32_t size) {
        if (size < 2) return 2;
        std::strcpy(data, type == 0x0F ? "." : ",");
        return 2;
    }};
    EXPECT_EQ(FileLib().FormatSize(Whole(1048576)), L"1.024,00 KB");
}

// The first call offers 20 characters; a longer list comes with a second call of the size the
// platform asked for.
TEST(FileLibDrives, DriveListFromOneOrTwoCalls) {
    const struct { const char* letters; std::vector<Dword> lengths; } rows[] = {
        {"ACDE", {20}},       // 16 characters and the final NUL fit
        {"ACDEF", {20, 21}},  // 20 and the final NUL do not
    };
    for (const auto& row : rows) {
        FakeDrives fake(row.letters);
        const StringArray list = FileLib().DriveList();
        std::vector<String> expected;
        for (const char* c = row.letters; *c; ++c) expected.push_back(String(1, static_cast<wchar_t>(*c)) + L":\\");
        EXPECT_EQ(list.lower, 0);
        EXPECT_EQ(list.items, expected) << row.letters;
        EXPECT_EQ(fake.lengths, row.lengths) << row.letters;
    }
}

// Both lists raise the platform's code under DriveList's name; DriveExists answers False.
TEST(FileLibDrives, AnUnreadableDriveList) {
    Replace<&Api::GetLogicalDriveStringsA> fails{[](Dword, char*) -> Dword { return 0; }};
    Replace<&Api::GetLastError> code{[] { return Dword{21}; }};
    const FileLib lib;
    for (const RaisedError& raised : {testing::Caught([&] { lib.DriveList(); }), testing::Caught([&] { lib.CDROMList(); })}) {
        EXPECT_EQ(raised.Number, 21);
        EXPECT_EQ(raised.Source, L"Quillet:FileLib:DriveList");
        EXPECT_EQ(raised.Description, L"Could not retrieve drive list.");
    }
    EXPECT_EQ(lib.DriveExists(L"C:"), False);
}

TEST(FileLibDrives, CDROMListPicksTheOpticalDrives) {
    FakeDrives fake("ACDEFG");
    std::string optical;
    Replace<&Api::GetDriveTypeA> types{[&](const char* root) -> Dword {
        return std::strchr(optical.c_str(), root[0]) != nullptr ? 5 : 3;
    }};
    const FileLib lib;
    optical = "DG";
    EXPECT_EQ(lib.CDROMList().items, (std::vector<String>{L"D:\\", L"G:\\"}));
    optical = "";
    const StringArray none = lib.CDROMList();
    EXPECT_EQ(none.lower, 0);
    EXPECT_EQ(none.upper(), -1);
}

// A substring search over the whole list, ignoring case.
TEST(FileLibDrives, DriveExistsSearchesTheListOfRoots) {
    FakeDrives fake("ACD");
    const FileLib lib;
    const struct { const wchar_t* drive; Boolean exists; } rows[] = {
        {L"C", True}, {L"c:", True}, {L"c:\\", True}, {L"", True},
        {L"E:", False}, {L"C:\\Windows", False}, {L" C:", False}, {L"A:\\C", False},
    };
    for (const auto& row : rows) EXPECT_EQ(lib.DriveExists(row.drive), row.exists) << row.drive;
}

}  // namespace
}  // namespace orbex
