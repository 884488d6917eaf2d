// The narrow functions of the real table that Wine crashes in on a text longer than it carries
// fail without calling the platform; one character less still works.
#include "platform/Api.h"

#include <gtest/gtest.h>

#include <string>

namespace orbex::platform {
namespace {

std::string TempIni() {
    char folder[260] = {};
    realApi().GetTempPathA(sizeof folder, folder);
    return std::string(folder) + "orbex-profile-text.ini";
}

TEST(WineTextLimit, TextsTooLongFailAsNothingFound) {
    const std::string file = TempIni();
    realApi().WritePrivateProfileStringA("Main", "Key", "value", file.c_str());
    const std::string longest(32766, 'k'), tooLong(32767, 'k');
    const Api& api = realApi();
    char buffer[64] = "untouched";
    const struct {
        const char* what;
        Dword answer;
        Dword expected;
    } rows[] = {
        {"int, section", api.GetPrivateProfileIntA(tooLong.c_str(), "Key", 7, file.c_str()), 7},
        {"int, key", api.GetPrivateProfileIntA("Main", tooLong.c_str(), 7, file.c_str()), 7},
        {"int, longest key", api.GetPrivateProfileIntA("Main", longest.c_str(), 7, file.c_str()), 7},
        {"string, key", api.GetPrivateProfileStringA("Main", tooLong.c_str(), "d", buffer, 64, file.c_str()), 0},
        {"string, default", api.GetPrivateProfileStringA("Main", "Key", tooLong.c_str(), buffer, 64, file.c_str()), 0},
        {"string, longest key", api.GetPrivateProfileStringA("Main", longest.c_str(), "d", buffer, 64, file.c_str()), 1},
        {"write, section", static_cast<Dword>(api.WritePrivateProfileStringA(tooLong.c_str(), "K", "v", file.c_str())), 0},
        {"write, value", static_cast<Dword>(api.WritePrivateProfileStringA("Main", "K", tooLong.c_str(), file.c_str())), 0},
        {"section, name", api.GetPrivateProfileSectionA(tooLong.c_str(), buffer, 64, file.c_str()), 0},
        {"write section, line", static_cast<Dword>(api.WritePrivateProfileSectionA("Main", (tooLong + '\0').c_str(), file.c_str())), 0},
    };
    for (const auto& row : rows) EXPECT_EQ(row.answer, row.expected) << row.what;
    Handle connection = 0;
    const Handle currentUser = static_cast<Handle>(static_cast<std::int32_t>(0x80000001));
    EXPECT_EQ(api.RegConnectRegistryA(tooLong.c_str(), currentUser, &connection), 53);  // no such machine
    EXPECT_EQ(api.GetPrivateProfileStringA("Main", "Key", "", buffer, 64, file.c_str()), 5u);
    EXPECT_STREQ(buffer, "value");  // nothing was written
    api.WritePrivateProfileStringA("Main", nullptr, nullptr, file.c_str());
}

}  // namespace
}  // namespace orbex::platform
