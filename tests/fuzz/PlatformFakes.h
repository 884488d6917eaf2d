// The platform functions behind session and power actions, dialogs, key presses and volume
// labels, replaced for the whole run: each call is counted and answered success or failure at
// random, so both paths of the members run and nothing is ever shown, pressed or shut down.
#pragma once
#include "Random.h"
#include "Sandbox.h"
#include "platform/TestHook.h"

#include <map>
#include <string>

namespace orbex::fuzz {

class PlatformFakes {
public:
    PlatformFakes(std::uint64_t seed, const Sandbox& sandbox);
    std::string summary() const;

private:
    using Api = platform::Api;
    bool succeed(const char* name);
    int fillFileName(platform::OpenFileName* info, const char* name);

    Random random_;
    const Sandbox& sandbox_;
    std::map<std::string, unsigned long> calls_;
    platform::testing::Replace<&Api::ExitWindowsEx> exitWindows_;
    platform::testing::Replace<&Api::SetSuspendState> suspend_;
    platform::testing::Replace<&Api::OpenProcessToken> openToken_;
    platform::testing::Replace<&Api::LookupPrivilegeValueA> lookupPrivilege_;
    platform::testing::Replace<&Api::AdjustTokenPrivileges> adjustPrivileges_;
    platform::testing::Replace<&Api::keybd_event> keyboard_;
    platform::testing::Replace<&Api::GetOpenFileNameA> openDialog_;
    platform::testing::Replace<&Api::GetSaveFileNameA> saveDialog_;
    platform::testing::Replace<&Api::SHBrowseForFolderA> folderDialog_;
    platform::testing::Replace<&Api::SetVolumeLabelA> volumeLabel_;
};

}  // namespace orbex::fuzz
